#include "OrvelSystem/Linux/PulseServer.h"

#include <utility>

#include "OrvelCore/Brand.h"
#include "OrvelCore/SoundSynth.h"

namespace OrvelSystem {

namespace {

// A sound that plays later than this no longer relates to the user's action.
constexpr auto latestStart = std::chrono::seconds(1);

class Locked {
  public:
    explicit Locked(pa_threaded_mainloop* loop) : loop_(loop) { pa_threaded_mainloop_lock(loop_); }
    ~Locked() { pa_threaded_mainloop_unlock(loop_); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

  private:
    pa_threaded_mainloop* loop_;
};

void forget(pa_operation* operation) {
    if (operation != nullptr) pa_operation_unref(operation);
}

}  // namespace

PulseServer::PulseServer() : loop_(pa_threaded_mainloop_new()) {
    for (auto& sample : samples_) sample.server = this;
    if (loop_ != nullptr && pa_threaded_mainloop_start(loop_) < 0)
        pa_threaded_mainloop_free(std::exchange(loop_, nullptr));
}

PulseServer::~PulseServer() {
    if (loop_ == nullptr) return;
    {
        const Locked locked(loop_);
        disconnect();
    }
    pa_threaded_mainloop_stop(loop_);
    pa_threaded_mainloop_free(loop_);
}

void PulseServer::add(OrvelCore::LockSound sound, std::vector<std::uint8_t> pcm) {
    if (loop_ == nullptr) return;
    const Locked locked(loop_);
    auto& added = sample(sound);
    // The server keeps samples by name, even after this program has ended. Fixed names limit their
    // number.
    added.name = std::string(OrvelCore::Brand::bundleIdentifier) + "." +
                 std::string(OrvelCore::rawValue(sound));
    added.pcm = std::move(pcm);
}

void PulseServer::play(OrvelCore::LockSound sound) {
    if (loop_ == nullptr) return;
    const Locked locked(loop_);
    auto& wanted = sample(sound);
    ++wanted.turn;
    wanted.wanted = Clock::now();
    wanted.repeats = false;
    if (context_ == nullptr || !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_)))
        connect();
    else
        advance(wanted);
}

void PulseServer::stop(OrvelCore::LockSound sound) {
    if (loop_ == nullptr) return;
    const Locked locked(loop_);
    auto& stopped = sample(sound);
    ++stopped.turn;
    stopped.wanted.reset();
    if (const auto index = std::exchange(stopped.playing, {})) end(*index);
}

void PulseServer::connect() {
    disconnect();
    // The library's thread must do this, since it reads files and asks the X server for the
    // server's address.
    pa_mainloop_api_once(
        pa_threaded_mainloop_get_api(loop_),
        [](pa_mainloop_api* api, void* data) {
            auto& self = *static_cast<PulseServer*>(data);
            if (self.context_ != nullptr) return;
            self.context_ = pa_context_new(api, std::string(OrvelCore::Brand::name).c_str());
            if (self.context_ == nullptr) return;
            pa_context_set_state_callback(
                self.context_,
                [](pa_context* context, void* owner) {
                    if (pa_context_get_state(context) != PA_CONTEXT_READY) return;
                    auto& server = *static_cast<PulseServer*>(owner);
                    for (auto& sample : server.samples_) server.advance(sample);
                },
                data);
            pa_context_connect(self.context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
        },
        this);
}

void PulseServer::disconnect() {
    for (auto& sample : samples_) {
        if (auto* const stream = std::exchange(sample.upload, nullptr)) {
            pa_stream_set_state_callback(stream, nullptr, nullptr);
            pa_stream_unref(stream);
        }
        sample.isUploaded = false;
        sample.asked.clear();
        sample.playing.reset();
    }
    if (context_ == nullptr) return;
    pa_context_set_state_callback(context_, nullptr, nullptr);
    pa_context_disconnect(context_);
    pa_context_unref(std::exchange(context_, nullptr));
}

void PulseServer::advance(Sample& sample) {
    if (!sample.wanted || pa_context_get_state(context_) != PA_CONTEXT_READY) return;
    if (!sample.isUploaded) return upload(sample);
    const auto wanted = *std::exchange(sample.wanted, {});
    if (Clock::now() - wanted > latestStart) return;
    pa_proplist* const properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "event");
    sample.asked.push_back({sample.turn, wanted, sample.repeats});
    forget(pa_context_play_sample_with_proplist(
        context_, sample.name.c_str(), nullptr, PA_VOLUME_INVALID, properties,
        [](pa_context*, std::uint32_t index, void* data) {
            auto& asked = *static_cast<Sample*>(data);
            asked.server->started(asked, index);
        },
        &sample));
    pa_proplist_free(properties);
}

void PulseServer::started(Sample& sample, std::uint32_t index) {
    // The server answers requests in order.
    const auto play = sample.asked.front();
    sample.asked.pop_front();
    if (index != PA_INVALID_INDEX) {
        if (play.turn == sample.turn)
            sample.playing = index;
        else
            end(index);
        return;
    }
    // Another client has removed the sample, or the server cannot play it. It is sent once more.
    sample.isUploaded = false;
    if (play.isRepeated || play.turn != sample.turn) return;
    sample.wanted = play.wanted;
    sample.repeats = true;
    advance(sample);
}

void PulseServer::end(std::uint32_t index) {
    if (pa_context_get_state(context_) == PA_CONTEXT_READY)
        forget(pa_context_kill_sink_input(context_, index, nullptr, nullptr));
}

void PulseServer::upload(Sample& sample) {
    if (sample.upload != nullptr || sample.pcm.empty()) return;
    const pa_sample_spec format{PA_SAMPLE_S16LE, OrvelCore::SoundSynth::sampleRate, 1};
    sample.upload = pa_stream_new(context_, sample.name.c_str(), &format, nullptr);
    if (sample.upload == nullptr) return;
    pa_stream_set_state_callback(
        sample.upload,
        [](pa_stream*, void* data) {
            auto& changed = *static_cast<Sample*>(data);
            changed.server->uploadChanged(changed);
        },
        &sample);
    pa_stream_connect_upload(sample.upload, sample.pcm.size());
}

void PulseServer::uploadChanged(Sample& sample) {
    const auto state = pa_stream_get_state(sample.upload);
    if (state == PA_STREAM_READY) {
        pa_stream_write(sample.upload, sample.pcm.data(), sample.pcm.size(), nullptr, 0,
                        PA_SEEK_RELATIVE);
        pa_stream_finish_upload(sample.upload);
    } else if (!PA_STREAM_IS_GOOD(state)) {
        pa_stream_unref(std::exchange(sample.upload, nullptr));
        sample.isUploaded = state == PA_STREAM_TERMINATED;
        if (sample.isUploaded) advance(sample);
    }
}

}  // namespace OrvelSystem
