#include "OrvelModes/X11/MenuPanelWindow.h"

#include <QKeyEvent>
#include <QPainter>
#include <QWindow>
#include <cmath>
#include <utility>

#include <unistd.h>
#include <xcb/shape.h>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/X11/PanelStack.h"
#include "OrvelModes/X11/Compositing.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelSystem/Qt/QtScreens.h"
#include "OrvelSystem/X11/ActiveWindow.h"
#include "OrvelSystem/X11/PointerPresses.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelModes {

using OrvelBlur::PanelStack;
using OrvelCore::Rect;
using OrvelSystem::Appearance;
using OrvelSystem::X11;
using OrvelSystem::XReply;
using OrvelUI::MenuPanelView;
namespace Drawing = OrvelUI::Drawing;
namespace QtScreens = OrvelSystem::QtScreens;

namespace {

// After a click elsewhere, the clicked window takes the keyboard within this time, if it takes it.
constexpr int strandedMilliseconds = 200;

/// The window that has the keyboard; `XCB_NONE` if no particular window has it.
xcb_window_t keyboardOwner() {
    const auto& x11 = X11::shared();
    const XReply<xcb_get_input_focus_reply_t> focus(xcb_get_input_focus_reply(
        x11.connection(), xcb_get_input_focus(x11.connection()), nullptr));
    const bool somebody =
        focus && focus->focus != XCB_INPUT_FOCUS_POINTER_ROOT && focus->focus != x11.root();
    return somebody ? focus->focus : static_cast<xcb_window_t>(XCB_NONE);
}

void giveKeyboardTo(xcb_window_t window) {
    // With the server's current time, because requests older than the last change are ignored. If
    // the window goes, its keys go to the window under the pointer.
    xcb_set_input_focus(X11::shared().connection(), XCB_INPUT_FOCUS_POINTER_ROOT, window,
                        XCB_CURRENT_TIME);
    X11::shared().flush();
}

}  // namespace

/// A card with space for its shadow around it.
class MenuPanelWindow::Window final : public QWidget {
  public:
    explicit Window(MenuPanelWindow& owner) : owner_(owner) {
        setWindowFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
        setAttribute(Qt::WA_TranslucentBackground);
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_X11NetWmWindowTypePopupMenu);
        setWindowTitle(QStringLiteral("Karvo"));
    }

    MenuPanelView* view() const { return view_; }
    void renew(OrvelUI::MenuPanelModel& model) {
        const auto& appearance = Appearance::shared();
        delete std::exchange(view_, nullptr);
        view_ = new MenuPanelView(model, appearance.reducesMotion(), appearance.increasesContrast(),
                                  this);
        view_->show();
        isComposited_ = Compositing::isOn();
    }

    /// `card` is in Qt's screen coordinates.
    void setCard(const QRect& card) {
        const int reach =
            isComposited_ ? static_cast<int>(std::ceil(shadow_.reach() * Drawing::uiScale())) : 0;
        view_->setGeometry(QRect(QPoint(reach, reach), card.size()));
        setGeometry(card.adjusted(-reach, -reach, reach, reach));
        if (isComposited_)
            clearMask();
        else
            setMask(Compositing::mask(view_->outline(), view_->size()));
        // Clicks beside the card go to what is behind the shadow.
        const double ratio = devicePixelRatioF();
        const auto pixels = [ratio](int units) { return std::lround(units * ratio); };
        const xcb_rectangle_t area{static_cast<std::int16_t>(pixels(reach)),
                                   static_cast<std::int16_t>(pixels(reach)),
                                   static_cast<std::uint16_t>(pixels(card.width())),
                                   static_cast<std::uint16_t>(pixels(card.height()))};
        xcb_shape_rectangles(X11::shared().connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                             XCB_CLIP_ORDERING_UNSORTED, static_cast<xcb_window_t>(winId()), 0, 0,
                             1, &area);
    }

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
        // Deferred, because it hides the window that receives this event.
        QMetaObject::invokeMethod(
            this, [this] { owner_.onCancel(); }, Qt::QueuedConnection);
    }
    void paintEvent(QPaintEvent*) override {
        if (!isComposited_ || view_ == nullptr) return;
        QPainter painter(this);
        painter.translate(view_->pos());
        painter.scale(Drawing::uiScale(), Drawing::uiScale());
        const double points = 1 / Drawing::uiScale();
        shadow_.draw(painter, QTransform::fromScale(points, points).map(view_->outline()));
    }

  private:
    MenuPanelWindow& owner_;
    MenuPanelView* view_ = nullptr;
    Drawing::Shadow shadow_{OrvelUI::MenuPanelContent::shadow};
    bool isComposited_ = false;
};

