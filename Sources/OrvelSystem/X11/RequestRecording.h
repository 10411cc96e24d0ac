#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include <xcb/record.h>

namespace OrvelSystem {

/// Reports requests of other clients that the X server itself does not report, by means of the
/// RECORD extension. Uses two connections of its own and needs no toolkit. Records nothing on a
/// server without the extension.
///
/// The server delivers records with its next output to any client.
class RequestRecording {
  public:
    /// `display` as for `xcb_connect`; null stands for the one in the environment.
    explicit RequestRecording(const char* display = nullptr);
    RequestRecording(const RequestRecording&) = delete;
    RequestRecording& operator=(const RequestRecording&) = delete;

    /// The major opcode of an extension; 0 if the server does not have it.
    std::uint8_t opcodeOf(xcb_extension_t& extension) const;
    /// Starts to record these requests of all clients. Call once. False if it is not possible.
    bool start(const xcb_record_range_t& range);
    /// For `poll`; -1 if nothing is recorded.
    int descriptor() const;
    /// Passes on what has arrived. False once the recording has ended.
    bool read(const std::function<void(const xcb_record_enable_context_reply_t&)>& take);

    // Values of `category` in a reply.
    static constexpr std::uint8_t fromClient = 1;
    static constexpr std::uint8_t clientDied = 3;

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };
    using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

    static Connection connect(const char* display);

    Connection control_;
    Connection data_;            // the server uses it for the recording only
    unsigned int sequence_ = 0;  // of the request that the recording answers; 0 without one
};

}  // namespace OrvelSystem
