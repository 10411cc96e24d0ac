#include "Judge.h"

#include <systemd/sd-bus.h>

#include "Screen.h"

namespace Campaign {

using DesktopTest::XReply;

namespace {

constexpr double never = std::numeric_limits<double>::infinity();
constexpr std::chrono::milliseconds pause{1};
constexpr double slack = 10;  // ms

double uptime() {
    return std::chrono::duration<double, std::milli>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

double overlap(double from, double to, double start, double end) {
    return std::max(0.0, std::min(to, end) - std::max(from, start));
}

sd_bus* listen(const std::string& address, int& count) {
    sd_bus* bus = nullptr;
    const auto note = [](sd_bus_message*, void* requests, sd_bus_error*) {
        ++*static_cast<int*>(requests);
        return 0;
    };
    if (sd_bus_new(&bus) < 0 || sd_bus_set_address(bus, address.c_str()) < 0 ||
        sd_bus_set_bus_client(bus, 1) < 0 || sd_bus_start(bus) < 0 ||
        sd_bus_match_signal(bus, nullptr, nullptr, nullptr, "org.freedesktop.login1.Session",
                            "Lock", note, &count) < 0)
        return sd_bus_flush_close_unref(bus);
    return bus;
}

}  // namespace

Judge::Judge(const std::string& display, Colour secret, const std::string& systemBus,
             std::filesystem::path fallbackLog)
    : display_(display),
      secret_(secret),
      systemBus_(systemBus),
      fallbackLog_(std::move(fallbackLog)),
      start_(uptime()),
      thread_([this](const std::stop_token& stop) { run(stop); }) {
    isReady_.wait(false);
}

Judge::~Judge() = default;

double Judge::now() const {
    return uptime() - start_;
}

void Judge::lockIsUp(double begun) {
    const std::lock_guard guard(mutex_);
    locks_.push_back({{now(), never}, begun});
}

void Judge::lockMayEnd() {
    const std::lock_guard guard(mutex_);
    if (!locks_.empty() && locks_.back().to == never) locks_.back().to = now();
}

void Judge::appIsKilled(bool guardToo) {
    const std::lock_guard guard(mutex_);
    kills_.push_back({now(), guardToo});
}

void Judge::guardIsKilled() {
    const std::lock_guard guard(mutex_);
    guardKills_.push_back(now());
}

void Judge::run(const std::stop_token& stop) {
    auto* const connection = xcb_connect(display_.c_str(), nullptr);
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    int asked = 0;
    sd_bus* bus = systemBus_.empty() ? nullptr : listen(systemBus_, asked);
    std::uintmax_t fallbackSize = 0;
    std::minstd_rand random(1);
    bool wasSeen = false;
    isReady_ = true;
    isReady_.notify_all();
    while (!stop.stop_requested() && !xcb_connection_has_error(connection)) {
        int result = 0;
        while (bus && (result = sd_bus_process(bus, nullptr)) > 0) continue;
        if (result < 0) bus = sd_bus_unref(bus);
        std::error_code error;
        const auto size = std::filesystem::file_size(fallbackLog_, error);
        if (!error && size > fallbackSize) {
            fallbackSize = size;
            ++asked;
        }
        const double before = now();
        const bool isSeen = sees(connection, root, static_cast<unsigned>(random()));
        const double after = now();
        const std::lock_guard guard(mutex_);
        ++samples_;
        for (; asked > 0; --asked) requests_.push_back(before);
        // The secret was visible at some moment between `before` and `after`. Take the longest
        // possible span, up to the first sample without it.
        if (isSeen && !wasSeen) exposures_.push_back({{before, after}, before});
        if (isSeen) exposures_.back().lastAskedFor = before;
        if (!exposures_.empty() && (isSeen || wasSeen)) exposures_.back().to = after;
        wasSeen = isSeen;
        std::this_thread::sleep_for(pause);
    }
    sd_bus_flush_close_unref(bus);
    xcb_disconnect(connection);
}

/// Reads one random row and one random column of the screen.
bool Judge::sees(xcb_connection_t* c, xcb_window_t root, unsigned draw) const {
    const auto size = replyOf(c, xcb_get_geometry, xcb_get_geometry_reply, root);
    if (!size) return false;
    const auto image = [&](int x, int y, int width, int height) {
        return xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, root, static_cast<std::int16_t>(x),
                             static_cast<std::int16_t>(y), static_cast<std::uint16_t>(width),
                             static_cast<std::uint16_t>(height), ~0U);
    };
    const auto row = image(0, static_cast<int>(draw % size->height), size->width, 1);
    const auto column =
        image(static_cast<int>(draw / 7 % size->width), 0, 1, static_cast<int>(size->height));
    bool found = false;
    for (const auto cookie : {row, column}) {
        // The request fails if the screen has just shrunk.
        const XReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(c, cookie, nullptr));
        if (!reply) continue;
        const auto* const pixels = reinterpret_cast<const Colour*>(xcb_get_image_data(reply.get()));
        const auto count =
            xcb_get_image_data_length(reply.get()) / static_cast<int>(sizeof(Colour));
        found |= std::any_of(pixels, pixels + count,
                             [this](Colour pixel) { return (pixel & 0xffffff) == secret_; });
    }
    return found;
}

Judge::Verdict Judge::verdict() {
    thread_.request_stop();
    if (thread_.joinable()) thread_.join();
    Verdict result;
    result.samples = samples_;
    const double end = now();
    // Each kill during a lock starts a new part.
    for (const auto& lock : locks_) {
        const double over = std::min(lock.to, end);
        result.watched += over - lock.from;
        std::vector<Span> parts{{lock.from, over}};
        std::vector<const Kill*> causes{nullptr};
        for (const auto& kill : kills_) {
            if (kill.at < lock.from || kill.at >= over) continue;
            parts.back().to = kill.at;
            parts.push_back({kill.at, over});
            causes.push_back(&kill);
        }
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const auto [from, to] = parts[i];
            // An immediate hand-off requests the session's lock before the covers are up.
            const double since = i == 0 ? lock.begun : from;
            const auto request =
                std::ranges::find_if(requests_, [&](double at) { return at >= since && at < to; });
            const double asked = request == requests_.end() ? to : *request;
            double shown = 0, bare = 0;
            for (const auto& exposure : exposures_) {
                // The recorded end may be one sample late, so require a sample that saw it in this
                // part.
                if (exposure.lastAskedFor < from) continue;
                const double part = overlap(exposure.from, exposure.to, from, asked);
                // A sample that began before a kill may show the screen after it.
                const bool endsInKill = i + 1 < parts.size() && exposure.from + slack > to;
                if (part > 0 && !causes[i] && !endsInKill)
                    result.shown.emplace_back(exposure.from, part);
                shown += part;
                bare += overlap(exposure.from, exposure.to, from, to);
            }
            if (!causes[i]) continue;
            // The guard was killed before it could make the request.
            const bool guardToo =
                causes[i]->guardToo || std::ranges::any_of(guardKills_, [&](double at) {
                    return at >= from && at < asked + slack;
                });
            result.gaps.push_back(
                {guardToo, shown, request == requests_.end() ? -1 : asked - from, bare});
        }
    }
    return result;
}

}  // namespace Campaign
