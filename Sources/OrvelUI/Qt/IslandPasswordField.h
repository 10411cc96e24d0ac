#pragma once

#include <QBasicTimer>
#include <QWidget>
#include <functional>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/LockCardModel.h"

namespace OrvelUI {

class FieldEndButton;

/// Takes the password. Typed text goes directly into the model's own buffer: the widget stores no
/// text, and neither copies to the clipboard nor pastes from it.
class IslandPasswordField final : public QWidget {
  public:
    IslandPasswordField(LockCardModel& model, double cornerRadius, QWidget* parent);

    /// Called for Escape. If empty, Escape clears the field.
    std::function<void()> onEscape;

    const PasswordFieldContent& content() const { return content_; }
    void setContent(const PasswordFieldContent& content);

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    void insert(const QString& text);
    void eraseSelection();
    void setAllSelected(bool selected);
    void startCaret();
    bool showsCaret() const;
    double caretX() const;

    LockCardModel& model_;
    double cornerRadius_;
    PasswordFieldContent content_;
    FieldEndButton* end_;
    QBasicTimer caretTimer_;
    int caretBlinks_ = 0;
    bool caretLit_ = true;
    bool allSelected_ = false;
};

}  // namespace OrvelUI
