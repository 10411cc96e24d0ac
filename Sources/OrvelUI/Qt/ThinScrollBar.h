#pragma once

#include <QScrollBar>

#include "OrvelUI/Qt/FormStyle.h"

namespace OrvelUI {

/// A scroll bar that shows only its handle.
class ThinScrollBar final : public QScrollBar {
  public:
    explicit ThinScrollBar(QWidget* parent);

    void setContent(const FormStyle& style);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    FormStyle style_;
};

}  // namespace OrvelUI
