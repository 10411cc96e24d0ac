#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

#include "OrvelCore/WeakList.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelSystem/X11/ScreenState.h"

namespace OrvelSystem {

class MirrorConnection;

/// A copy of the windows and inputs that the X server reports. Its own connection and
/// thread keep it up to date, so a read needs no round trip and is allowed on any thread. The
/// thread sleeps while nothing changes. It starts with the first read or observer and ends some
/// seconds after the last one, so that it costs nothing while the program protects nothing.
class WindowServerMirror {
  public:
    /// The CARDINAL property in which a panel of this program states its level.
    static constexpr std::string_view levelProperty = "_KARVO_LEVEL";

    static WindowServerMirror& shared();

    WindowServerMirror();
    ~WindowServerMirror();
    WindowServerMirror(const WindowServerMirror&) = delete;
    WindowServerMirror& operator=(const WindowServerMirror&) = delete;

    /// Frontmost first.
    std::vector<OrvelCore::WindowInfo> windows();
    std::vector<OrvelCore::WindowID> numbers();
    /// Windows that are not on the screen are missing from the result.
    std::map<OrvelCore::WindowID, OrvelCore::Rect> bounds(
        const std::vector<OrvelCore::WindowID>& numbers);
    ScreenState::Inputs inputs();

    /// `changed` is called on the mirror's thread after each change, until the token is destroyed.
    /// Destroying the token waits for a call in progress, so do not do it inside the call.
    [[nodiscard]] OrvelCore::Subscription observe(std::function<void()> changed);

  private:
    struct Observer {
        std::mutex lock;
        std::function<void()> changed;  // null after its token was destroyed
    };

    template <class Read>
    auto read(Read read);
    void ensureRunning();
    void run(std::unique_ptr<MirrorConnection> connection);

    // Held while the thread is started. The thread never holds it while it calls an observer.
    std::mutex lock_;
    ScreenState screen_;
    std::vector<std::shared_ptr<Observer>> observers_;
    double lastUse_ = 0;  // in seconds of uptime
    bool isRunning_ = false;
    bool isStopping_ = false;
    int wake_;  // an eventfd
    std::thread thread_;
};

}  // namespace OrvelSystem
