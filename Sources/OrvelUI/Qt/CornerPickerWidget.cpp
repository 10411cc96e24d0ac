#include "OrvelUI/Qt/CornerPickerWidget.h"

#include <QLinearGradient>

#include "OrvelUI/Qt/ControlDrawing.h"

namespace OrvelUI {

namespace {

// In points.
constexpr double displayWidth = 208;
constexpr double displayHeight = 122;
constexpr double targetSide = 34;
constexpr double spotSide = 26;

}  // namespace

class CornerPickerWidget::Target final : public FormOption {
  public:
    explicit Target(QWidget* parent) : FormOption(QAccessible::CheckBox, parent) {
        setFixedSize(Drawing::scaled({0, 0, targetSide, targetSide}).size());
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
        const QRectF spot(centre.x() - spotSide / 2, centre.y() - spotSide / 2, spotSide, spotSide);
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
    return Drawing::scaled({0, 0, displayWidth, displayHeight}).size();
}

QRectF CornerPickerWidget::display() const {
    const double width_ = width() / Drawing::uiScale();
    return {(width_ - displayWidth) / 2, 0, displayWidth, displayHeight};
}

void CornerPickerWidget::resizeEvent(QResizeEvent*) {
    using Corner = OrvelCore::TriggerSettings::Corner;
    constexpr double inset = 4;
    const QRectF area = display().adjusted(inset, inset, -inset, -inset);
    for (auto* target : targets_) {
        const auto corner = target->content().corner;
        const bool isLeft = corner == Corner::topLeft || corner == Corner::bottomLeft;
        const bool isTop = corner == Corner::topLeft || corner == Corner::topRight;
        target->move(Drawing::scaled({isLeft ? area.left() : area.right() - targetSide,
                                      isTop ? area.top() : area.bottom() - targetSide, 0, 0})
                         .topLeft());
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
