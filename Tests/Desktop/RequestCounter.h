#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include "Support/Prelude.h"

namespace DesktopTest {

/// Counts what programs ask of the X server, as the server itself records it (RECORD). Throws where
/// the server refuses.
class RequestCounter {
  public:
    /// By the major opcode, and for extensions the minor one.
    struct Request {
        std::uint8_t major = 0;
        std::uint8_t minor = 0;
        auto operator<=>(const Request&) const = default;
    };
    using Counts = std::map<Request, int>;

    /// By what all resources of a connection have in common.
    using Client = std::uint32_t;

    /// On all connections that the program has now.
    RequestCounter(const std::string& display, pid_t pid);
    /// On all connections that there are or will be.
    explicit RequestCounter(const std::string& display);
    ~RequestCounter();
    RequestCounter(const RequestCounter&) = delete;
    RequestCounter& operator=(const RequestCounter&) = delete;

    /// All that the server has carried out since the last call, or since the start.
    Counts take();
    /// The same, by who has asked.
    std::map<Client, Counts> takeByClient();
    /// The connections that the program has now.
    std::vector<Client> clientsOf(pid_t pid);
    /// For people, the most frequent first, by the opcodes: "RENDER 8: 12, core 12: 3".
    std::string describe(const Counts& counts);

    static int total(const Counts& counts);

  private:
    using Clients = std::vector<Client>;
    void start(const Clients& clients);

    xcb_connection_t* control_;
    xcb_connection_t* data_;
    std::uint32_t context_ = 0;
    unsigned enabled_ = 0;
    Client ownClient_ = 0;
    std::map<Client, std::size_t> unfinished_;  // bytes of a request still to come
};

}  // namespace DesktopTest
