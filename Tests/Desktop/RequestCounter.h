#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>
#include <xcb/xcb.h>

namespace DesktopTest {

/// Counts what a program asks of the X server, as the server itself records it (RECORD), on all
/// connections that the program has at the start of the counting. Throws where the server refuses.
class RequestCounter {
  public:
    /// By the major opcode, and for extensions the minor one.
    struct Request {
        std::uint8_t major = 0;
        std::uint8_t minor = 0;
        auto operator<=>(const Request&) const = default;
    };
    using Counts = std::map<Request, int>;

    RequestCounter(const std::string& display, pid_t pid);
    ~RequestCounter();
    RequestCounter(const RequestCounter&) = delete;
    RequestCounter& operator=(const RequestCounter&) = delete;

    /// All that the server has carried out since the last call, or since the start.
    Counts take();
    /// For people, the most frequent first, by the opcodes: "RENDER 8: 12, core 12: 3".
    std::string describe(const Counts& counts);

    static int total(const Counts& counts);

  private:
    using Clients = std::vector<std::uint32_t>;
    Clients clientsOf(pid_t pid);
    void start(const Clients& clients);

    xcb_connection_t* control_;
    xcb_connection_t* data_;
    std::uint32_t context_ = 0;
    unsigned enabled_ = 0;
    std::uint32_t ownClient_ = 0;
    std::map<std::uint32_t, std::size_t> unfinished_;  // bytes of a request still to come
};

}  // namespace DesktopTest
