#include "OrvelSystem/Announcer.h"

#include <csignal>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include <libspeechd.h>

#include "OrvelSystem/ScreenReader.h"

namespace OrvelSystem {

namespace {

/// The text to speak next, shared with the thread that speaks it. The thread exists only while
/// there is text.
struct Speech {
    std::mutex mutex;
    bool isSpeaking = false;
    std::optional<std::string> next;

    std::optional<std::string> take() {
        const std::scoped_lock lock(mutex);
        auto text = std::exchange(next, std::nullopt);
        isSpeaking = text.has_value();
        return text;
    }
};

struct Close {
    void operator()(SPDConnection* connection) const { spd_close(connection); }
};

struct Told {
    Told() = default;
    Told(const Told&) = delete;
    Told& operator=(const Told&) = delete;
    ~Told() { std::free(error); }
    char* error = nullptr;
};

// The service speaks queued text even after the connection is closed. We do not start the service:
// an active screen reader already has it running.
void say(const std::string& text) {
    // The library requires a place for its error message.
    Told told;
    const std::unique_ptr<SPDConnectionAddress, decltype(&SPDConnectionAddress__free)> address(
        spd_get_default_address(&told.error), SPDConnectionAddress__free);
    if (!address) return;
    constexpr int autospawn = 0;
    const std::unique_ptr<SPDConnection, Close> connection(spd_open2(
        "Karvo", "main", nullptr, SPD_MODE_SINGLE, address.get(), autospawn, &told.error));
    if (connection) spd_say(connection.get(), SPD_IMPORTANT, text.c_str());
}

void speak(Speech& speech) {
    // The library does not suppress SIGPIPE when it writes to its socket, and the service may end
    // at any time.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    while (const auto text = speech.take()) say(*text);
}

}  // namespace

void Announcer::announce(const std::string& text) {
    static const auto speech = std::make_shared<Speech>();
    if (!ScreenReader::isOn()) return;
    {
        const std::scoped_lock lock(speech->mutex);
        speech->next = text;
        if (std::exchange(speech->isSpeaking, true)) return;
    }
    std::thread([speech = speech] { speak(*speech); }).detach();
}

}  // namespace OrvelSystem
