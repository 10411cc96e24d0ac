#pragma once

#include <systemd/sd-bus.h>

#include "Process.h"

namespace DesktopTest {

/// A message bus of the test's own, and a connection to it.
class PrivateBus {
  public:
    /// Socket, configuration and log lie in `folder` under `name`.
    PrivateBus(const std::filesystem::path& folder, const std::string& name,
               const Environment& environment);
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const { return address_; }
    sd_bus* connection() const { return connection_; }
    bool hasOwner(const std::string& name);
    /// The bus goes away for all who are on it.
    void stop() { daemon_.kill(); }

  private:
    std::string address_;
    Process daemon_;
    sd_bus* connection_ = nullptr;
};

/// A mocked service on a private bus, running until the object goes or `stop`.
class MockService {
  public:
    /// `templateFile` in the tests' `mocks` folder. Returns once the service owns `busName`.
    MockService(PrivateBus& bus, const std::string& templateFile, std::string busName,
                const Environment& environment, const std::filesystem::path& log);

    /// The service goes away, as on a crash of the real one.
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

    /// How often the session was asked to lock, by whatever call, since the start.
    int lockRequests();
    /// What a locker does when it is really on, and when it is gone.
    void setLockedHint(bool locked);
    bool lockedHint();
    /// Signals of logind itself, as `loginctl lock-session` and `unlock-session` give them.
    void signalLock();
    void signalUnlock();
    /// True before suspend, false after wake.
    void prepareForSleep(bool sleeping);
    /// The session is on the console, or another one has taken it.
    void setActive(bool active);
    /// "what" of every inhibitor held now.
    std::vector<std::string> inhibitors();
    /// Holds one in another program's name, until it is dropped.
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

/// The desktop's own settings, as its programs read them.
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
    /// How often this method of the device was called.
    int calls(const std::string& method);
    /// A result in fprintd's words, such as "verify-match"; `done` ends the verification.
    void report(const std::string& result, bool done);
    /// The same for an enrolment, such as "enroll-completed".
    void reportEnrolment(const std::string& result, bool done);

  private:
    void tell(const char* signal, const std::string& result, bool done);
};

}  // namespace DesktopTest
