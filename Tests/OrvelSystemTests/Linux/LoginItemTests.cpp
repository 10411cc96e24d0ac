#include <glib.h>
#include <sys/wait.h>

#include "OrvelSystem/Linux/AutostartEntry.h"
#include "OrvelSystem/LoginItem.h"

#include "Support/Environment.h"
#include "Support/TemporaryFolder.h"

namespace fs = std::filesystem;

namespace {

/// Parses the command line of an entry like a session: the escapes of the file, then the quotes of
/// the command line, then the field codes.
std::vector<std::string> commandLine(const std::string& entry) {
    GKeyFile* const file = g_key_file_new();
    g_key_file_load_from_data(file, entry.c_str(), entry.size(), G_KEY_FILE_NONE, nullptr);
    gchar* const line = g_key_file_get_string(file, "Desktop Entry", "Exec", nullptr);
    g_key_file_unref(file);
    int count = 0;
    gchar** arguments = nullptr;
    std::vector<std::string> result;
    if (line != nullptr && g_shell_parse_argv(line, &count, &arguments, nullptr)) {
        for (int i = 0; i < count; ++i) {
            std::string argument;
            for (const char* at = arguments[i]; *at != '\0'; ++at) {
                if (*at == '%' && *++at != '%') argument += "a field code: %";
                argument += *at;
                if (*at == '\0') break;
            }
            result.push_back(argument);
        }
        g_strfreev(arguments);
    }
    g_free(line);
    return result;
}

}  // namespace

TEST(LoginItem, StartsAProgramAtAnyPath) {
    for (const char* const path :
         {"/usr/libexec/karvo/Karvo", "/opt/My apps/Karvo", "/o/a\"b", "/o/$HOME", "/o/`id`",
          "/o/50%", "/o/%f", "/o/a\\b", "/o/a\\\\$\"`%u c"}) {
        const std::vector<std::string> expected{path, "--login-item"};
        EXPECT_EQ(commandLine(AutostartEntry::text(path)), expected) << path;
    }
}

TEST(LoginItem, IsWhatTheSessionWillDo) {
    const TemporaryFolder folder;
    const Environment config("XDG_CONFIG_HOME", folder.path().c_str());
    const auto write = [](const std::string& text) {
        std::ofstream(AutostartEntry::file()) << text;
    };
    EXPECT_EQ(AutostartEntry::file(), folder.path() / "autostart/com.brindlewick.karvo.desktop");
    EXPECT_FALSE(LoginItem::isEnabled());
    EXPECT_FALSE(LoginItem::unregisterItem()) << "what is not there need not be removed";
    EXPECT_FALSE(LoginItem::registerItem());
    EXPECT_TRUE(LoginItem::isEnabled());

    std::string line, command;
    for (std::ifstream entry(AutostartEntry::file()); std::getline(entry, line);)
        if (line.starts_with("Exec=")) command = line;
    const auto own = fs::read_symlink("/proc/self/exe").string();
    EXPECT_EQ(command, "Exec=\"" + own + "\" --login-item");

    // The desktop's settings disable the item, and the user enables it again here.
    for (const auto* off : {"Hidden=true", "X-GNOME-Autostart-enabled=false"}) {
        write(std::string("[Desktop Entry]\nType=Application\nName=Karvo\nExec=x\n") + off + "\n");
        EXPECT_FALSE(LoginItem::isEnabled()) << off;
        EXPECT_FALSE(LoginItem::registerItem());
        EXPECT_TRUE(LoginItem::isEnabled()) << off;
    }
    write("no desktop entry");
    EXPECT_FALSE(LoginItem::isEnabled());
    EXPECT_FALSE(LoginItem::unregisterItem());
    EXPECT_FALSE(fs::exists(AutostartEntry::file()));

    fs::remove_all(folder.path() / "autostart");
    std::ofstream(folder.path() / "autostart") << "a file in the folder's place";
    EXPECT_TRUE(LoginItem::registerItem());
    EXPECT_FALSE(LoginItem::isEnabled());
}

// Runs again as a copy of this program. The copy's file is then replaced, as in an update, and
// deleted.
TEST(LoginItem, NamesTheProgramThatAnUpdateLeftInItsPlaceAndNoneThatIsGone) {
    if (const char* const copy = std::getenv("LOGIN_ITEM_TEST")) {
        const fs::path own = copy;
        fs::copy_file(own, own.string() + ".new");
        fs::rename(own.string() + ".new", own);
        ASSERT_TRUE(fs::read_symlink("/proc/self/exe").string().ends_with(" (deleted)"));
        EXPECT_FALSE(LoginItem::registerItem());
        EXPECT_NE(textOf(AutostartEntry::file()).find("Exec=\"" + own.string() + "\" "),
                  std::string::npos);
        EXPECT_FALSE(LoginItem::unregisterItem());
        fs::remove(own);
        EXPECT_EQ(LoginItem::registerItem(), std::errc::no_such_file_or_directory);
        EXPECT_FALSE(fs::exists(AutostartEntry::file()));
        return;
    }
    const TemporaryFolder folder;
    const auto copy = folder / "Program";
    fs::copy_file("/proc/self/exe", copy);
    const Environment config("XDG_CONFIG_HOME", folder.path().c_str());
    const Environment again("LOGIN_ITEM_TEST", copy.c_str());
    const pid_t child = fork();
    if (child == 0) {
        execl(copy.c_str(), copy.c_str(), "--gtest_filter=LoginItem.NamesThe*", nullptr);
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}
