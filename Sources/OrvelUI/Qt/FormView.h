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

/// Draws a form, whatever is in it, and scrolls what is too long. A row keeps its widget, and with
/// it the keyboard, from one content to the next as long as its id and kind stay.
class FormView final : public QScrollArea {
  public:
    explicit FormView(QWidget* parent);

    void setContent(const FormContent& content, const FormStyle& style);
    const FormContent& content() const { return content_; }
    /// Points, around the form.
    void setMargins(double sides, double top, double bottom);
    /// In the middle of the view where there is room to spare.
    void setCentred(bool centred) { centred_ = centred; }
    /// The height that the form takes at a width, in Qt's units.
    int heightForWidth(int width) const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    class Column;
    class Section;

    /// The row that has the keyboard: its place among all rows, or -1.
    int focusedRow() const;
    std::vector<FormRowWidget*> rows() const;

    Column* column_;
    FormContent content_;
    FormStyle style_;
    bool centred_ = false;
};

}  // namespace OrvelUI
