#include "OrvelModes/X11/LiveAppWindow.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include <fmt/format.h>

#include "OrvelCore/Brand.h"
#include "OrvelModes/Windows/OnboardingWindowController.h"
#include "OrvelModes/Windows/SettingsWindowController.h"
#include "OrvelSystem/X11/ActiveWindow.h"
#include "OrvelUI/Qt/OnboardingView.h"
#include "OrvelUI/Qt/SettingsView.h"

namespace OrvelModes {

namespace {

// The height of the frame and the title bar, in Qt's units.
constexpr int frameRoom = 48;

bool isX11() {
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

}  // namespace

class LiveAppWindow::Window final : public QWidget {
  public:
    Window(LiveAppWindow* owner, MakeView makeView)
        : owner_(owner), makeView_(std::move(makeView)) {}

    /// Keeps the object until Qt no longer uses it.
    void retire() {
        owner_ = nullptr;
        hide();
        dropView();
        deleteLater();
    }

    void makeView() {
        if (view_) return;
        view_ = makeView_();
        QWidget* const wanted = view_->focusWidget();
        view_->setParent(this);
        const QSize room = QGuiApplication::primaryScreen()->availableSize() - QSize(0, frameRoom);
        setFixedSize(view_->sizeHint().boundedTo(room));
        view_->resize(size());
        view_->show();
        // Unless the view requests it, no control is highlighted before the user uses the keyboard.
        (wanted != nullptr ? wanted : this)->setFocus();
    }

  protected:
    void closeEvent(QCloseEvent* event) override {
        event->accept();
        hide();
        dropView();
        if (owner_ == nullptr) return;
        const auto told = owner_->onWillClose;
        told();
    }
    void keyPressEvent(QKeyEvent* event) override {
        if (event->matches(QKeySequence::Close)) return void(QWidget::close());
        QWidget::keyPressEvent(event);
    }
    void mousePressEvent(QMouseEvent* event) override {
        // A window that can be minimized behaves like any other window.
        const bool moves = !windowFlags().testFlag(Qt::WindowMinimizeButtonHint);
        if (moves && event->button() == Qt::LeftButton) windowHandle()->startSystemMove();
    }

  private:
    // Deferred, because a button of the view itself may close the window.
    void dropView() {
        if (!view_) return;
        view_->leaveModel();
        view_.release()->deleteLater();
    }

    LiveAppWindow* owner_;
    MakeView makeView_;
    std::unique_ptr<OrvelUI::WindowView> view_;
};

LiveAppWindow::LiveAppWindow(const QString& title, bool minimizes, MakeView makeView)
    : window_(std::make_unique<Window>(this, std::move(makeView))) {
    Qt::WindowFlags flags =
        Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint;
    if (minimizes) flags |= Qt::WindowMinimizeButtonHint;
    window_->setWindowFlags(flags);
    window_->setWindowTitle(title);
    window_->setAttribute(Qt::WA_QuitOnClose, false);
    window_->setFocusPolicy(Qt::ClickFocus);
    window_->makeView();
    window_->winId();  // so that its level and position can be set before it is shown
}

LiveAppWindow::~LiveAppWindow() {
    window_.release()->retire();
}

QWidget& LiveAppWindow::widget() const {
    return *window_;
}

void LiveAppWindow::center() {
    const QRect area = window_->screen()->availableGeometry();
    window_->move(area.center() - QPoint(window_->width(), window_->height() + frameRoom / 2) / 2);
}

void LiveAppWindow::makeKeyAndOrderFront() {
    window_->makeView();
    if (window_->isMinimized())
        window_->showNormal();
    else
        window_->show();
    window_->raise();
    window_->activateWindow();
    if (isX11())
        OrvelSystem::ActiveWindow::shared().activate(static_cast<xcb_window_t>(window_->winId()));
}

void LiveAppWindow::orderFrontRegardless() {
    window_->raise();
}

void LiveAppWindow::setLevel(Level level) {
    window_->windowHandle()->setFlag(Qt::WindowStaysOnTopHint, level == Level::floating);
}

bool LiveAppWindow::isVisible() const {
    return window_->isVisible();
}

void LiveAppWindow::close() {
    window_->close();
}

SettingsWindowSystem SettingsWindowSystem::live() {
    return {.makeWindow =
                [](OrvelUI::SettingsModel& model) {
                    return std::make_unique<LiveAppWindow>(
                        QString::fromStdString(fmt::format("{} Settings", OrvelCore::Brand::name)),
                        true, [&model] { return std::make_unique<OrvelUI::SettingsView>(model); });
                },
            // Showing a window also brings the app to the front.
            .activate = [] {}};
}

OnboardingWindowSystem OnboardingWindowSystem::live() {
    return {
        .makeWindow =
            [](OrvelUI::OnboardingModel& model) {
                return std::make_unique<LiveAppWindow>(
                    QString::fromStdString(fmt::format("Welcome to {}", OrvelCore::Brand::name)),
                    false, [&model] { return std::make_unique<OrvelUI::OnboardingView>(model); });
            },
        .activate = [] {},
        .isActive = [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; },
        .observeActivation = [](std::function<void()> activated) -> OrvelCore::Subscription {
            auto context = std::make_shared<QObject>();
            QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, context.get(),
                             [activated = std::move(activated)](Qt::ApplicationState state) {
                                 if (state == Qt::ApplicationActive) activated();
                             });
            return context;
        }};
}

}  // namespace OrvelModes
