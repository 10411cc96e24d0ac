#include "PrivateSession.h"

#include <pwd.h>

namespace DesktopTest {

Environment privateEnvironment(const std::filesystem::path& folder) {
    const auto home = folder / "home";
    const auto runtime = folder / "run";
    for (const auto& made : {home, runtime, home / ".config", home / ".local/share"})
        std::filesystem::create_directories(made);
    std::filesystem::permissions(runtime, std::filesystem::perms::owner_all);
    const passwd* account = getpwuid(getuid());
    const std::string user = account ? account->pw_name : "root";
    return {
        {"PATH", "/usr/bin:/bin"},
        {"HOME", home},
        {"USER", user},
        {"LOGNAME", user},
        {"LANG", "C.UTF-8"},
        {"TZ", "UTC"},
        {"XDG_CONFIG_HOME", home / ".config"},
        {"XDG_DATA_HOME", home / ".local/share"},
        {"XDG_CACHE_HOME", home / ".cache"},
        {"XDG_RUNTIME_DIR", runtime},
        {"XDG_SESSION_ID", "1"},
        // A program must find the private buses or none, never the machine's.
        {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (folder / "session-bus").string()},
        {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + (folder / "system-bus").string()},
        {"NO_AT_BRIDGE", "1"},
        // Leaks are left to the logic tests: the libraries of a graphical program have their own.
        {"ASAN_OPTIONS",
         "detect_leaks=0:verify_asan_link_order=0:log_path=" + sanitizerReports(folder)},
        {"UBSAN_OPTIONS", "print_stacktrace=1:log_path=" + sanitizerReports(folder)},
    };
}

std::string sanitizerReports(const std::filesystem::path& folder) {
    return folder / "sanitizer";
}

void checkSanitizers(const std::filesystem::path& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().string().starts_with(sanitizerReports(folder)))
            ADD_FAILURE() << textOf(entry.path());
}

void scriptPam(const std::filesystem::path& folder, const std::string& script) {
    // The app asks as "login" where no service of its own is installed.
    for (const char* service : {"karvo", "login", "i3lock", "swaylock"}) {
        if (std::filesystem::exists(folder / "pam.d" / service)) continue;
        const std::string module = KARVO_SCRIPTED_PAM " " + (folder / "pam-script").string() + "\n";
        writeText(folder / "pam.d" / service,
                  "auth required " + module + "account required " + module);
    }
    // In one step, since the module may read at any time.
    writeText(folder / "pam-script.new", script);
    std::filesystem::rename(folder / "pam-script.new", folder / "pam-script");
}

namespace {

// pam_wrapper has 62 names for its folders. It frees that of a program that has been killed, but
// not if this happened before the folder had a `pid` file.
void removeAbandonedPamFolders() {
    using namespace std::filesystem;
    const auto longAgo = file_time_type::clock::now() - std::chrono::minutes(1);
    std::error_code error;
    for (const auto& entry : directory_iterator("/tmp")) {
        const std::string name = entry.path().filename();
        if (name.size() == 5 && name.starts_with("pam.") && !exists(entry.path() / "pid", error) &&
            last_write_time(entry.path(), error) < longAgo)
            remove_all(entry.path(), error);
    }
}

}  // namespace

Environment withPam(Environment environment, const std::filesystem::path& folder) {
    removeAbandonedPamFolders();
    environment["LD_PRELOAD"] = "libpam_wrapper.so";
    environment["PAM_WRAPPER"] = "1";
    environment["PAM_WRAPPER_SERVICE_DIR"] = folder / "pam.d";
    // The sanitizers can't work in a program that binds deeply.
    for (const char* wrapper : {"UID_WRAPPER", "PAM_WRAPPER"})
        environment[std::string(wrapper) + "_DISABLE_DEEPBIND"] = "1";
    return environment;
}

}  // namespace DesktopTest
