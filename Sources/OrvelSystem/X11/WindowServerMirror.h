#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

#include "OrvelSystem/X11/ScreenPicture.h"

namespace OrvelSystem {

class MirrorConnection;

/// A copy of what the X server knows of the screen, kept by a connection and a thread of its own,
/// so that a read costs no round trip and any thread may make it. The thread sleeps while nothing
/// changes. It starts with the first read or observer and ends some seconds after the last of
/// them, so that a program that protects nothing pays nothing.
class WindowServerMirror {
  public:
    /// Where a panel of this program states its level; a CARDINAL.
    static constexpr std::string_view levelProperty = "_KARVO_LEVEL";

    static WindowServerMirror& shared();

    WindowServerMirror();
    ~WindowServerMirror();
    WindowServerMirror(const WindowServerMirror&) = delete;
    WindowServerMirror& operator=(const WindowServerMirror&) = delete;

    /// Front-most first.
    std::vector<OrvelCore::WindowInfo> windows();
    std::vector<std::int64_t> numbers();
    /// Without those that are not on the screen.
    std::map<std::int64_t, OrvelCore::Rect> bounds(const std::vector<std::int64_t>& numbers);
    std::vector<OrvelCore::Rect> displays();
    ScreenPicture::Inputs inputs();

    /// `changed` is called on the mirror's thread after each change, and not once the token is
    /// dropped, which waits for a call under way and so must not be done inside of one.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> changed);

  private:
    struct Observer {
        std::mutex lock;
        std::function<void()> changed;  // none once its token is gone
    };

    template <class Read>
    auto read(Read read);
    void ensureRunning();
    void run(std::unique_ptr<MirrorConnection> connection);

    // Held while the thread is started, but by the thread itself never across a call out.
    std::mutex lock_;
    ScreenPicture picture_;
    std::vector<std::shared_ptr<Observer>> observers_;
    double lastUse_ = 0;  // uptime
    bool isRunning_ = false;
    bool isStopping_ = false;
    int wake_;  // an eventfd
    std::thread thread_;
};

}  // namespace OrvelSystem
