#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

namespace DesktopTest {

/// Counts the requests of clients to the X server by means of the RECORD extension. Throws if the
/// server refuses.
class RequestCounter {
  public:
    /// The major opcode and, for extensions, the minor one.
    struct Request {
        std::uint8_t major = 0;
        std::uint8_t minor = 0;
        auto operator<=>(const Request&) const = default;
    };
    using Counts = std::map<Request, int>;

    /// A connection, identified by its resource id base.
    using Client = std::uint32_t;

    /// Records the connections that the program has now.
    RequestCounter(const std::string& display, pid_t pid);
    /// Records all present and future connections.
    explicit RequestCounter(const std::string& display);
    ~RequestCounter();
    RequestCounter(const RequestCounter&) = delete;
    RequestCounter& operator=(const RequestCounter&) = delete;

    /// The requests carried out since the last call, or since construction.
    Counts take();
    /// The same for each connection.
    std::map<Client, Counts> takeByClient();
    /// Waits until the clients send nothing for a second; false if that does not happen.
    bool waitForRest();
    /// The connections that the program has now.
    std::vector<Client> clientsOf(pid_t pid);
    /// A readable list, the most frequent first: "RENDER 8: 12, core 12: 3".
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
    std::map<Client, std::size_t> unfinished_;  // missing bytes of an incomplete request
};

}  // namespace DesktopTest
