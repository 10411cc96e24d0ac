#pragma once

#include <xcb/xcb.h>

#include "Image.h"

struct sd_bus;

namespace Campaign {

/// Samples the screen several hundred times a second, on its own connection and thread. It records
/// when a pixel of the secret window is visible and when the session's lock is requested, and
/// compares both with the reported events at the end. All times are milliseconds since
/// construction.
class Judge {
  public:
    /// Lock requests are the session's `Lock` signals on `systemBus` and growth of the file
    /// `fallbackLog`. An empty `systemBus` means that there is no bus. Returns once the thread
    /// samples.
    Judge(const std::string& display, Colour secret, const std::string& systemBus,
          std::filesystem::path fallbackLog);
    ~Judge();
    Judge(const Judge&) = delete;
    Judge& operator=(const Judge&) = delete;

    double now() const;

    // Report each event before it happens, except `lockIsUp`, which is reported afterwards.
    /// `begun` is the time of the lock request, as given by `now`.
    void lockIsUp(double begun);
    void lockMayEnd();
    void appIsKilled(bool guardToo);
    void guardIsKilled();

    /// The time from a kill until the session's lock is requested.
    struct Gap {
        bool guardToo = false;
        double shown = 0;       // ms for which the secret was visible before the request
        double untilAsked = 0;  // ms; negative if the lock was never requested
        double bare = 0;        // ms for which the secret was visible, before and after the request
    };
    struct Verdict {
        std::size_t samples = 0;
        double watched = 0;  // ms during which a lock was up
        std::vector<Gap> gaps;
        /// Start and duration of each time the secret was visible without a kill or a lock request.
        std::vector<std::pair<double, double>> shown;
    };
    /// Stops sampling and returns the result.
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
        double begun;  // time of the request, before the lock is up
    };
    struct Exposure : Span {
        double lastAskedFor;  // start of the last sample that saw the secret
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
