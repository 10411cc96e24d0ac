#include "OrvelUI/Qt/FormPictures.h"

#include <cmath>
#include <numbers>

#include "OrvelUI/Qt/ControlDrawing.h"
#include "OrvelUI/Qt/FormAccessibility.h"
#include "OrvelUI/Qt/SceneDrawing.h"

namespace OrvelUI {

namespace {

// In points.
constexpr double desktopWidth = 272;
constexpr double pulseReach = 5;
constexpr double pulsePeriod = 1.8;  // seconds
constexpr double dotSide = 7;
constexpr double dotStep = 16;

}  // namespace

MiniDesktopWidget::MiniDesktopWidget(QWidget* parent) : FormControlWidget(parent) {
    installFormAccessibility();
    setAccessibleName(shownText(MiniDesktop::label));
}

void MiniDesktopWidget::setContent(const FormRow& row, const FormStyle& style) {
    moves_ = std::get<MiniDesktop>(row.control).animated && !style.reduceMotion;
    updateMoving();
    update();
}

void MiniDesktopWidget::updateMoving() {
    const bool moves = moves_ && isVisible();
    if (moves == frames_.isRunning()) return;
    if (!moves) return frames_.stop();
    frames_.start([this](double seconds) {
        const auto before = LockingPicture::at(seconds_);
        seconds_ = seconds;
        // The picture does not change during most of the loop.
        if (LockingPicture::at(seconds) != before) update();
        return true;
    });
}

void MiniDesktopWidget::showEvent(QShowEvent*) {
    updateMoving();
}

void MiniDesktopWidget::hideEvent(QHideEvent*) {
    updateMoving();
}

QSize MiniDesktopWidget::sizeHint() const {
    return Drawing::scaled({0, 0, desktopWidth,
                            desktopWidth * DesktopScene::size.height / DesktopScene::size.width})
        .size();
}

void MiniDesktopWidget::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    const auto now = moves_ ? LockingPicture::at(seconds_) : LockingPicture{};
    Drawing::lockedScene(painter, painter.rect(), 12,
                         {.look = OrvelCore::OverlayLook::standardLock,
                          .progress = now.blur,
                          .card = now.card,
                          .speaks = true});
}

MenuBarControl::MenuBarControl(QWidget* parent)
    : FormControlWidget(parent), drawing_(new MenuBarDrawingWidget(this)) {}

void MenuBarControl::setContent(const FormRow& row, const FormStyle&) {
    drawing_->setContent(std::get<MenuBarDrawing>(row.control));
}

void MenuBarControl::resizeEvent(QResizeEvent*) {
    drawing_->setGeometry(rect());
}

PulsingKeycapsWidget::PulsingKeycapsWidget(QWidget* parent)
    : QWidget(parent), caps_(new KeycapsWidget(this)) {}

void PulsingKeycapsWidget::setContent(const PulsingKeycaps& content, const FormStyle& style) {
    caps_->setContent(content.keycaps, style.colors.theme);
    caps_->resize(caps_->sizeHint());
    pulses_ = PulsingKeycaps::of(content.keycaps, style.reduceMotion).pulses && content.pulses;
    style_ = style;
    updatePulse();
    updateGeometry();
    update();
}

QSize PulsingKeycapsWidget::sizeHint() const {
    // Includes space for the pulse even without one, so that nothing moves when it ends.
    const double room = caps_->content().large ? pulseReach : 0;
    const int reach = Drawing::scaled({0, 0, room, 0}).width();
    return caps_->sizeHint() + QSize(2 * reach, 2 * reach);
}

void PulsingKeycapsWidget::resizeEvent(QResizeEvent*) {
    caps_->move((width() - caps_->width()) / 2, (height() - caps_->height()) / 2);
}

void PulsingKeycapsWidget::showEvent(QShowEvent*) {
    updatePulse();
}

void PulsingKeycapsWidget::hideEvent(QHideEvent*) {
    updatePulse();
}

void PulsingKeycapsWidget::updatePulse() {
    const bool pulses = pulses_ && isVisible();
    if (pulses == frames_.isRunning()) return;
    if (!pulses) {
        frames_.stop();
        glow_ = 0;
        return;
    }
    frames_.start([this](double seconds) {
        glow_ = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * seconds / pulsePeriod);
        update();
        return true;
    });
}

void PulsingKeycapsWidget::paintEvent(QPaintEvent*) {
    if (glow_ <= 0) return;
    PointPainter painter(this);
    auto ink = style_.colors.accent();
    ink.opacity = 0.75 * glow_;
    painter.setPen(QPen(Drawing::color(ink), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(painter.rect().adjusted(1, 1, -2, -1), 10, 10);
}

SpinnerWidget::SpinnerWidget(QWidget* parent) : QWidget(parent) {
    installFormAccessibility();
    setAccessibleName(QString::fromUtf8(Spinner::label.data()));
}

void SpinnerWidget::setContent(const FormStyle& style) {
    style_ = style;
    update();
}

QSize SpinnerWidget::sizeHint() const {
    const double side = Spinner::diameter + 2 * Spinner::stroke;
    return Drawing::scaled({0, 0, side, side}).size();
}

void SpinnerWidget::showEvent(QShowEvent*) {
    frames_.start([this](double seconds) {
        turn_ = std::fmod(seconds / Spinner::period, 1);
        update();
        return true;
    });
}

void SpinnerWidget::hideEvent(QHideEvent*) {
    frames_.stop();
}

void SpinnerWidget::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    Drawing::spinner(painter, painter.rect().center(), turn_, style_.colors.track(false).fill,
                     style_.colors.accent());
}

PageDotsWidget::PageDotsWidget(QWidget* parent) : QWidget(parent) {
    installFormAccessibility();
}

void PageDotsWidget::setContent(const PageDots& dots, const FormStyle& style) {
    dots_ = dots;
    style_ = style;
    setAccessibleName(QString::fromStdString(dots.spoken()));
    update();
}

QSize PageDotsWidget::sizeHint() const {
    return Drawing::scaled({0, 0, (dots_.count - 1) * dotStep + dotSide, dotSide}).size();
}

void PageDotsWidget::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < dots_.count; ++i) {
        const bool isCurrent = i + 1 == dots_.current;
        painter.setBrush(
            Drawing::color(isCurrent ? style_.colors.accent() : style_.colors.track(false).fill));
        painter.drawEllipse(QRectF(i * dotStep, 0, dotSide, dotSide));
    }
}

}  // namespace OrvelUI
