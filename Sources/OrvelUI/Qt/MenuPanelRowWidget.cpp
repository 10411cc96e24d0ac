#include "OrvelUI/Qt/MenuPanelRowWidget.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/Qt/ControlDrawing.h"

namespace OrvelUI {

using Kind = MenuPanelRow::Kind;
using Role = MenuPanelControl::Role;
using Button = MenuPanelButton;
using Row = MenuPanelRow;

namespace {

// In points. The line above the footer, which stays in place while the rows above scroll.
constexpr double footerLine = 3;

QString shown(const std::string& text, bool verbatim) {
    return QString::fromStdString(verbatim ? text : Wording::shown(text));
}

void describe(PressableButton& button, const MenuPanelControl& control) {
    button.setAccessibleName(shown(control.name, control.verbatim));
    button.setAccessibleDescription(shown(control.hint, false));
    button.setEnabled(control.enabled);
    button.setCheckable(control.role != Role::button);
    button.setChecked(control.on);
}

QPainter& begun(QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(Drawing::uiScale(), Drawing::uiScale());
    return painter;
}

void separator(QPainter& painter, double width, double y) {
    const double line = 1 / painter.deviceTransform().m22();
    painter.fillRect(Drawing::snapped(painter, {Row::inset + Row::padding, y,
                                                width - 2 * (Row::inset + Row::padding), line}),
                     Drawing::color({Palette::lockInk, 0.12}));
}

void fill(QPainter& painter, const QRectF& rect, double radius, const Palette::Ink& ink) {
    if (ink.opacity <= 0) return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(Drawing::color(ink));
    painter.drawRoundedRect(rect, radius, radius);
}

}  // namespace

void MenuPanelButtonWidget::setContent(const MenuPanelButton& content, bool framed) {
    describe(*this, content.control);
    if (content == content_ && framed == framed_) return;
    content_ = content;
    framed_ = framed;
    update();
}

QSize MenuPanelButtonWidget::sizeHint() const {
    double width = Button::height;
    if (!content_.label.text.empty()) {
        const QFontMetricsF metrics(Drawing::font(content_.label.size, content_.label.weight));
        width = std::ceil(metrics.horizontalAdvance(Drawing::text(content_.label))) +
                2 * Button::padding;
    }
    return Drawing::scaled({0, 0, width, Button::height}).size();
}

void MenuPanelButtonWidget::paintEvent(QPaintEvent*) {
    QPainter device(this);
    QPainter& painter = begun(device);
    const QRectF rect(0, 0, width() / Drawing::uiScale(), height() / Drawing::uiScale());
    fill(painter, rect, Button::cornerRadius,
         {Palette::lockInk, highlight() + (framed_ ? 0.1 : 0)});
    if (content_.label.text.empty()) {
        painter.save();
        painter.translate(rect.center());
        painter.rotate(content_.turn);
        Drawing::symbol(painter, content_.symbol, {0, 0});
        painter.restore();
    } else {
        Drawing::label(painter, content_.label, rect, Qt::AlignHCenter);
    }
    if (hasFocus()) Drawing::focusRing(painter, rect, Button::cornerRadius);
}

MenuPanelRowWidget::MenuPanelRowWidget(bool reduceMotion, Perform perform, QWidget* parent)
    : PressableButton(parent), reduceMotion_(reduceMotion), perform_(std::move(perform)) {
    connect(this, &QAbstractButton::clicked, this, [this] {
        if (content_.control) perform_(content_.control->action);
    });
}

void MenuPanelRowWidget::setContent(const MenuPanelRow& content) {
    if (content == content_) return;
    content_ = content;
    const auto& control = content.control;
    const bool hasSwitch = control && control->role == Role::toggle;
    if (hasSwitch) {
        if (switch_ == nullptr) switch_ = new IslandSwitchWidget(reduceMotion_, this);
        switch_->setContent(
            {.on = control->on, .label = control->name, .hint = control->hint, .toggle = [this] {
                 perform_(content_.control->action);
             }});
    }
    setFocusPolicy(isButton() ? Qt::TabFocus : Qt::NoFocus);
    if (isButton()) {
        describe(*this, *control);
    } else {
        // A switch has the title as its own name.
        const auto whole = [](const LabelContent& label) {
            return Drawing::text(label) + QString::fromStdString(label.tail);
        };
        QStringList name{hasSwitch ? QString() : whole(content.title), whole(content.subtitle)};
        name.removeAll(QString());
        setAccessibleName(name.join(QStringLiteral(", ")));
    }
    if (content.keycaps) {
        auto& owner = switch_ != nullptr ? static_cast<QWidget&>(*switch_) : *this;
        owner.setAccessibleDescription(shown(control->hint, false) + u' ' +
                                       shown(Keycaps::spoken(content.keycaps->caps), false));
    }
    while (buttons_.size() < content.buttons.size()) {
        const std::size_t index = buttons_.size();
        buttons_.push_back(new MenuPanelButtonWidget(this));
        connect(buttons_.back(), &QAbstractButton::clicked, this,
                [this, index] { perform_(content_.buttons[index].control.action); });
    }
    for (std::size_t i = 0; i < content.buttons.size(); ++i)
        buttons_[i]->setContent(content.buttons[i], content.kind == Kind::item &&
                                                        !content.buttons[i].label.text.empty());
    layOut();
    update();
}

std::vector<QWidget*> MenuPanelRowWidget::focusable() const {
    std::vector<QWidget*> widgets(buttons_.begin(), buttons_.end());
    if (switch_ != nullptr) widgets.push_back(switch_);
    if (isButton()) widgets.push_back(const_cast<MenuPanelRowWidget*>(this));
    return widgets;
}

bool MenuPanelRowWidget::hitButton(const QPoint& at) const {
    return content_.control && QAbstractButton::hitButton(at);
}

QRectF MenuPanelRowWidget::bounds() const {
    return {0, 0, width() / Drawing::uiScale(), height() / Drawing::uiScale()};
}

void MenuPanelRowWidget::layOut() {
    const double scale = Drawing::uiScale();
    const QRectF row = bounds();
    const double down = content_.kind == Kind::footer ? footerLine / 2 : 0;
    const auto place = [&](QWidget& widget, double left) {
        const QSize size = widget.sizeHint();
        const double top = (row.height() - size.height() / scale) / 2 + down;
        widget.setGeometry(QRect(QPointF(left * scale, top * scale).toPoint(), size));
        return size.width() / scale;
    };
    if (content_.kind == Kind::footer) {
        // The first button is at the start of the row, the last at its end.
        for (std::size_t i = 0; i < buttons_.size(); ++i) {
            const double width = buttons_[i]->sizeHint().width() / scale;
            place(*buttons_[i], i == 0 ? Row::inset : row.width() - Row::inset - width);
        }
        return;
    }
    double right = row.width() - Row::inset - (content_.kind == Kind::header ? 4 : Row::padding);
    if (switch_ != nullptr) {
        // The switch's focus ring extends slightly beyond the right edge of the row's content.
        right += 4;
        right -= place(*switch_, right - switch_->sizeHint().width() / scale) + Row::gap / 2;
    }
    for (auto button = buttons_.rbegin(); button != buttons_.rend(); ++button)
        right -= place(**button, right - (*button)->sizeHint().width() / scale) + Row::gap / 2;
}

void MenuPanelRowWidget::resizeEvent(QResizeEvent*) {
    layOut();
}

double MenuPanelRowWidget::end() const {
    double right = bounds().right() - Row::inset - Row::padding;
    if (content_.mark) right -= content_.mark->size + Row::gap;
    for (const QWidget* child : focusable()) {
        if (child != this) right = std::min(right, child->x() / Drawing::uiScale() - Row::gap / 2);
    }
    return right;
}

void MenuPanelRowWidget::paintEvent(QPaintEvent*) {
    QPainter device(this);
    QPainter& painter = begun(device);
    const QRectF row = bounds();
    if (content_.kind == Kind::footer) return separator(painter, row.width(), footerLine);
    if (content_.kind == Kind::separator) return separator(painter, row.width(), row.center().y());
    const bool prominent = content_.kind == Kind::prominent;
    const QRectF box = prominent ? row.adjusted(Row::inset + 4, 3, -Row::inset - 4, -5)
                                 : row.adjusted(Row::inset, 1, -Row::inset, -1);
    const double radius = prominent ? 11 : Row::cornerRadius;
    if (prominent) {
        fill(painter, box, radius, {Palette::accentDark});
        fill(painter, box, radius, {isDown() ? Palette::island : Palette::lockInk, highlight()});
    } else if (content_.control) {
        fill(painter, box, radius, {Palette::lockInk, highlight() * 0.85});
    }

    const double middle = box.center().y();
    double left = Row::inset + Row::padding;
    const bool heading = content_.kind == Kind::header || content_.kind == Kind::section;
    if (content_.symbol) {
        const QRectF field(left, middle - Row::fieldSide / 2, Row::fieldSide, Row::fieldSide);
        fill(painter, field, 8, content_.field);
        Drawing::symbol(painter, *content_.symbol, field.center());
        left = field.right() + Row::gap;
    } else if (content_.icon) {
        // Centred below the symbols' backgrounds in the rows above.
        const double side = content_.icon->size;
        Drawing::avatar(painter, *content_.icon,
                        {left + (Row::fieldSide - side) / 2, middle - side / 2, side, side});
        left += Row::fieldSide + Row::gap;
    }
    const double right = end();
    if (content_.mark)
        Drawing::symbol(painter, *content_.mark,
                        {right + Row::gap + content_.mark->size / 2, middle});

    const bool hasSubtitle = !content_.subtitle.text.empty();
    const double top =
        middle - (hasSubtitle ? (Row::titleLine + Row::subtitleLine) / 2 : Row::titleLine / 2);
    double titleEnd = right;
    if (content_.keycaps) {
        const double width = Drawing::keycapsWidth(*content_.keycaps);
        const double x = right - width;
        // Keep the keycaps clear of the subtitle, which may be longer than the title.
        const double raised = hasSubtitle ? 3 : 0;
        Drawing::keycaps(painter, *content_.keycaps, content_.keycaps->inks(),
                         {x, top + Row::titleLine / 2 - raised});
        titleEnd = x - Row::gap / 2;
    }
    Drawing::label(painter, content_.title,
                   {left, heading ? row.top() : top, titleEnd - left,
                    heading ? row.height() : Row::titleLine});
    if (hasSubtitle)
        Drawing::label(painter, content_.subtitle,
                       {left, top + Row::titleLine, right - left, Row::subtitleLine});
    if (!hasFocus()) return;
    // A ring in the accent colour would not be visible on a background of that colour.
    Drawing::focusRing(painter, box, radius, {prominent ? Palette::lockInk : Palette::accentDark});
}

}  // namespace OrvelUI
