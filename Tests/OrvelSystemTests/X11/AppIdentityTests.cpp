#include "OrvelCore/AppLockRules.h"
#include "OrvelCore/PrivateAppList.h"
#include "OrvelSystem/Linux/WellKnownApps.h"
#include "OrvelSystem/X11/AppIdentity.h"

namespace {

const std::vector<DesktopEntry> entries = {
    {.id = "debian-xterm", .name = "XTerm", .startupClass = "XTerm", .executable = "xterm"},
    {.id = "hidden-tool", .name = "Helper", .executable = "tool"},
    {.id = "org.gnome.Terminal", .name = "Terminal", .isShown = true},
    {.id = "org.kde.konsole", .name = "Konsole", .executable = "konsole", .isShown = true},
    {.id = "org.telegram.desktop", .name = "Telegram", .isShown = true},
    {.id = "panel-preferences", .name = "Panel", .executable = "xfce4-panel", .isShown = true},
    {.id = "telegram-desktop_telegram-desktop", .name = "Telegram", .isShown = true},
    {.id = "thunderbird", .name = "Thunderbird", .executable = "thunderbird", .isShown = true},
    {.id = "visible-tool", .name = "Tool", .executable = "tool", .isShown = true},
};

TEST(AppIdentity, IsTheEntrysWhereOneFitsAndElseTheProgramsFile) {
    const struct {
        AppTraits traits;
        const char* bundleID;
        const char* name;
    } cases[] = {
        {{.windowInstance = "xterm", .windowClass = "xterm"}, "debian-xterm", "XTerm"},
        {{.toolkitID = "org.gnome.Terminal", .executable = "gnome-terminal-server"},
         "org.gnome.Terminal",
         "Terminal"},
        {{.windowClass = "Thunderbird"}, "com.apple.mail", "Thunderbird"},
        {{.sandbox = "org.telegram.desktop", .executable = "bwrap"},
         "ru.keepcoder.Telegram",
         "Telegram"},
        {{.executable = "tool"}, "visible-tool", "Tool"},
        // Started from a terminal.
        {{.scope = "org.kde.konsole", .executable = "xterm"}, "debian-xterm", "XTerm"},
        {{.scope = "org.kde.konsole", .executable = "kde-thing"}, "org.kde.konsole", "Konsole"},
        // A panel can never be locked, even though another entry starts the same program.
        {{.windowClass = "Xfce4-panel", .executable = "xfce4-panel"},
         "com.apple.dock",
         "Xfce4-panel"},
        {{.windowInstance = "main", .windowClass = "MyTool", .executable = "mytool-bin"},
         "mytool-bin",
         "MyTool"},
        // An interpreter is not the app.
        {{.windowClass = "Notes.py", .executable = "python3.11"}, "notes.py", "Notes.py"},
        {{.windowClass = "Notepad.exe", .executable = "wine64-preloader"},
         "notepad.exe",
         "Notepad.exe"},
        {{.executable = "python3.11"}, "python3.11", "python3.11"},
        {{.windowClass = "Far"}, "far", "Far"},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(identifyApp(entries, one.traits), (AppIdentity{one.bundleID, one.name}))
            << one.bundleID;
    }
    EXPECT_EQ(identifyApp(entries, {}), AppIdentity());
}

TEST(AppIdentity, AnEntryIsKnownByTheNameOfItsFile) {
    EXPECT_EQ(DesktopEntry::idOf("org.gnome.Terminal.desktop"), "org.gnome.Terminal");
    EXPECT_EQ(DesktopEntry::idOf("a.desktop.desktop"), "a.desktop");
    for (const std::string file : {"", ".desktop", "terminal", "terminal.desktop~", "\xff.desktop"})
        EXPECT_EQ(DesktopEntry::idOf(file), std::nullopt) << file;
}

TEST(AppIdentity, ReadsTheUnitOfAControlGroup) {
    const std::string uuid = "1b2c3d4e-0000-1111-2222-333344445555";
    const std::string session = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/";
    const struct {
        std::string text, sandbox, scope;
    } cases[] = {
        {session + "app-gnome-org.gnome.Terminal-1234.scope\n", "", "org.gnome.Terminal"},
        {session + "app-firefox\\x2desr-77.scope\n", "", "firefox-esr"},
        {session + "app-gnome-thunderbird@autostart.service\n", "", "thunderbird"},
        {session + "app-flatpak-org.signal.Signal-9.scope\n", "org.signal.Signal", ""},
        {session + "snap.telegram-desktop.telegram-desktop-" + uuid + ".scope\n",
         "telegram-desktop_telegram-desktop", ""},
        {session + "snap.slack.slack." + uuid + ".scope\n", "slack_slack", ""},
        {"12:pids:/user.slice\n1:name=systemd:/user.slice/app-foo-1.scope\n0::/\n", "", "foo"},
        {session + "vte-spawn-" + uuid + ".scope\n", "", ""},
        {"0::/user.slice/user-0.slice/session-1.scope\n", "", ""},
        {"0::/snap.x.scope", "", ""},
        {"app-.scope", "", ""},
        {"", "", ""},
    };
    for (const auto& one : cases) {
        AppTraits traits;
        readControlGroup(one.text, traits);
        EXPECT_EQ(traits.sandbox, one.sandbox) << one.text;
        EXPECT_EQ(traits.scope, one.scope) << one.text;
    }
}

TEST(AppIdentity, FindsTheProgramThatACommandRuns) {
    const struct {
        std::vector<std::string> command;
        const char* program;
    } cases[] = {
        {{"/usr/bin/gimp-2.10", "%U"}, "gimp-2.10"},
        {{"env", "-u", "A=1", "/opt/x/app", "B=2"}, "app"},
        {{"env", "env", "env"}, "env"},
        {{"python3", "/usr/share/app.py"}, ""},
        {{"/usr/bin/flatpak", "run", "org.foo"}, ""},
        {{"env"}, ""},
        {{"/"}, ""},
        {{}, ""},
    };
    for (const auto& one : cases) EXPECT_EQ(programOf(one.command), one.program);
}

TEST(WellKnownApps, StandForWhatTheProductNamesItself) {
    for (const auto bundleID : PrivateAppList::suggestions) {
        for (const auto& entry : entriesForBundleID(bundleID))
            EXPECT_EQ(bundleIDForEntry(entry), bundleID);
        EXPECT_NE(entriesForBundleID(bundleID).front(), bundleID);
    }
    for (const auto* panel : {"xfce4-panel", "org.kde.plasmashell", "xfdesktop", "krunner"})
        EXPECT_FALSE(AppLockRules::canLock(bundleIDForEntry(panel))) << panel;
    EXPECT_EQ(bundleIDForEntry("org.gnome.gedit"), "org.gnome.gedit");
}

}  // namespace
