#pragma once

#include <QWidget>

#include "OrvelUI/Form.h"
#include "OrvelUI/Qt/FormStyle.h"

namespace OrvelUI {

/// The widget for one kind of control in a row of a form. Its size is its `sizeHint`, or its height
/// that of `heightForWidth`.
class FormControlWidget : public QWidget {
  public:
    enum class Place {
        trailing,   ///< At the end of the label's line.
        stretched,  ///< Also there, using the available width.
        below,      ///< Below the label.
    };

    using QWidget::QWidget;

    /// `row` must have the kind of control for which this widget was made.
    virtual void setContent(const FormRow& row, const FormStyle& style) = 0;
    virtual Place place() const { return Place::trailing; }
};

/// Returns null for a kind that shows only the row's text.
FormControlWidget* makeControl(const FormControl& control, QWidget* parent);

}  // namespace OrvelUI
