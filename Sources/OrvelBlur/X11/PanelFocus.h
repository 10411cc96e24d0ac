#pragma once

#include <QTimer>
#include <functional>
#include <vector>

#include "OrvelBlur/X11/ContentHost.h"
#include "OrvelBlur/X11/PanelWindow.h"

namespace OrvelBlur {

/// The keyboard focus of a panel, which its window or its content has. `content` is null while the
/// panel has none. Main thread only.
class PanelFocus {
  public:
    /// `window` must outlive this object. `changed` runs after each change of `isKey` except in
    /// `drop` and `restore`, and may destroy this object.
    PanelFocus(const PanelWindow& window, std::function<void()> changed);

    /// Whether the panel has the focus, or has requested it and the server has not refused yet.
    bool isKey() const { return isKey_; }
    /// Requests the focus and counts it as given: waiting for the server's reply would delay the
    /// cover.
    void take(ContentHost* content);
    /// Requests the focus for new content, or for the window after its content has gone, if the
    /// panel has the focus. The window receives keys before its content is made, and passes them on
    /// to it now.
    void contentChanged(ContentHost* content);
    /// Call after another client has taken the window away, and the focus with it. For a second,
    /// each loss is answered with another request; then the focus counts as the server has it.
    void retake(ContentHost* content);
    /// Forgets the focus, for a window that is about to be unmapped.
    void drop();
    /// Undoes `drop` for a window that has been replaced, and retakes the focus if it was held.
    void restore(bool wasKey, ContentHost* content);
    /// Handles focus events, the refusal of a request and keys for the window itself. Call while
    /// the window is mapped.
    void handle(const xcb_generic_event_t& event, ContentHost* content);

  private:
    void request(ContentHost* content);
    bool hasFocus() const;
    void handleFocus(const xcb_focus_in_event_t& event, bool in, ContentHost* content);
    void set(bool isKey);
    void keepKey(const xcb_key_press_event_t& press);
    void passOnKeys(const ContentHost& content);
    void forgetKeys();

    const PanelWindow& window_;
    std::function<void()> changed_;
    bool isKey_ = false;
    QTimer retake_;                             // runs while the focus is being retaken
    std::vector<xcb_key_press_event_t> early_;  // received before there was a content
    unsigned request_ = 0;  // sequence number of the last request for the window
};

}  // namespace OrvelBlur
