#include "OrvelUI/Qt/FormButtons.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <algorithm>

#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/Qt/ControlDrawing.h"
#include "OrvelUI/Qt/FormAccessibility.h"

namespace OrvelUI {

using Kind = FormButton::Kind;

namespace {

constexpr double padding = 12;
constexpr double radius = 7;
constexpr double symbolSize = 16;

}  // namespace

FormButtonWidget::FormButtonWidget(QWidget* parent) : PressableButton(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, [this] {
        // A copy, because the handler may replace it.
        const auto press = button_.press;
        press();
    });
}

void FormButtonWidget::setContent(const FormButton& button, const FormStyle& style) {
    const bool changed = button != button_ || style != style_;
    button_ = button;
    if (!changed) return;
    style_ = style;
    const auto& name = button.accessibleName.empty() ? button.title : button.accessibleName;
    setAccessibleName(button.verbatim ? QString::fromStdString(name) : shownText(name));
    setAccessibleDescription(shownText(button.hint));
    setToolTip(button.kind == Kind::symbol ? shownText(button.title) : QString());
    setEnabled(button.enabled);
    setCursor(button.kind == Kind::link ? Qt::PointingHandCursor : Qt::ArrowCursor);
    updateGeometry();
    update();
}

LabelContent FormButtonWidget::label() const {
    return {.text = button_.title,
            .tail = {},
            .size = 13,
            .weight = LabelContent::Weight::medium,
            .ink = style_.colors.button(button_.kind, button_.enabled).text};
}

QSize FormButtonWidget::sizeHint() const {
    double width = height;
    if (button_.kind != Kind::symbol) {
        const auto content = label();
        const QFontMetricsF metrics(Drawing::font(content.size, content.weight));
        width = metrics.horizontalAdvance(Drawing::text(content)) +
                2 * (button_.kind == Kind::link ? 4 : padding) + 1;
    }
    return Drawing::scaled({0, 0, width, height}).size();
}

void FormButtonWidget::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    const QRectF rect = painter.rect();
    auto face = style_.colors.button(button_.kind, button_.enabled);
    // Coloured text would lose contrast on a darker background, so the border is highlighted
    // instead.
    const bool isColoured = button_.kind == Kind::link || button_.kind == Kind::destructive;
    if (highlight() > 0 && isColoured)
        face.border = {.value = face.text.value, .opacity = isDown() ? 1 : 0.6};
    painter.face(rect, radius, face);
    if (highlight() > 0 && !isColoured) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Drawing::color(style_.colors.highlight(isDown())));
        painter.drawRoundedRect(rect, radius, radius);
    }
    if (button_.kind == Kind::symbol)
        Drawing::symbol(painter, {.name = button_.symbol, .size = symbolSize, .ink = face.text},
                        rect.center());
    else
        Drawing::label(painter, label(), rect, Qt::AlignHCenter);
    if (!hasFocus()) return;
    // A ring in the accent colour cannot be seen on a button that is filled with it.
    if (button_.kind == Kind::prominent && button_.enabled)
        Drawing::focusRing(painter, rect.adjusted(1.5, 1.5, -1.5, -1.5), radius - 1.5, face.text);
    else
        Drawing::focusRing(painter, rect, radius, style_.colors.focusRing());
}

FormOption::FormOption(QAccessible::Role role, QWidget* parent)
    : PressableButton(parent), role_(role) {
    installFormAccessibility();
    setCheckable(true);
    connect(this, &QAbstractButton::clicked, this, [this] {
        const auto choose = choose_;
        choose();
    });
}

void FormOption::setOption(const QString& name, const QString& hint, bool chosen,
                           Handler<> choose) {
    setAccessibleName(name);
    setAccessibleDescription(hint);
    setChecked(chosen);
    choose_ = std::move(choose);
}

void FormOption::keyPressEvent(QKeyEvent* event) {
    const bool back = event->key() == Qt::Key_Left || event->key() == Qt::Key_Up;
    const bool forth = event->key() == Qt::Key_Right || event->key() == Qt::Key_Down;
    if (!back && !forth) return PressableButton::keyPressEvent(event);
    std::vector<FormOption*> options;
    for (auto* child : parentWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (auto* option = dynamic_cast<FormOption*>(child); option && option->isVisible())
            options.push_back(option);
    const auto self = std::ranges::find(options, this);
    const auto next = back ? (self == options.begin() ? self : self - 1) : self + 1;
    if (next == self || next == options.end()) return;
    (*next)->setFocus(Qt::TabFocusReason);
    // Where any number of options may be chosen, an arrow key chooses nothing.
    if (role_ != QAccessible::CheckBox) (*next)->click();
}

void settleTabStops(const std::vector<FormOption*>& options) {
    const auto chosen =
        std::ranges::find_if(options, [](const FormOption* option) { return option->isChecked(); });
    for (auto* option : options) {
        const bool isStop = option->role() == QAccessible::CheckBox ||
                            option == (chosen == options.end() ? options.front() : *chosen);
        option->setFocusPolicy(isStop ? Qt::TabFocus : Qt::NoFocus);
    }
}

}  // namespace OrvelUI
