#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "OrvelSystem/LoginItem.h"

#include "Support/Environment.h"
#include "Support/TemporaryFolder.h"

using OrvelSystem::LoginItem;
namespace fs = std::filesystem;

TEST(LoginItem, IsWhatTheSessionWillDo) {
    const TemporaryFolder folder;
    const Environment config("XDG_CONFIG_HOME", folder.path().c_str());
    const auto write = [](const std::string& text) { std::ofstream(LoginItem::file()) << text; };
    EXPECT_EQ(LoginItem::file(), folder.path() / "autostart/com.brindlewick.karvo.desktop");
    EXPECT_FALSE(LoginItem::isEnabled());
    EXPECT_FALSE(LoginItem::unregisterItem()) << "what is not there need not be removed";
    EXPECT_FALSE(LoginItem::registerItem());
    EXPECT_TRUE(LoginItem::isEnabled());

    std::string line, command;
    for (std::ifstream entry(LoginItem::file()); std::getline(entry, line);)
        if (line.starts_with("Exec=")) command = line;
    const auto own = fs::read_symlink("/proc/self/exe").string();
    EXPECT_EQ(command, "Exec=\"" + own + "\" --login-item");

    // The desktop's own settings switch it off, and the user here on again.
    for (const auto* off : {"Hidden=true", "X-GNOME-Autostart-enabled=false"}) {
        write(std::string("[Desktop Entry]\nType=Application\nName=Karvo\nExec=x\n") + off + "\n");
        EXPECT_FALSE(LoginItem::isEnabled()) << off;
        EXPECT_FALSE(LoginItem::registerItem());
        EXPECT_TRUE(LoginItem::isEnabled()) << off;
    }
    write("no desktop entry");
    EXPECT_FALSE(LoginItem::isEnabled());
    EXPECT_FALSE(LoginItem::unregisterItem());
    EXPECT_FALSE(fs::exists(LoginItem::file()));

    fs::remove_all(folder.path() / "autostart");
    std::ofstream(folder.path() / "autostart") << "a file in the folder's place";
    EXPECT_TRUE(LoginItem::registerItem());
    EXPECT_FALSE(LoginItem::isEnabled());
}
