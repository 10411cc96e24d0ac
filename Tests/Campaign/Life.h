#pragma once

#include "Judge.h"
#include "Karvo.h"
#include "Report.h"
#include "SessionLocker.h"

namespace Campaign {

using DesktopTest::SessionLocker;

constexpr Colour secretColour = 0x3fd18b;
constexpr int wide = 1920, narrow = 1280, high = 720;

/// One session from start to end: Karvo locks once or twice, random faults happen, and the owner
/// comes back. The seed determines every step but not the exact timing, which also depends on the
/// machine.
class Life {
  public:
    explicit Life(unsigned seed);

    void live();
    Report& report() { return report_; }

  private:
    struct Fault {
        const char* name;
        int weight;
        void (*happen)(Life&);
    };
    /// A small file system mounted over the program's data folder, so that a test can fill it.
    /// `mounted` stays empty if the system does not allow the mount.
    struct SmallDisk {
        ~SmallDisk();
        void begin(const std::filesystem::path& folder);
        std::filesystem::path mounted;
    };
    static const std::vector<Fault>& faults();

    int draw(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
    bool chance(int percent) { return draw(1, 100) <= percent; }
    void say(const std::string& what);
    void violation(const std::string& kind, const std::string& what);

    void oneLock();
    void listen();
    void repair();
    void comeBack();
    bool isOpen();
    bool isCovered();
    void submit(const std::string& password);
    void checkFiles();
    void fillDisk(bool full);

    // Faults.
    void kill(bool app, bool guard);
    void killSoon(bool app, bool guard);
    /// Stops the processes for a moment, or until `repair`; returns true in the latter case.
    bool freeze(const std::vector<pid_t>& pids);
    void changeDisplays();
    void windowOnTop(SampleWindow::Kind kind);
    void churn();
    bool openSomething();
    void hold(const std::vector<xcb_keysym_t>& keys);
    void meddle();
    void jumpClock(int seconds);
    int heard();

    std::minstd_rand random_;
    Report report_;

    Desktop desktop_;
    bool usesDevices_;
    SmallDisk disk_;
    SampleWindow* secret_;
    std::unique_ptr<SampleWindow> outside_;
    std::vector<std::unique_ptr<SampleWindow>> windows_;
    std::unique_ptr<SessionLocker> locker_;
    std::unique_ptr<Karvo> karvo_;
    std::unique_ptr<Judge> judge_;
    std::vector<std::function<void()>> repairs_;
    std::vector<double> rivalActs_;  // on windows, judge times in ms
    double rivalTookKeysAt_ = 0;     // judge time in ms
    int ranBefore_ = 0;  // programs that the window manager's shortcut had started earlier
    std::vector<std::jthread> assassins_;
    // Stays true until repair, even if the guard is resumed earlier.
    std::atomic<bool> guardIsFrozen_ = false;
    bool appIsFrozen_ = false;          // until `repair`
    double windowManagerDiedAt_ = 1e9;  // judge time in ms; 1e9 means never
    bool fakesClock_ = false;
    bool keyboardIsMoved_ = false;
    int heard_ = 0;
    enum class Killed { nobody, app, both };
    std::atomic<double> killedAt_ = 0;
    std::atomic<double> guardKilledAt_ = -1e9;
    std::atomic<Killed> killed_ = Killed::nobody;  // during the current lock
    bool logindIsThere_ = true;
    bool sessionBusIsThere_ = true;
    std::string history_;
};

}  // namespace Campaign
