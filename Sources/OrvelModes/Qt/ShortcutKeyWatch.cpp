#include "OrvelModes/Qt/ShortcutKeyWatch.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>
#include <memory>
#include <utility>

namespace OrvelModes::ShortcutKeyWatch {

namespace {

const QWindow* windowOf(const QObject* receiver) {
    if (const auto* const widget = qobject_cast<const QWidget*>(receiver))
        return widget->window()->windowHandle();
    return qobject_cast<const QWindow*>(receiver);
}

/// Filters every event of the app before its receiver gets it.
class Watch final : public QObject {
  public:
    Watch(QWidget& window, ReadKey read) : window_(window), read_(std::move(read)) {
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
        const auto typed = read_(event);
        if (!typed) return;
        const auto tell = onKey;
        tell(typed->keyCode, typed->modifiers, typed->characters);
    }
    void end() const {
        const auto tell = onEnd;
        if (tell) tell();
    }

    QWidget& window_;
    ReadKey read_;
};

}  // namespace

ShortcutRecorder::Hooks hooks(std::function<QWidget*()> window, ReadKey read,
                              std::function<void()> pause, std::function<void()> resume) {
    const auto box = std::make_shared<std::unique_ptr<Watch>>();
    const auto watch = [box, window = std::move(window), read = std::move(read)]() -> Watch* {
        auto* const widget = window();
        if (!*box && widget != nullptr) *box = std::make_unique<Watch>(*widget, read);
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

}  // namespace OrvelModes::ShortcutKeyWatch
