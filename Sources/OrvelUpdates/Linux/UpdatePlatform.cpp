#include "OrvelUpdates/UpdatePlatform.h"

#include <charconv>
#include <ctime>
#include <memory>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <gio/gio.h>
#include <sys/mman.h>
#include <unistd.h>

#include "OrvelCore/FileDescriptor.h"
#include "OrvelSystem/Linux/Spawn.h"

namespace OrvelUpdates::UpdatePlatform {

namespace {

using OrvelCore::FileDescriptor;

template <class T>
using Object = std::unique_ptr<T, decltype(&g_object_unref)>;

/// Copies the bytes to a memory file that no process can change; a closed file on failure.
FileDescriptor sealed(std::string_view bytes) {
    FileDescriptor file(::memfd_create("package", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    constexpr int all = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
    if (!file.isOpen() || file.write(bytes) || ::fcntl(file.get(), F_ADD_SEALS, all) != 0 ||
        ::lseek(file.get(), 0, SEEK_SET) != 0)
        return FileDescriptor(-1);
    return file;
}

/// The output of a program that reads the file as its standard input; `nullopt` if the program
/// fails.
std::optional<std::string> outputOf(const std::vector<const char*>& arguments,
                                    const FileDescriptor& input) {
    const Object<GSubprocessLauncher> launcher(
        g_subprocess_launcher_new(static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                                                                G_SUBPROCESS_FLAGS_STDERR_SILENCE)),
        g_object_unref);
    // The launcher closes the descriptor, so pass it a duplicate.
    g_subprocess_launcher_take_stdin_fd(launcher.get(), ::fcntl(input.get(), F_DUPFD_CLOEXEC, 0));
    const Object<GSubprocess> process(
        g_subprocess_launcher_spawnv(launcher.get(), arguments.data(), nullptr), g_object_unref);
    if (!process) return {};
    char* text = nullptr;
    const bool ended = g_subprocess_communicate_utf8(process.get(), nullptr, nullptr, &text,
                                                     nullptr, nullptr) != FALSE;
    const std::unique_ptr<char, decltype(&g_free)> owned(text, g_free);
    if (!ended || text == nullptr || g_subprocess_get_successful(process.get()) == FALSE) return {};
    return text;
}

}  // namespace

std::optional<PackageIdentity> packageIdentity(std::string_view archive) {
    const auto file = sealed(archive);
    if (!file.isOpen()) return {};
    // Use the absolute path, since the user can change PATH.
    const auto fields = outputOf(
        {"/usr/bin/dpkg-deb", "--show", "--showformat=${Package} ${Version}", "-", nullptr}, file);
    if (!fields) return {};
    // The format is "karvo 1.4-7"; the Debian revision is the build number.
    const auto space = fields->find(' ');
    const auto dash = fields->rfind('-');
    if (space == std::string::npos || dash == std::string::npos || dash < space) return {};
    PackageIdentity identity{.name = fields->substr(0, space),
                             .version = fields->substr(space + 1, dash - space - 1)};
    const char* const end = fields->data() + fields->size();
    const auto [rest, error] = std::from_chars(fields->data() + dash + 1, end, identity.build);
    if (error != std::errc() || rest != end || identity.build <= 0) return {};
    return identity;
}

std::string_view packageExtension() {
    return ".deb";
}

void openPackage(const std::filesystem::path& package) {
    // Some desktops' openers run as long as the program that they open. The installer replaces this
    // program and must outlive it, so do not wait.
    constexpr const char* open = R"(xdg-open "$1" || xdg-open "$2")";
    (void)OrvelSystem::spawnDetached(
        {"sh", "-c", open, "sh", package.string(), package.parent_path().string()});
}

double continuousClock() {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace OrvelUpdates::UpdatePlatform
