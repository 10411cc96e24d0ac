#pragma once

#include <QSocketNotifier>
#include <cstdint>
#include <map>
#include <memory>

#include <xcb/record.h>

namespace OrvelSystem {

/// The suspensions of the X server's own screen saver, by which players hold it off where they find
/// no service to ask. The server tells nobody whether it is suspended, so the requests to suspend
/// it are recorded. Those from before this object was made are not seen. Main thread only.
///
/// The server hands over what it has recorded with its next output to any client; the question for
/// the idle time, which comes with each look, causes one.
class SaverSuspensions {
  public:
    /// Finds nothing, ever, on a server that does not record or has no screen saver to suspend.
    SaverSuspensions();
    ~SaverSuspensions();
    SaverSuspensions(const SaverSuspensions&) = delete;
    SaverSuspensions& operator=(const SaverSuspensions&) = delete;

    /// Whether a client that is still connected, of another process than this one, suspends it.
    bool areHeld() const { return !suspensions_.empty(); }

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };
    using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

    static Connection connect();
    bool start();
    void read();
    void end();
    void take(const xcb_record_enable_context_reply_t& reply);

    Connection control_;
    Connection data_;  // blocked by the server for the recording
    std::uint8_t saverOpcode_ = 0;
    unsigned int sequence_ = 0;  // of the request that is answered by the recording
    std::uint32_t ownClient_ = 0;
    std::map<std::uint32_t, int> suspensions_;  // by client; each has to be taken back
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace OrvelSystem
