#include "OrvelSystem/SoundPlayer.h"

#include "ModesDesktop.h"

namespace {

constexpr LockSound all[] = {LockSound::lock, LockSound::unlock, LockSound::failure};

/// A sound server that writes its output to a file.
class SoundServer {
  public:
    SoundServer(std::filesystem::path folder, Environment environment)
        : socket_("unix:" + (folder / "sound").string()),
          heard_(folder / "heard"),
          environment_(std::move(environment)) {
        environment_["PULSE_SERVER"] = socket_;
        server_ = std::make_unique<Process>(
            Arguments{"pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no",
                      "--exit-idle-time=-1", "--load=module-null-sink sink_name=null",
                      "--load=module-native-protocol-unix auth-anonymous=1 socket=" +
                          (folder / "sound").string()},
            environment_, folder / "pulse.log");
    }

    const std::string& socket() const { return socket_; }
    std::string list(const std::string& what) const {
        return run({"pactl", "list", "short", what}, environment_).output;
    }
    bool isUp() const { return list("sinks").find("null") != std::string::npos; }
    void record() {
        recorder_ =
            std::make_unique<Process>(Arguments{"parec", "--device=null.monitor",
                                                "--latency-msec=20", "--raw", heard_.string()},
                                      environment_);
    }
    bool isRecording() const { return std::filesystem::exists(heard_) && !sound().empty(); }
    bool heardSomething() const {
        return std::ranges::any_of(sound(), [](char byte) { return byte != 0; });
    }

  private:
    std::string sound() const { return textOf(heard_); }

    std::string socket_;
    std::filesystem::path heard_;
    Environment environment_;
    std::unique_ptr<Process> server_;
    std::unique_ptr<Process> recorder_;
};

using SoundTest = ModesDesktopTest;

TEST_F(SoundTest, AServerGetsTheSoundsAndPlaysThem) {
    auto server = std::make_unique<SoundServer>(folder().path(), environment());
    qputenv("PULSE_SERVER", QByteArray::fromStdString(server->socket()));
    SoundPlayer player;
    ASSERT_TRUE(eventually([&] { return server->isUp(); }));
    EXPECT_EQ(server->list("clients").find("Karvo"), std::string::npos);
    server->record();
    ASSERT_TRUE(eventually([&] { return server->isRecording(); }));
    EXPECT_FALSE(server->heardSomething());
    for (const auto sound : all) player.play(sound);
    const auto has = [&](LockSound sound) {
        return server->list("samples").find("com.brindlewick.karvo." +
                                            std::string(rawValue(sound))) != std::string::npos;
    };
    EXPECT_TRUE(eventually([&] { return std::ranges::all_of(all, has); }));
    EXPECT_TRUE(eventually([&] { return server->heardSomething(); }));
}

}  // namespace
