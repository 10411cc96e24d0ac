#include "Karvo.h"

#include <fcntl.h>

namespace DesktopTest {

namespace {

std::filesystem::path install(const std::filesystem::path& source, const Desktop& desktop) {
    const auto target = desktop.folder() / "bin" / source.filename();
    std::filesystem::create_directories(target.parent_path());
    // A hard link is faster than a copy, but does not work across file systems.
    std::error_code error;
    std::filesystem::create_hard_link(source, target, error);
    if (error && error != std::errc::file_exists) std::filesystem::copy_file(source, target);
    return target;
}

}  // namespace

Karvo::Karvo(Desktop& desktop, const Options& options)
    : desktop_(desktop),
      options_(options),
      binary_(install(KARVO_BINARY, desktop)),
      guard_(desktop.folder() / "bin" / std::filesystem::path(KARVO_GUARD_BINARY).filename()) {
    if (options_.withGuard) install(KARVO_GUARD_BINARY, desktop);
    process_ = &startAgain(options_.arguments);
}

Process& Karvo::startAgain(const Arguments& arguments) {
    auto environment = desktop_.environmentWithPam();
    if (!options_.withGuide) environment["ORVEL_NO_ONBOARDING"] = "";
    for (const auto& [name, value] : options_.environment) environment[name] = value;
    Arguments all = options_.wrapper;
    all.push_back(binary_.string());
    all.insert(all.end(), arguments.begin(), arguments.end());
    return desktop_.start(all, "karvo", environment);
}

bool Karvo::waitUntilReady() {
    const bool ready = eventually([this] { return answers(); }) &&
                       (!expectsGuard() || eventually([this] { return isGuarded(); }));
    if (!ready)
        std::cerr << "not ready: " << apps().size() << " app(s), " << guards().size()
                  << " guard(s), " << (answers() ? "answers" : "does not answer")
                  << ", exit status " << process_->exitStatus().value_or(-1) << '\n';
    return ready;
}

bool Karvo::isGuarded() const {
    if (guards().size() != 1) return false;
    const auto runtime = desktop_.environment().find("XDG_RUNTIME_DIR");
    const auto folder = runtime == desktop_.environment().end()
                            ? desktop_.dataFolder() / "Karvo"
                            : std::filesystem::path(runtime->second);
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (!entry.path().filename().string().starts_with("karvo-guard-")) continue;
        const int file = ::open(entry.path().c_str(), O_RDWR | O_CLOEXEC);
        struct flock range {};
        range.l_type = F_WRLCK;
        const bool isHeld = fcntl(file, F_GETLK, &range) == 0 && range.l_type != F_UNLCK;
        ::close(file);
        if (isHeld) return true;
    }
    return false;
}

bool Karvo::expectsGuard() const {
    return options_.withGuard && !options_.environment.contains("ORVEL_NO_GUARD");
}

bool Karvo::answers() {
    // An unknown action is answered by the main loop, so the launch is complete then.
    return sd_bus_call_method(desktop_.sessionBus().connection(), "com.brindlewick.karvo",
                              "/com/brindlewick/karvo", "org.freedesktop.Application",
                              "ActivateAction", nullptr, nullptr, "sava{sv}", "ready", 0, 0) >= 0;
}

}  // namespace DesktopTest
