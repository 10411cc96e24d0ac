#include "OrvelUI/Qt/RowActionsWidget.h"

namespace OrvelUI {

RowActionsWidget::RowActionsWidget(QWidget* parent)
    : FormControlWidget(parent),
      flow_{.gap = Drawing::scaled({0, 0, 8, 0}).width()},
      keycaps_(new PulsingKeycapsWidget(this)),
      text_(new FormLabel(this)),
      spinner_(new SpinnerWidget(this)),
      symbol_(new SymbolWidget(this)) {
    text_->setWordWrap(false);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void RowActionsWidget::setContent(const FormRow& row, const FormStyle& style) {
    const auto& actions = std::get<RowActions>(row.control);
    keycaps_->setVisible(actions.keycaps.has_value());
    if (actions.keycaps) keycaps_->setContent(*actions.keycaps, style);
    text_->setContent({.text = actions.text, .role = TextRole::note}, style.colors);
    spinner_->setContent(style);
    spinner_->setVisible(actions.spins);
    symbol_->setContent({.name = actions.symbol, .size = 20, .ink = style.colors.accent()},
                        actions.symbolName);
    symbol_->setVisible(!actions.symbol.empty());
    while (buttons_.size() > actions.buttons.size()) {
        buttons_.back()->hide();
        buttons_.back()->deleteLater();
        buttons_.pop_back();
    }
    while (buttons_.size() < actions.buttons.size()) {
        buttons_.push_back(new FormButtonWidget(this));
        buttons_.back()->show();
    }
    for (std::size_t i = 0; i < buttons_.size(); ++i)
        buttons_[i]->setContent(actions.buttons[i], style);
    flow_.arrange(shown(), width(), true);
    updateGeometry();
}

std::vector<QWidget*> RowActionsWidget::shown() const {
    std::vector<QWidget*> widgets;
    for (QWidget* widget : std::initializer_list<QWidget*>{keycaps_, text_, spinner_, symbol_})
        if (!widget->isHidden()) widgets.push_back(widget);
    widgets.insert(widgets.end(), buttons_.begin(), buttons_.end());
    return widgets;
}

QSize RowActionsWidget::sizeHint() const {
    return flow_.natural(shown());
}

int RowActionsWidget::heightForWidth(int width) const {
    return flow_.arrange(shown(), width, false);
}

void RowActionsWidget::resizeEvent(QResizeEvent*) {
    flow_.arrange(shown(), width(), true);
}

}  // namespace OrvelUI
