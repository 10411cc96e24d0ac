#include "OrvelModes/X11/ShortcutRecorderHooks.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <QWindow>
#include <memory>
#include <utility>

#include "OrvelModes/X11/LiveAppWindow.h"
#include "OrvelSystem/X11/X11.h"
#include "OrvelSystem/X11/X11KeyMap.h"

namespace OrvelModes::ShortcutRecorderHooks {

namespace {

using OrvelSystem::X11;
using OrvelSystem::X11KeyMap;

const QWindow* windowOf(const QObject* receiver) {
    if (const auto* const widget = qobject_cast<const QWidget*>(receiver))
        return widget->window()->windowHandle();
    return qobject_cast<const QWindow*>(receiver);
}

/// Filters every event of the app before its receiver gets it.
class Watch final : public QObject {
  public:
    explicit Watch(QWidget& window) : window_(window) {
        qApp->installEventFilter(this);
        connect(qApp, &QGuiApplication::applicationStateChanged, this,
                [this](Qt::ApplicationState state) {
                    if (state != Qt::ApplicationActive) end();
                });
    }

    ShortcutRecorder::OnKey onKey;
    std::function<void()> onEnd;

    bool eventFilter(QObject* receiver, QEvent* event) override {
        switch (event->type()) {
            case QEvent::ShortcutOverride:
                // An accepted event arrives again as a key press. Otherwise a shortcut of the
                // window with this combination would be triggered.
                if (!onKey || !takes(receiver)) return false;
                event->accept();
                return true;
            case QEvent::KeyPress:
                if (!onKey || !takes(receiver)) return false;
                key(static_cast<const QKeyEvent&>(*event));
                return true;
            case QEvent::Hide:
            case QEvent::WindowDeactivate:
                if (receiver == &window_) end();
                return false;
            default:
                return false;
        }
    }

  private:
    bool takes(const QObject* receiver) const {
        return ShortcutRecorder::takes(windowOf(receiver), window_.windowHandle());
    }

    // Each of the two handlers may end the watch and destroy this object.
    void key(const QKeyEvent& event) const {
        const X11KeyMap map = X11KeyMap::read(X11::shared());
        const auto keyCode = map.keyCodes().macKeyCode(event.nativeScanCode());
        if (!keyCode) return;
        const auto state = event.nativeModifiers();
        const auto keycode = static_cast<xcb_keycode_t>(event.nativeScanCode());
        const auto tell = onKey;
        tell(*keyCode, map.modifiers(state), map.charactersIgnoringModifiers(keycode, state));
    }
    void end() const {
        const auto tell = onEnd;
        if (tell) tell();
    }

    QWidget& window_;
};

}  // namespace

ShortcutRecorder::Hooks live(std::function<QWidget*()> window, std::function<void()> pause,
                             std::function<void()> resume) {
    const auto box = std::make_shared<std::unique_ptr<Watch>>();
    const auto watch = [box, window = std::move(window)]() -> Watch* {
        auto* const widget = window();
        if (!*box && widget != nullptr) *box = std::make_unique<Watch>(*widget);
        return box->get();
    };
    return {
        .pauseShortcuts = std::move(pause),
        .resumeShortcuts = std::move(resume),
        .watchKeys =
            [watch](ShortcutRecorder::OnKey onKey) {
                if (auto* const watching = watch()) watching->onKey = std::move(onKey);
            },
        .watchEnds =
            [watch](std::function<void()> onEnd) {
                if (auto* const watching = watch()) watching->onEnd = std::move(onEnd);
            },
        .stopWatching = [box] { box->reset(); },
    };
}

}  // namespace OrvelModes::ShortcutRecorderHooks

namespace OrvelModes {

ShortcutRecorder::Hooks ShortcutRecorder::Hooks::live(std::function<AppWindow*()> window,
                                                      std::function<void()> pause,
                                                      std::function<void()> resume) {
    const auto widget = [window = std::move(window)]() -> QWidget* {
        auto* const live = dynamic_cast<LiveAppWindow*>(window());
        return live == nullptr ? nullptr : &live->widget();
    };
    return ShortcutRecorderHooks::live(widget, std::move(pause), std::move(resume));
}

}  // namespace OrvelModes
