#include "OrvelSystem/SoundPlayer.h"

#include "OrvelCore/SoundSynth.h"
#include "OrvelSystem/Linux/PulseServer.h"

namespace OrvelSystem {

namespace {

class ServerSound final : public PlayableSound {
  public:
    ServerSound(std::shared_ptr<PulseServer> server, OrvelCore::LockSound sound)
        : server_(std::move(server)), sound_(sound) {}

    void stop() override { server_->stop(sound_); }
    void play() override { server_->play(sound_); }

  private:
    std::shared_ptr<PulseServer> server_;
    OrvelCore::LockSound sound_;
};

}  // namespace

SoundPlayer::Make SoundPlayer::systemSounds() {
    return [server = std::shared_ptr<PulseServer>()](
               OrvelCore::LockSound sound,
               const std::vector<std::uint8_t>& wav) mutable -> std::unique_ptr<PlayableSound> {
        if (!server) server = std::make_shared<PulseServer>();
        server->add(sound, {wav.begin() + OrvelCore::SoundSynth::wavHeaderSize, wav.end()});
        return std::make_unique<ServerSound>(server, sound);
    };
}

}  // namespace OrvelSystem
