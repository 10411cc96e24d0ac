#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include <pulse/pulseaudio.h>

#include "OrvelCore/Sound.h"

namespace OrvelSystem {

/// The session's sound server, which stores the feedback sounds and plays them on request. The
/// library communicates on its own thread, which sleeps when idle. A server is not started if none
/// is running, and is not contacted before the first sound. After a lost connection, the next sound
/// reconnects. Any thread.
class PulseServer {
  public:
    PulseServer();
    ~PulseServer();
    PulseServer(const PulseServer&) = delete;
    PulseServer& operator=(const PulseServer&) = delete;

    /// `pcm` is mono, signed 16-bit little-endian, with `SoundSynth::sampleRate` samples per
    /// second.
    void add(OrvelCore::LockSound sound, std::vector<std::uint8_t> pcm);
    /// Plays the sound from its beginning. If that is not possible within a second, the sound is
    /// skipped.
    void play(OrvelCore::LockSound sound);
    void stop(OrvelCore::LockSound sound);

  private:
    using Clock = std::chrono::steady_clock;

    struct Sample {
        PulseServer* server = nullptr;
        std::string name;
        std::vector<std::uint8_t> pcm;
        pa_stream* upload = nullptr;  // null unless an upload is in progress
        bool isUploaded = false;
        std::optional<Clock::time_point> wanted;  // when the pending play was requested
        unsigned turn = 0;                        // counts plays and stops
        struct Play {
            unsigned turn = 0;
            Clock::time_point wanted;
            bool isRepeated = false;
        };
        std::deque<Play> asked;                // unanswered plays, oldest first
        bool repeats = false;                  // the pending play has failed once
        std::optional<std::uint32_t> playing;  // the server's index of the latest play
    };

    Sample& sample(OrvelCore::LockSound sound) { return samples_[static_cast<std::size_t>(sound)]; }
    // Call these with the loop's lock held.
    void connect();
    void disconnect();
    void advance(Sample& sample);
    void upload(Sample& sample);
    void uploadChanged(Sample& sample);
    void started(Sample& sample, std::uint32_t index);
    void end(std::uint32_t index);

    pa_threaded_mainloop* loop_;
    pa_context* context_ = nullptr;
    std::array<Sample, 3> samples_;
};

}  // namespace OrvelSystem
