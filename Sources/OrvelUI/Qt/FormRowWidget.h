#pragma once

#include "OrvelUI/Qt/FormControlWidget.h"

namespace OrvelUI {

/// A sentence under a row or a section, with a symbol if it is a warning.
class NoteWidget final : public QWidget {
  public:
    explicit NoteWidget(QWidget* parent);

    /// `nullopt` hides the widget. A new warning is announced.
    void setContent(const std::optional<SettingsNote>& note, const FormStyle& style);
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    int textLeft() const;

    SymbolWidget* sign_;
    FormLabel* text_;
    std::optional<SettingsNote> note_;
};

/// The icon of an app.
class AppIconWidget final : public QWidget {
  public:
    using Icon = std::shared_ptr<const OrvelSystem::Picture>;

    explicit AppIconWidget(QWidget* parent);
    void setContent(const Icon& icon, const FormStyle& style);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Icon icon_;
    FormStyle style_;
};

/// One row of a form: an icon, a label above a note, and a control beside or below them.
class FormRowWidget final : public QWidget {
  public:
    /// `centred` is for a row that is centred on the window's background, without the padding of a
    /// card.
    FormRowWidget(const FormRow& row, bool centred, QWidget* parent);

    /// `row` must have the kind of control for which this widget was made.
    void setContent(const FormRow& row, const FormStyle& style);
    const FormRow& content() const { return row_; }
    int heightForWidth(int width) const override { return arrange(width, false); }
    QSize sizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    int arrange(int width, bool place) const;
    int arrangeBeside(int left, int width, bool place) const;
    int arrangeBelow(int left, int width, bool place) const;
    int heightOf(const FormControlWidget* control, int width) const;
    QSize controlSize(int room) const;

    FormRow row_;
    bool centred_;
    AppIconWidget* icon_;
    FormLabel* label_;
    NoteWidget* note_;
    FormControlWidget* control_;
};

}  // namespace OrvelUI
