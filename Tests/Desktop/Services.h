#pragma once

#include <systemd/sd-bus.h>

#include "Process.h"

namespace DesktopTest {

/// A private message bus and a connection to it.
class PrivateBus {
  public:
    /// The socket, configuration and log are in `folder`, with names that begin with `name`.
    PrivateBus(const std::filesystem::path& folder, const std::string& name,
               const Environment& environment);
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const { return address_; }
    sd_bus* connection() const { return connection_; }
    bool hasOwner(const std::string& name);
    /// Kills the daemon, which disconnects everyone.
    void stop() { daemon_.kill(); }

  private:
    std::string address_;
    Process daemon_;
    sd_bus* connection_ = nullptr;
};

/// A mock service on a private bus; runs until `stop` or the destructor.
class MockService {
  public:
    /// Starts `templateFile` of the `mocks` folder and returns when it owns `busName`.
    MockService(PrivateBus& bus, const std::string& templateFile, std::string busName,
                const Environment& environment, const std::filesystem::path& log);

    /// Kills the service, as a crash of the real one would.
    void stop() { process_.kill(); }

  protected:
    ~MockService() = default;
    PrivateBus& bus_;
    std::string name_;

  private:
    Process process_;
};

class Logind : public MockService {
  public:
    Logind(PrivateBus& bus, const Environment& environment, const std::filesystem::path& log);
    ~Logind();

    /// The number of lock requests for the session since the start, by any method.
    int lockRequests();
    /// A locker sets this when it locks, and clears it when it ends.
    void setLockedHint(bool locked);
    bool lockedHint();
    /// Sends logind's own signals, like `loginctl lock-session` and `unlock-session`.
    void signalLock();
    void signalUnlock();
    /// Pass true before suspend and false after wake-up.
    void prepareForSleep(bool sleeping);
    /// Whether this session is on the console, rather than another one.
    void setActive(bool active);
    /// The "what" of every active inhibitor.
    std::vector<std::string> inhibitors();
    /// An inhibitor of another program, held until destruction.
    class Inhibitor {
      public:
        explicit Inhibitor(int file) : file_(file) {}
        ~Inhibitor();
        Inhibitor(const Inhibitor&) = delete;
        Inhibitor& operator=(const Inhibitor&) = delete;

      private:
        int file_;
    };
    Inhibitor inhibit(const std::string& what);

  private:
    int lockRequests_ = 0;
    sd_bus_slot* match_ = nullptr;
};

/// The desktop's settings as programs read them.
class Portal : public MockService {
  public:
    Portal(PrivateBus& bus, const Environment& environment, const std::filesystem::path& log);

    void setDark(bool dark);
};

class FingerprintReader : public MockService {
  public:
    FingerprintReader(PrivateBus& bus, const Environment& environment,
                      const std::filesystem::path& log);

    bool isVerifying();
    /// The number of calls of this method of the device.
    int calls(const std::string& method);
    /// Sends a result as fprintd names it, such as "verify-match"; `done` ends the verification.
    void report(const std::string& result, bool done);
    /// The same for an enrolment, such as "enroll-completed".
    void reportEnrolment(const std::string& result, bool done);

  private:
    void tell(const char* signal, const std::string& result, bool done);
};

}  // namespace DesktopTest
