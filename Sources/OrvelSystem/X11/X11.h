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

#include "OrvelSystem/X11/XReply.h"

namespace OrvelSystem {

/// The X connection of the program, which is Qt's own: a grab or a focus change made on any other
/// would keep the keys from Qt. Main thread only; there from the making of the `QGuiApplication`
/// on its xcb platform until its end.
class X11 final : public QAbstractNativeEventFilter {
  public:
    /// What stays registered for as long as the token lives.
    using Subscription = std::shared_ptr<void>;
    using Handler = std::function<void(const xcb_generic_event_t& event)>;

    static X11& shared();
    ~X11() override;

    xcb_connection_t* connection() const { return connection_; }
    xcb_screen_t* screen() const { return screen_; }
    xcb_window_t root() const { return screen_->root; }
    int screenNumber() const { return screenNumber_; }
    /// Interned on first use and kept.
    xcb_atom_t atom(std::string_view name);

    /// Hands every event that the server itself has made to `handler` before Qt sees it, errors
    /// included (`response_type` 0). Another client can send any event with any content, so what
    /// was sent is not handed on.
    [[nodiscard]] Subscription onEvent(Handler handler);

    /// A window of this program that Qt knows only as the parent of one of its own. What is told of
    /// its structure and properties is not for Qt, which would take it for news of a window of its
    /// own.
    void keepFromQt(xcb_window_t window) { keptFromQt_.insert(window); }
    void forget(xcb_window_t window) { keptFromQt_.erase(window); }

    /// Adds to the events that this program selects on the root window. Only ever grows, since the
    /// mask is one for the whole connection, Qt's share included.
    void selectOnRoot(std::uint32_t eventMask);

    /// A window property as 32-bit values; empty when missing or of another format.
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
    std::uint32_t rootMask_ = 0;  // what `selectOnRoot` has selected
    std::map<std::string, xcb_atom_t, std::less<>> atoms_;
    std::set<xcb_window_t> keptFromQt_;
    std::list<std::weak_ptr<Handler>> handlers_;
};

}  // namespace OrvelSystem
