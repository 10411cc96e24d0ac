#include "OrvelBlur/Wayland/FilledWindow.h"

#include <QBackingStore>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QWindow>
#include <cmath>
#include <utility>

#include "OrvelBlur/Grain.h"
#include "OrvelSystem/Wayland/Compositor.h"

namespace OrvelBlur {

namespace {

/// Colour and grain in one tile, because filling with a tile costs no more than filling with a
/// colour.
QPixmap grainOver(const OrvelCore::Color& color) {
    const auto grey = Grain::pixels(Grain::tileSize, Grain::seed);
    const auto mix = [](double component, std::uint8_t level) {
        return static_cast<int>(
            std::lround((1 - Grain::opacity) * component * 255 + Grain::opacity * level));
    };
    QImage tile(Grain::tileSize, Grain::tileSize, QImage::Format_RGB32);
    auto level = grey.begin();
    for (int y = 0; y < Grain::tileSize; ++y) {
        for (int x = 0; x < Grain::tileSize; ++x, ++level)
            tile.setPixel(
                x, y,
                qRgb(mix(color.red, *level), mix(color.green, *level), mix(color.blue, *level)));
    }
    return QPixmap::fromImage(tile);
}

}  // namespace

FilledWindow::FilledWindow(const std::optional<OrvelCore::Color>& color)
    : tile_(color ? grainOver(*color) : QPixmap()) {
    setWindowFlags(OrvelSystem::Compositor::rolelessWindow);
    setAttribute(color ? Qt::WA_OpaquePaintEvent : Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(QStringLiteral("Karvo"));
}

void FilledWindow::setContent(std::shared_ptr<const QtPanelContent> content) {
    content_ = std::move(content);
    if (widget_) {
        // The content may be the caller.
        widget_->hide();
        widget_.release()->deleteLater();
    }
    if (isFilled_) makeContent();
}

void FilledWindow::clear() {
    setContent(nullptr);
    if (isFilled_) repaint();
}

void FilledWindow::fill(const QSize& area) {
    resize(area);
    if (!isFilled_) windowHandle()->installEventFilter(this);
    setUpdatesEnabled(true);
    repaint();
    if (std::exchange(isFilled_, true)) return;
    QTimer::singleShot(0, this, [this] {
        if (!widget_) makeContent();
    });
}

void FilledWindow::stopDrawing() {
    setUpdatesEnabled(false);
    isFilled_ = false;
}

void FilledWindow::makeContent() {
    if (!content_) return;
    widget_ = content_->makeWidget();
    QWidget* const wanted = widget_->focusWidget();
    widget_->setParent(this);
    placeContent();
    widget_->show();
    (wanted != nullptr ? wanted : widget_.get())->setFocus();
}

void FilledWindow::placeContent() {
    if (widget_) widget_->setGeometry(content_->placement(*widget_, size()));
}

void FilledWindow::deliver(QKeyEvent& event) {
    if (QWidget* const field = focusWidget()) QCoreApplication::sendEvent(field, &event);
}

// The scale of a surface may arrive after its size. Qt then draws only what changes next.
bool FilledWindow::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Expose && devicePixelRatioF() != paintedScale_) update();
    return false;
}

// When the scale of an output changes, its surface keeps its number of pixels. Qt then draws into
// the buffers that it has, and as if they still had the former scale.
bool FilledWindow::correctBufferScale() {
    auto* const buffer = backingStore()->paintDevice();
    if (buffer->devType() != QInternal::Image) return false;
    auto& image = *static_cast<QImage*>(buffer);
    if (image.devicePixelRatio() == devicePixelRatioF()) return false;
    image.setDevicePixelRatio(devicePixelRatioF());
    return true;
}

void FilledWindow::paintEvent(QPaintEvent* event) {
    // This event is clipped for the former scale.
    if (correctBufferScale()) update();
    QPainter painter(this);
    const bool isWhole = event->rect().contains(rect());
    if (isWhole)
        paintedScale_ = devicePixelRatioF();
    else if (devicePixelRatioF() != paintedScale_)
        update();
    if (tile_.isNull()) return;
    // A tile has the same number of pixels on every screen.
    const double scale = devicePixelRatioF();
    painter.scale(1 / scale, 1 / scale);
    painter.fillRect(QRectF(0, 0, std::ceil(width() * scale), std::ceil(height() * scale)), tile_);
}

void FilledWindow::resizeEvent(QResizeEvent*) {
    placeContent();
}

void FilledWindow::keyPressEvent(QKeyEvent* event) {
    onKey(*event);
}

void FilledWindow::keyReleaseEvent(QKeyEvent*) {}

void FilledWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) onClick();
}

}  // namespace OrvelBlur
