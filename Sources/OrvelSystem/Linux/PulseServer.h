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

/// The sound server of the session, which keeps the feedback sounds and plays them when told. The
/// library talks to it on a thread of its own, which sleeps while there is nothing to do. No server
/// is started, none is connected to before the first sound, and one that went is looked for again
/// with the next. Any thread.
class PulseServer {
  public:
    PulseServer();
    ~PulseServer();
    PulseServer(const PulseServer&) = delete;
    PulseServer& operator=(const PulseServer&) = delete;

    /// `pcm` is mono, signed 16 bits with the low byte first, `SoundSynth::sampleRate` a second.
    void add(OrvelCore::LockSound sound, std::vector<std::uint8_t> pcm);
    void play(OrvelCore::LockSound sound);
    void stop(OrvelCore::LockSound sound);

  private:
    using Clock = std::chrono::steady_clock;

    struct Sample {
        PulseServer* server = nullptr;
        std::string name;
        std::vector<std::uint8_t> pcm;
        pa_stream* upload = nullptr;  // while it lasts
        bool isUploaded = false;
        std::optional<Clock::time_point> wanted;  // since when it waits to be played
        unsigned turn = 0;                        // counts the plays and stops
        std::deque<unsigned> asked;               // turns of the plays that are not answered yet
        std::optional<std::uint32_t> playing;     // what the server calls the newest play
    };

    Sample& sample(OrvelCore::LockSound sound) { return samples_[static_cast<std::size_t>(sound)]; }
    // All of these with the loop's lock held.
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
