#include "OrvelUI/Qt/CornerPickerWidget.h"

#include <QLinearGradient>

#include "OrvelUI/Qt/ControlDrawing.h"

namespace OrvelUI {

class CornerPickerWidget::Target final : public FormOption {
  public:
    explicit Target(QWidget* parent) : FormOption(QAccessible::CheckBox, parent) {
        constexpr double side = CornerPicker::targetSide;
        setFixedSize(Drawing::scaled({0, 0, side, side}).size());
    }

    void setContent(const CornerPicker::Target& target, const FormStyle& style) {
        setOption(shownText(target.title), shownText(target.hint), target.chosen, target.pick);
        setToolTip(shownText(target.title));
        target_ = target;
        style_ = style;
        update();
    }
    const CornerPicker::Target& content() const { return target_; }

  protected:
    void paintEvent(QPaintEvent*) override {
        PointPainter painter(this);
        const QPointF centre = painter.rect().center();
        constexpr double side = CornerPicker::spotSide;
        const QRectF spot(centre.x() - side / 2, centre.y() - side / 2, side, side);
        const auto& colors = style_.colors;
        // Drawn over the desktop picture, whose colours are the same in every theme.
        painter.setPen(QPen(Drawing::color({Palette::lockInk, target_.chosen ? 1 : 0.75}), 1.5));
        painter.setBrush(target_.chosen
                             ? Drawing::color(colors.accent())
                             : Drawing::color({Palette::island, highlight() > 0 ? 0.6 : 0.35}));
        painter.drawEllipse(spot.adjusted(1, 1, -1, -1));
        if (target_.chosen)
            Drawing::symbol(
                painter, {.name = "checkmark", .size = 14, .ink = colors.chip(true).text}, centre);
        else if (target_.marked)
            Drawing::symbol(
                painter,
                {.name = "exclamationmark.triangle", .size = 13, .ink = {Palette::lockInk}},
                centre - QPointF(0, 0.5));
        if (hasFocus()) Drawing::focusRing(painter, painter.rect(), 17, {Palette::lockInk});
    }

  private:
    CornerPicker::Target target_;
    FormStyle style_;
};

CornerPickerWidget::CornerPickerWidget(QWidget* parent) : FormControlWidget(parent) {}

void CornerPickerWidget::setContent(const FormRow& row, const FormStyle& style) {
    const auto& picker = std::get<CornerPicker>(row.control);
    style_ = style;
    while (targets_.size() < picker.targets.size()) {
        targets_.push_back(new Target(this));
        targets_.back()->show();
    }
    std::vector<FormOption*> options;
    for (std::size_t i = 0; i < targets_.size(); ++i) {
        targets_[i]->setContent(picker.targets[i], style);
        options.push_back(targets_[i]);
    }
    if (!options.empty()) settleTabStops(options);
    update();
}

QSize CornerPickerWidget::sizeHint() const {
    return Drawing::scaled({0, 0, CornerPicker::display.width, CornerPicker::display.height})
        .size();
}

QRectF CornerPickerWidget::display() const {
    const double width_ = width() / Drawing::uiScale();
    return {(width_ - CornerPicker::display.width) / 2, 0, CornerPicker::display.width,
            CornerPicker::display.height};
}

void CornerPickerWidget::resizeEvent(QResizeEvent*) {
    const QPointF origin = display().topLeft();
    for (auto* target : targets_) {
        const auto place = CornerPicker::place(target->content().corner);
        target->move(Drawing::scaled({origin.x() + place.x, origin.y() + place.y, 0, 0}).topLeft());
    }
}

void CornerPickerWidget::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    const QRectF rect = display();
    QLinearGradient desktop(rect.topLeft(), rect.bottomLeft());
    desktop.setColorAt(0, Drawing::color({Palette::desktopTop}));
    desktop.setColorAt(1, Drawing::color({Palette::desktopBottom}));
    painter.setPen(QPen(Drawing::color(style_.colors.hairline()), 1));
    painter.setBrush(desktop);
    painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), 12, 12);
}

}  // namespace OrvelUI
