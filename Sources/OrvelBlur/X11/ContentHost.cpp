#include "OrvelBlur/X11/ContentHost.h"

#include <QKeyEvent>
#include <QTimer>
#include <cmath>

#include <xcb/composite.h>

#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

xcb_connection_t* connection() {
    return X11::shared().connection();
}

int toPixels(int points, double scale) {
    return static_cast<int>(std::lround(points * scale));
}

}  // namespace

ContentHost::ContentHost(xcb_window_t panel, PixelSize panelSize,
                         std::shared_ptr<const QtPanelContent> content,
                         std::function<void()> cancelled)
    : panelSize_(panelSize),
      content_(std::move(content)),
      cancelled_(std::move(cancelled)),
      foreignPanel_(QWindow::fromWinId(panel)),
      widget_(content_->makeWidget()) {
    widget_->installEventFilter(this);
    widget_->setWindowFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
    widget_->setAttribute(Qt::WA_TranslucentBackground);
    widget_->setAttribute(Qt::WA_DontCreateNativeAncestors);
    window_ = static_cast<xcb_window_t>(widget_->winId());
    widget_->windowHandle()->setParent(foreignPanel_.get());
    place();
    widget_->show();
    if (RenderServer::shared().canBlur()) {
        const std::uint32_t watch = xcb_generate_id(connection());
        xcb_damage_create(connection(), watch, window_, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
        damage_ = ServerDamage(watch);
        namePicture();
    }
}

ContentHost::~ContentHost() {
    damage_.reset();
    picture_.reset();
    pixmap_.reset();
    // The widget's window must go first: a foreign window destroys its Qt children. A mapped window
    // would be mapped on the root again, in front of all panels.
    widget_->hide();
    widget_->windowHandle()->setParent(nullptr);
    widget_.reset();
}

// Until Qt has painted the child, its picture is a copy of what the panel showed when the child was
// mapped: the sharp desktop, if the panel was still fading in.
xcb_render_picture_t ContentHost::picture() const {
    return isPainted_ ? picture_.id() : xcb_render_picture_t{XCB_RENDER_PICTURE_NONE};
}

// Qt offers a key to the top-level widget last, when no widget inside has used it. So the key is
// offered to that widget here, and if it does not use it either, Escape means cancel.
bool ContentHost::eventFilter(QObject* watched, QEvent* event) {
    // Qt sends what it paints to the server before it delivers the next event.
    if (event->type() == QEvent::Paint) isPainted_ = true;
    if (event->type() != QEvent::KeyPress ||
        static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape)
        return false;
    event->accept();
    watched->event(event);
    if (!event->isAccepted()) {
        // Deferred, because it may destroy the widget, which Qt is still using.
        QTimer::singleShot(0, this, [this] { cancelled_(); });
    }
    return true;
}

void ContentHost::panelResized(PixelSize panelSize) {
    panelSize_ = panelSize;
    const PixelSize before{frame_.width, frame_.height};
    place();
    // The server makes a new picture for the new size.
    if (before != PixelSize{frame_.width, frame_.height}) isPainted_ = false;
    if (damage_) namePicture();
}

void ContentHost::place() {
    const double scale = widget_->devicePixelRatioF();
    const QSize panel(static_cast<int>(panelSize_.width / scale),
                      static_cast<int>(panelSize_.height / scale));
    const QRect at = content_->placement(*widget_, panel);
    widget_->setGeometry(at);
    frame_ = {toPixels(at.x(), scale), toPixels(at.y(), scale), toPixels(at.width(), scale),
              toPixels(at.height(), scale)};
}

void ContentHost::namePicture() {
    picture_.reset();
    pixmap_.reset();
    const XReply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection(), xcb_get_window_attributes(connection(), window_), nullptr));
    if (!attributes) return;
    const auto format = RenderServer::shared().formatOf(attributes->visual);
    if (!format) return;
    const std::uint32_t name = xcb_generate_id(connection());
    xcb_composite_name_window_pixmap(connection(), window_, name);
    pixmap_ = ServerPixmap(name);
    picture_ = RenderServer::shared().makePicture(name, *format, false);
}

bool ContentHost::takeDamage(const xcb_generic_event_t& event) {
    if (event.response_type != RenderServer::shared().damageEvent() + XCB_DAMAGE_NOTIFY)
        return false;
    const auto& notify = reinterpret_cast<const xcb_damage_notify_event_t&>(event);
    if (notify.drawable != window_) return false;
    xcb_damage_subtract(connection(), damage_.id(), XCB_NONE, XCB_NONE);
    return true;
}

// Qt has selected these events on the child. If they were selected on the panel, the panel would
// take itself for the window that they are about.
bool ContentHost::isEndedBy(const xcb_generic_event_t& event) const {
    switch (event.response_type) {
        case XCB_UNMAP_NOTIFY:
            return reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window == window_;
        case XCB_DESTROY_NOTIFY:
            return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == window_;
        case XCB_CONFIGURE_NOTIFY: {
            const auto& now = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            if (now.window != window_ || PixelRect{now.x, now.y, now.width, now.height} == frame_)
                return false;
            // Qt did not move it and believes that the child is in its place.
            const std::uint32_t values[] = {static_cast<std::uint32_t>(frame_.x),
                                            static_cast<std::uint32_t>(frame_.y),
                                            static_cast<std::uint32_t>(frame_.width),
                                            static_cast<std::uint32_t>(frame_.height)};
            xcb_configure_window(connection(), window_,
                                 XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y |
                                     XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                                 values);
            return false;
        }
        default:
            return false;
    }
}

void ContentHost::focus() {
    // Revert to the parent: if the child is destroyed, the focus stays with the panel and does not
    // go to another program. The timestamp is the server's own, as in every request that must not
    // come too late.
    xcb_set_input_focus(connection(), XCB_INPUT_FOCUS_PARENT, window_, XCB_CURRENT_TIME);
    widget_->activateWindow();
}

}  // namespace OrvelBlur
