#pragma once

#include <QAccessible>

#include "OrvelUI/Qt/FormStyle.h"
#include "OrvelUI/Qt/PressableButton.h"

namespace OrvelUI {

/// A button of a form.
class FormButtonWidget final : public PressableButton {
  public:
    static constexpr double height = 26;  ///< Points.

    explicit FormButtonWidget(QWidget* parent);

    void setContent(const FormButton& button, const FormStyle& style);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    LabelContent label() const;

    FormButton button_;
    FormStyle style_;
};

/// One of several options. Arrow keys move to its neighbours in the same parent. The Tab key stops
/// only at the chosen option, or at the first if none is chosen.
class FormOption : public PressableButton {
  public:
    FormOption(QAccessible::Role role, QWidget* parent);

    QAccessible::Role role() const { return role_; }

  protected:
    void setOption(const QString& name, const QString& hint, bool chosen, Handler<> choose);
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QAccessible::Role role_;
    Handler<> choose_;
};

/// Sets which of the options in one parent the Tab key stops at. Call it after the contents have
/// been set.
void settleTabStops(const std::vector<FormOption*>& options);

}  // namespace OrvelUI
