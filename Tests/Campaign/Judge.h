#pragma once

#include <atomic>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <xcb/xcb.h>

#include "Image.h"

struct sd_bus;

namespace Campaign {

using DesktopTest::Colour;

/// Looks at the screen on a connection and a thread of its own, some hundred times a second, and
/// notes when a pixel of the secret is there and when the session's lock was asked for. What it
/// saw is judged at the end, against what was going on. Times are milliseconds since its start.
class Judge {
  public:
    /// A request goes out on the system bus, or adds a line to `fallbackLog`. An empty address
    /// stands for no bus.
    Judge(const std::string& display, Colour secret, const std::string& systemBus,
          std::filesystem::path fallbackLog);
    ~Judge();
    Judge(const Judge&) = delete;
    Judge& operator=(const Judge&) = delete;

    double now() const;

    // To be told before it happens, or after it where the lock comes up.
    /// `begun`: when it was asked for, by `now`.
    void lockIsUp(double begun);
    void lockMayEnd();
    void appIsKilled(bool guardToo);
    void guardIsKilled();

    /// After a kill, until the session's lock was asked for.
    struct Gap {
        bool guardToo = false;
        double shown = 0;       // ms in which the secret was on the screen
        double untilAsked = 0;  // ms; negative when the lock was never asked for
        double bare = 0;        // ms in which the secret was on the screen, asked for or not
    };
    struct Verdict {
        std::size_t samples = 0;
        double watched = 0;  // ms with the lock up
        std::vector<Gap> gaps;
        /// Times at which the secret showed with nobody killed and no lock asked for, and how long.
        std::vector<std::pair<double, double>> shown;
    };
    /// Ends the watch.
    Verdict verdict();

  private:
    struct Kill {
        double at;
        bool guardToo;
    };
    struct Span {
        double from;
        double to;
    };
    struct Lock : Span {
        double begun;  // before it was up
    };
    struct Exposure : Span {
        double lastAskedFor;  // the latest picture that shows it
    };

    void run(const std::stop_token& stop);
    bool sees(xcb_connection_t* connection, xcb_window_t root, unsigned draw) const;

    std::string display_;
    Colour secret_;
    std::string systemBus_;
    std::filesystem::path fallbackLog_;
    double start_;
    std::mutex mutex_;
    std::vector<Exposure> exposures_;
    std::vector<double> requests_;
    std::vector<Kill> kills_;
    std::vector<double> guardKills_;
    std::vector<Lock> locks_;
    std::size_t samples_ = 0;
    std::atomic<bool> isReady_ = false;
    std::jthread thread_;
};

}  // namespace Campaign
