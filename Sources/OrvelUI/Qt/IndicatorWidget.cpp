#include "OrvelUI/Qt/IndicatorWidget.h"

#include <cmath>

#include "OrvelUI/Controls.h"
#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/Qt/ControlDrawing.h"

namespace OrvelUI {

using Kind = IndicatorContent::Kind;

IndicatorWidget::IndicatorWidget(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void IndicatorWidget::setContent(const IndicatorContent& content, bool still) {
    if (content == content_ && still == still_) return;
    content_ = content;
    still_ = still;
    const QString hint = QString::fromStdString(Wording::shown(content.accessibleHint));
    setAccessibleName(QString::fromStdString(Wording::shown(content.accessibleName)));
    setAccessibleDescription(hint);
    setVisible(content.kind != Kind::none);
    updateTurning();
    update();
}

void IndicatorWidget::showEvent(QShowEvent*) {
    updateTurning();
}

void IndicatorWidget::hideEvent(QHideEvent*) {
    updateTurning();
}

void IndicatorWidget::updateTurning() {
    const bool turns = content_.kind == Kind::spinner && !still_ && isVisible();
    if (turns == frames_.isRunning()) return;
    if (!turns) {
        frames_.stop();
        return;
    }
    frames_.start([this](double seconds) {
        turn_ = std::fmod(seconds / Spinner::period, 1);
        update();
        return true;
    });
}

void IndicatorWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(Drawing::uiScale(), Drawing::uiScale());
    const QPointF centre(IndicatorContent::size / 2, IndicatorContent::size / 2);
    if (content_.kind == Kind::touchID) {
        Drawing::symbol(painter,
                        {.name = "touchid",
                         .size = IndicatorContent::size,
                         .ink = {Palette::lockInk, Palette::islandFieldTextOpacity}},
                        centre);
    } else if (content_.kind == Kind::spinner) {
        Drawing::spinner(painter, centre, turn_, {Palette::lockInk, 0.2}, {Palette::lockInk});
    }
}

}  // namespace OrvelUI