MenuPanelWindow::MenuPanelWindow(OrvelUI::MenuPanelModel& model)
    : model_(model), window_(std::make_unique<Window>(*this)) {
    id_ = static_cast<xcb_window_t>(window_->winId());
    // Otherwise compositing managers draw shadows around menus.
    const std::uint32_t noShadow = 0;
    auto& x11 = X11::shared();
    xcb_change_property(x11.connection(), XCB_PROP_MODE_REPLACE, id_, x11.atom("_COMPTON_SHADOW"),
                        XCB_ATOM_CARDINAL, 32, 1, &noShadow);
    PanelStack::shared().add(id_, OrvelBlur::WindowLevel::toast);
    stranded_.setSingleShot(true);
    stranded_.setInterval(strandedMilliseconds);
    QObject::connect(&stranded_, &QTimer::timeout, [this] { giveKeyboardBack(); });
}

MenuPanelWindow::~MenuPanelWindow() {
    PanelStack::shared().remove(id_);
}

void MenuPanelWindow::renewView() {
    window_->renew(model_);
}

OrvelCore::Size MenuPanelWindow::fittingSize(double room) {
    scale_ = window_->devicePixelRatioF();
    const QSize size = window_->view()->fittingSize(room / scale_);
    return {size.width() * scale_, size.height() * scale_};
}

void MenuPanelWindow::setFrame(const Rect& frame) {
    const QPoint at = QtScreens::logical({frame.x, frame.y});
    window_->setCard(QRect(at, (QSizeF(frame.width, frame.height) / scale_).toSize()));
}

void MenuPanelWindow::orderFront(bool takesKeyboard) {
    stranded_.stop();
    window_->show();
    PanelStack::shared().orderFront(id_);
    if (takesKeyboard)
        takeKeyboard();
    else
        keyboardBefore_ = XCB_NONE;
    X11::shared().flush();
}

void MenuPanelWindow::takeKeyboard() {
    keyboardBefore_ = keyboardOwner();
    giveKeyboardTo(id_);
    // So that Qt knows at once which widget gets the keys.
    window_->activateWindow();
    window_->view()->focusFirst();
}

void MenuPanelWindow::orderOut(bool handBack) {
    window_->hide();
    PanelStack::shared().orderOut(id_);
    if (handBack)
        giveKeyboardBack();
    else if (keyboardBefore_ != XCB_NONE)
        stranded_.start();
}

void MenuPanelWindow::giveKeyboardBack() {
    const xcb_window_t before = std::exchange(keyboardBefore_, XCB_NONE);
    if (before == XCB_NONE) return;
    const xcb_window_t owner = keyboardOwner();
    if (owner == XCB_NONE || owner == id_) giveKeyboardTo(before);
}

MenuPanelSystem MenuPanelSystem::live() {
    return {
        .makePanel =
            [](OrvelUI::MenuPanelModel& model) { return std::make_unique<MenuPanelWindow>(model); },
        .watchPresses = OrvelSystem::PointerPresses::observe,
        .watchActivations =
            [](std::function<void(std::int64_t)> activated) {
                return OrvelSystem::ActiveWindow::shared().observe(
                    [activated = std::move(activated)](const OrvelSystem::ActiveWindow::App& app) {
                        activated(app.pid);
                    });
            },
        .ownPID = getpid()};
}

}  // namespace OrvelModes
