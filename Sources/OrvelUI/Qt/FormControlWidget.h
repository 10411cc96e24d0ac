#pragma once

#include <QWidget>

#include "OrvelUI/Form.h"
#include "OrvelUI/Qt/FormStyle.h"

namespace OrvelUI {

/// What one kind of control looks like in a row of a form. As large as its `sizeHint`, or as high
/// as its `heightForWidth` says.
class FormControlWidget : public QWidget {
  public:
    enum class Place {
        trailing,   ///< At the end of the label's line.
        stretched,  ///< There too, as wide as there is room.
        below,      ///< Under the label.
    };

    using QWidget::QWidget;

    /// `row` has the kind of control that this widget was made for.
    virtual void setContent(const FormRow& row, const FormStyle& style) = 0;
    virtual Place place() const { return Place::trailing; }
};

/// Null for a kind that shows nothing beside the row's text.
FormControlWidget* makeControl(const FormControl& control, QWidget* parent);

}  // namespace OrvelUI
