#pragma once

#include <functional>
#include <memory>
#include <string>

#include <xcb/xcb.h>

#include "OrvelSystem/X11/InputDevices.h"
#include "OrvelSystem/X11/InputNet.h"

struct xkb_context;
struct xkb_keymap;
struct xkb_state;
struct xkb_compose_table;
struct xkb_compose_state;

namespace OrvelApp {

/// The keys that the guard receives: all that no active grab takes and, on request, those of the
/// devices themselves. Translates them to text with the server's keyboard layout.
class StandInInput {
  public:
    /// `connection` must outlive the object.
    StandInInput(xcb_connection_t* connection, xcb_window_t root);
    ~StandInInput();
    StandInInput(const StandInInput&) = delete;
    StandInInput& operator=(const StandInInput&) = delete;

    OrvelSystem::InputNet& net() { return net_; }
    const OrvelSystem::InputNet& net() const { return net_; }
    /// Grabs the keys and buttons of all devices passively, including devices that are added later.
    /// A grab takes effect while no client has grabbed the device itself. Does nothing if they are
    /// grabbed already.
    void catchDevices();
    /// Like `catchDevices`, when another client has grabbed the keyboard: its menu is closed, and
    /// no key stays down for it. Does nothing from the second call until `letDevicesGo`.
    void takeDevices();
    void letDevicesGo();
    /// Releases what is pressed on the core devices, which may have missed its release.
    void releasePressed();
    bool hasDevices() const { return hasDevices_; }

    struct Key {
        enum class Kind { text, erase, clear, enter, other };
        Kind kind = Kind::other;
        std::string text;  // UTF-8; only set for `Kind::text`
    };
    /// Returns true and sets `key` if the event is a key press.
    bool read(const xcb_generic_event_t& event, Key& key);

  private:
    struct Free {
        void operator()(xkb_context* context) const;
        void operator()(xkb_keymap* keymap) const;
        void operator()(xkb_state* state) const;
        void operator()(xkb_compose_table* table) const;
        void operator()(xkb_compose_state* state) const;
    };
    void grabDevices();
    void readKeymap();

    xcb_connection_t* connection_;
    OrvelSystem::InputDevices devices_;
    OrvelSystem::InputNet net_;
    bool hasDevices_ = false;
    bool hasClosedMenus_ = false;
    std::unique_ptr<xkb_context, Free> context_;
    std::unique_ptr<xkb_keymap, Free> keymap_;
    std::unique_ptr<xkb_state, Free> state_;
    std::unique_ptr<xkb_compose_table, Free> composeTable_;
    std::unique_ptr<xkb_compose_state, Free> compose_;
};

}  // namespace OrvelApp
