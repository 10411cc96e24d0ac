#pragma once

#include <QScrollArea>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "OrvelUI/Form.h"
#include "OrvelUI/Qt/FormRowWidget.h"
#include "OrvelUI/Qt/FormStyle.h"

namespace OrvelUI {

/// Draws any form, and scrolls a form that is too long. A row keeps its widget, and with it the
/// focus, across contents as long as its ID and kind do not change.
class FormView final : public QScrollArea {
  public:
    explicit FormView(QWidget* parent);

    void setContent(const FormContent& content, const FormStyle& style);
    const FormContent& content() const { return content_; }
    /// The margins around the form, in points.
    void setMargins(double sides, double top, double bottom);
    /// Centres the form vertically if there is spare height.
    void setCentred(bool centred) { centred_ = centred; }
    /// The height of the form at a given width, in Qt units.
    int heightForWidth(int width) const override;

  private:
    class Column;
    class Section;

    /// The index among all rows of the row that has the focus, or -1.
    int focusedRow() const;
    std::vector<FormRowWidget*> rows() const;

    Column* column_;
    FormContent content_;
    FormStyle style_;
    bool centred_ = false;
};

}  // namespace OrvelUI
