#pragma once

#include <QSocketNotifier>
#include <cstdint>
#include <map>
#include <memory>

#include "OrvelSystem/X11/RequestRecording.h"

namespace OrvelSystem {

/// Tracks the clients that suspend the X server's own screen saver, as players do if they find no
/// service for that purpose. The server does not report suspensions, so their requests are
/// recorded. Suspensions from before this object was created are not seen. Main thread only.
///
/// The request for the idle time, which precedes each check, makes the server deliver the records.
class SaverSuspensions {
  public:
    /// Never reports a suspension on a server without the RECORD or the MIT-SCREEN-SAVER extension.
    SaverSuspensions();
    ~SaverSuspensions();
    SaverSuspensions(const SaverSuspensions&) = delete;
    SaverSuspensions& operator=(const SaverSuspensions&) = delete;

    /// Whether a connected client of another process suspends the screen saver.
    bool areHeld() const { return !suspensions_.empty(); }

  private:
    void read();
    void take(const xcb_record_enable_context_reply_t& reply);

    RequestRecording recording_;
    std::uint8_t saverOpcode_ = 0;
    std::uint32_t ownClient_ = 0;
    std::map<std::uint32_t, int> suspensions_;  // active suspensions of each client
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace OrvelSystem
