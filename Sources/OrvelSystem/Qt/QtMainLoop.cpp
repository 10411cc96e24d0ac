#include "OrvelSystem/Qt/QtMainLoop.h"

#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <mutex>

#include "OrvelSystem/Uptime.h"

namespace OrvelSystem {

// The part of the loop that threads may use after the loop has been destroyed.
struct QtMainLoop::Inbox {
    std::mutex mutex;
    QObject* context;  // null after the loop has been destroyed
};

QtMainLoop::QtMainLoop()
    : context_(std::make_unique<QObject>()), inbox_(std::make_shared<Inbox>()) {
    inbox_->context = context_.get();
}

QtMainLoop::~QtMainLoop() {
    const std::lock_guard lock(inbox_->mutex);
    inbox_->context = nullptr;
}

MainLoop::Poster QtMainLoop::poster() {
    return [inbox = inbox_](std::function<void()> f) {
        const std::lock_guard lock(inbox->mutex);
        if (inbox->context)
            QMetaObject::invokeMethod(inbox->context, std::move(f), Qt::QueuedConnection);
    };
}

void QtMainLoop::post(std::function<void()> f) {
    QMetaObject::invokeMethod(context_.get(), std::move(f), Qt::QueuedConnection);
}

Timer QtMainLoop::after(double seconds, std::function<void()> f) {
    return start(seconds, true, std::move(f));
}

Timer QtMainLoop::every(double interval, std::function<void()> f) {
    return start(interval, false, std::move(f));
}

double QtMainLoop::uptime() const {
    return OrvelSystem::uptime();
}

Timer QtMainLoop::start(double seconds, bool once, std::function<void()> f) {
    QPointer<QTimer> timer = new QTimer(context_.get());
    timer->setSingleShot(once);
    timer->setTimerType(Qt::PreciseTimer);  // the other types may fire early
    QObject::connect(timer.get(), &QTimer::timeout, context_.get(),
                     [timer, once, f = std::move(f)] {
                         // Deferred, because this closure belongs to the timer.
                         if (once && timer) timer->deleteLater();
                         f();
                     });
    // A timer must never fire early, so the time is rounded up to whole milliseconds.
    timer->start(std::chrono::milliseconds(
        static_cast<std::int64_t>(std::ceil(std::max(seconds, 0.0) * 1000))));
    return Timer([timer] {
        if (!timer) return;
        timer->stop();
        timer->deleteLater();
    });
}

}  // namespace OrvelSystem
