#pragma once

#include <QAbstractNativeEventFilter>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/X11/XReply.h"

namespace OrvelSystem {

/// The program's X connection, which is Qt's own: a grab or a focus change on another connection
/// would keep the keys from Qt. Main thread only. Available while a `QGuiApplication` on the xcb
/// platform exists.
class X11 final : public QAbstractNativeEventFilter {
  public:
    /// The registration ends when the token is destroyed.
    using Handler = std::function<void(const xcb_generic_event_t& event)>;

    static X11& shared();
    ~X11() override;

    xcb_connection_t* connection() const { return connection_; }
    xcb_screen_t* screen() const { return screen_; }
    xcb_window_t root() const { return screen_->root; }
    int screenNumber() const { return screenNumber_; }
    /// Interned on first use and cached. `XCB_ATOM_NONE` if the server does not answer.
    xcb_atom_t atom(std::string_view name);

    /// Passes every event that the server itself has generated to `handler` before Qt sees it,
    /// including errors (`response_type` 0). Another client can send any event with any content, so
    /// sent events are not passed on.
    [[nodiscard]] OrvelCore::Subscription onEvent(Handler handler);

    /// Keeps the structure and property events of a window from Qt. Call it for a window of this
    /// program that Qt knows only as the parent of its own window: Qt would apply these events to
    /// that window.
    void keepFromQt(xcb_window_t window) { keptFromQt_.insert(window); }
    void forget(xcb_window_t window) { keptFromQt_.erase(window); }

    /// Adds events to those that this program selects on the root window. The mask only grows,
    /// since the connection has a single one, which includes Qt's.
    void selectOnRoot(std::uint32_t eventMask);

    /// A window property as 32-bit values; empty if it is missing or has another format.
    std::vector<std::uint32_t> property32(xcb_window_t window, std::string_view name,
                                          std::uint32_t maxItems = 1024);

    void flush() const { xcb_flush(connection_); }

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  private:
    X11();
    bool isOfOtherWindow(const xcb_generic_event_t& event) const;
    bool isForged(const xcb_generic_event_t& event) const;
    bool isKeptFromQt(const xcb_generic_event_t& event) const;

    xcb_connection_t* connection_;
    xcb_screen_t* screen_;
    int screenNumber_ = 0;
    std::uint32_t rootMask_ = 0;  // set by `selectOnRoot`
    std::map<std::string, xcb_atom_t, std::less<>> atoms_;
    std::set<xcb_window_t> keptFromQt_;
    std::list<std::weak_ptr<Handler>> handlers_;
};

}  // namespace OrvelSystem
