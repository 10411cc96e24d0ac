#pragma once

#include <QAbstractButton>

#include "OrvelUI/CardContent.h"

namespace OrvelUI {

/// The right end of the password field: the arrow to click, the remaining cool-down, or a lock.
class FieldEndButton final : public QAbstractButton {
  public:
    explicit FieldEndButton(QWidget* parent);

    void setContent(const PasswordFieldContent& field);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    PasswordFieldContent::End end_ = PasswordFieldContent::End::lock;
    double ringFraction_ = 0;
};

}  // namespace OrvelUI
