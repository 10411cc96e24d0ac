#pragma once

#include "OrvelUI/Qt/FlowLayout.h"
#include "OrvelUI/Qt/FormButtons.h"
#include "OrvelUI/Qt/FormControlWidget.h"

namespace OrvelUI {

/// A control that consists of options of one class, side by side or in columns.
template <class Option>
class OptionsWidget : public FormControlWidget {
  public:
    OptionsWidget(FlowLayout flow, QWidget* parent) : FormControlWidget(parent), flow_(flow) {
        QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
        policy.setHeightForWidth(true);
        setSizePolicy(policy);
    }

    QSize sizeHint() const override { return flow_.natural(widgets()); }
    int heightForWidth(int width) const override { return flow_.arrange(widgets(), width, false); }

  protected:
    /// Shows one option for each element of `contents`.
    template <class Content>
    void setOptions(const std::vector<Content>& contents, const FormStyle& style) {
        while (options_.size() > contents.size()) {
            options_.back()->hide();
            options_.back()->deleteLater();
            options_.pop_back();
        }
        while (options_.size() < contents.size()) {
            options_.push_back(new Option(this));
            options_.back()->show();
        }
        for (std::size_t i = 0; i < contents.size(); ++i)
            options_[i]->setContent(contents[i], style);
        std::vector<FormOption*> plain(options_.begin(), options_.end());
        if (!plain.empty()) settleTabStops(plain);
        flow_.arrange(widgets(), width(), true);
        updateGeometry();
    }
    void resizeEvent(QResizeEvent*) override { flow_.arrange(widgets(), width(), true); }
    const std::vector<Option*>& options() const { return options_; }

  private:
    std::vector<QWidget*> widgets() const { return {options_.begin(), options_.end()}; }

    FlowLayout flow_;
    std::vector<Option*> options_;
};

/// One value of a strip.
class ChipWidget final : public FormOption {
  public:
    explicit ChipWidget(QWidget* parent) : FormOption(QAccessible::RadioButton, parent) {}

    void setContent(const ChoiceStrip::Chip& chip, const FormStyle& style);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    LabelContent label() const;

    ChoiceStrip::Chip chip_;
    FormStyle style_;
};

class ChoiceStripWidget final : public OptionsWidget<ChipWidget> {
  public:
    explicit ChoiceStripWidget(QWidget* parent);
    void setContent(const FormRow& row, const FormStyle& style) override;
};

/// A look of the lock, above its name and description.
class ThumbnailWidget final : public FormOption {
  public:
    explicit ThumbnailWidget(QWidget* parent) : FormOption(QAccessible::RadioButton, parent) {}

    void setContent(const StyleThumbnails::StyleThumbnail& thumbnail, const FormStyle& style);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::vector<LabelContent> detail() const;

    StyleThumbnails::StyleThumbnail thumbnail_;
    FormStyle style_;
};

class StyleThumbnailsWidget final : public OptionsWidget<ThumbnailWidget> {
  public:
    explicit StyleThumbnailsWidget(QWidget* parent);
    void setContent(const FormRow& row, const FormStyle& style) override;
    Place place() const override { return Place::below; }
};

/// An app with a mark that shows whether it is chosen.
class AppTileWidget final : public FormOption {
  public:
    explicit AppTileWidget(QWidget* parent) : FormOption(QAccessible::CheckBox, parent) {}

    void setContent(const AppChoiceTiles::AppChoiceTile& tile, const FormStyle& style);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    AppChoiceTiles::AppChoiceTile tile_;
    FormStyle style_;
};

class AppChoiceTilesWidget final : public OptionsWidget<AppTileWidget> {
  public:
    explicit AppChoiceTilesWidget(QWidget* parent);
    void setContent(const FormRow& row, const FormStyle& style) override;
    Place place() const override { return Place::below; }
};

}  // namespace OrvelUI
