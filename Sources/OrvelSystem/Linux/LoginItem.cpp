#include "OrvelSystem/LoginItem.h"

#include <filesystem>
#include <memory>
#include <string>

#include <fmt/format.h>
#include <glib.h>

#include "OrvelCore/AppFolders.h"
#include "OrvelCore/AtomicFile.h"
#include "OrvelCore/Brand.h"
#include "OrvelSystem/Linux/AutostartEntry.h"
#include "OrvelSystem/ProcessList.h"

namespace OrvelSystem {

namespace fs = std::filesystem;
namespace Brand = OrvelCore::Brand;

namespace {

/// Quotes an argument for the command line of a desktop entry: special characters are escaped for
/// the command line, and the backslashes once more for the value of a key.
std::string quoted(const std::string& argument) {
    std::string result = "\"";
    for (const char c : argument) {
        if (c == '\\')
            result += "\\\\\\\\";
        else if (c == '"' || c == '`' || c == '$')
            result += std::string("\\\\") + c;
        else if (c == '%')
            result += "%%";
        else
            result += c;
    }
    return result + '"';
}

bool flag(GKeyFile* entry, const char* key, bool otherwise) {
    GError* error = nullptr;
    const bool value = g_key_file_get_boolean(entry, "Desktop Entry", key, &error) != FALSE;
    if (error == nullptr) return value;
    g_error_free(error);
    return otherwise;
}

}  // namespace

fs::path AutostartEntry::file() {
    return OrvelCore::configFolder().parent_path() / "autostart" /
           (std::string(Brand::bundleIdentifier) + ".desktop");
}

bool LoginItem::isEnabled() {
    const std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)> entry(g_key_file_new(),
                                                                       g_key_file_unref);
    if (!g_key_file_load_from_file(entry.get(), AutostartEntry::file().c_str(), G_KEY_FILE_NONE,
                                   nullptr))
        return false;
    // The desktops' settings programs disable an entry with one of these keys.
    return !flag(entry.get(), "Hidden", false) &&
           flag(entry.get(), "X-GNOME-Autostart-enabled", true);
}

std::string AutostartEntry::text(const fs::path& program) {
    return fmt::format(
        "[Desktop Entry]\n"
        "Type=Application\n"
        "Name={}\n"
        "Icon={}\n"
        "Exec={} {}\n"
        "X-GNOME-Autostart-enabled=true\n",
        Brand::name, Brand::bundleIdentifier, quoted(program.string()), LoginItem::argument);
}

std::error_code LoginItem::registerItem() {
    // An update may have replaced the program while it runs; the entry must name the new file.
    const auto program = ProgramFile::own();
    if (program.path.empty() || program.state == ProgramFile::State::gone)
        return std::make_error_code(std::errc::no_such_file_or_directory);
    // A symbolic link may point to an entry that we must not overwrite.
    const auto file = AutostartEntry::file();
    std::error_code error;
    if (fs::is_symlink(file, error)) fs::remove(file, error);
    const auto written = OrvelCore::writeAtomically(file, AutostartEntry::text(program.path));
    return written ? std::error_code() : written.error();
}

std::error_code LoginItem::unregisterItem() {
    std::error_code error;
    fs::remove(AutostartEntry::file(), error);
    return error;
}

}  // namespace OrvelSystem
