#include <QApplication>
#include <QIcon>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <linux/close_range.h>
#include <sys/resource.h>
#include <unistd.h>

#include "OrvelApp/AppDelegate.h"
#include "OrvelApp/Linux/FreedesktopApplication.h"
#include "OrvelApp/Linux/LiveSystem.h"
#include "OrvelApp/Linux/QuitSignals.h"
#include "OrvelCore/Brand.h"
#include "OrvelSystem/Linux/ExitPipe.h"
#include "OrvelSystem/Linux/SessionKind.h"
#include "OrvelSystem/Linux/Spawn.h"
#include "OrvelSystem/Linux/UserLock.h"
#include "OrvelSystem/LoginItem.h"
#include "OrvelSystem/ProcessList.h"
#include "OrvelSystem/Worker.h"

namespace {

using OrvelApp::FreedesktopApplication;
namespace Brand = OrvelCore::Brand;

// 'logo', the reason code for the end of the session.
constexpr std::uint32_t logOutCode = 0x6C6F676F;

std::vector<std::string> toStrings(const QStringList& list) {
    std::vector<std::string> strings;
    for (const auto& text : list) strings.push_back(text.toStdString());
    return strings;
}

int fail(std::string_view sentence) {
    fmt::print(stderr, "{}\n", sentence);
    return EXIT_FAILURE;
}

/// For a program that is not installed, and so has no icon in the theme.
QIcon ownIcon() {
    QIcon icon;
    for (const int size : {16, 32, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icon/%1.png").arg(size));
    return icon;
}

using Arguments = std::vector<std::string>;

/// Replaces this process with the program at that path. Returns only if that failed.
int become(const std::string& program, const Arguments& arguments) {
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const auto& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    // Files that libraries have opened are of no use to the new program.
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    execv(program.c_str(), argv.data());
    return fail(fmt::format("{} could not be started again.", Brand::name));
}

/// Runs the program. Returns its exit status and, if it is to be started again, sets `restart` to
/// the arguments.
int run(int argc, char** argv, std::optional<Arguments>& restart) {
    const auto session = OrvelSystem::currentSession();
    if (!session) return fail(session.error());
    const bool isWayland = *session == OrvelSystem::SessionKind::wayland;
    qputenv("QT_QPA_PLATFORM", isWayland ? "wayland" : "xcb");
    if (isWayland) qputenv(OrvelSystem::rolelessVariable, "1");
    // Qt 6.8 crashes when an input device is moved to another master, which any X client can do.
    // Without XInput 2 it does not follow devices.
    if (!isWayland) qputenv("QT_XCB_NO_XI2", "1");
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QString::fromUtf8(Brand::name.data()));
    QApplication::setDesktopFileName(QString::fromUtf8(Brand::bundleIdentifier.data()));
    QApplication::setWindowIcon(QIcon::fromTheme(QApplication::desktopFileName(), ownIcon()));
    QApplication::setQuitOnLastWindowClosed(false);

    QStringList urls = QApplication::arguments().mid(1);
    const bool asLoginItem =
        urls.removeAll(QString::fromUtf8(OrvelSystem::LoginItem::argument)) > 0;

    FreedesktopApplication desktop;
    switch (desktop.start(urls, asLoginItem)) {
        case FreedesktopApplication::Start::first:
            break;
        case FreedesktopApplication::Start::second:
            return EXIT_SUCCESS;
        case FreedesktopApplication::Start::refused:
            return fail(fmt::format("{} is already running, but does not answer.", Brand::name));
    }
    // There is one marker for a locked screen, so there must be only one app, even with several X
    // displays.
    const OrvelSystem::UserLock lock(OrvelSystem::UserLock::app);
    if (!lock.isOurs()) return fail(fmt::format("{} is already running.", Brand::name));

    OrvelApp::LiveSystem live(asLoginItem, *session);
    OrvelApp::AppDelegate delegate(live.appSystem());
    const auto quit = [&delegate](bool sessionEnds) {
        const auto code = sessionEnds ? std::optional(logOutCode) : std::nullopt;
        // `quit()` would first ask each window to close, and a badge or card refuses.
        if (delegate.applicationShouldTerminate(code)) QApplication::exit();
    };
    live.onQuit = [&quit] { quit(false); };
    live.onLeave = [] { QApplication::exit(); };
    live.onRestart = [&restart](const std::vector<std::string>& opened) {
        // As the session starts it, so that no window opens.
        restart = {std::string(OrvelSystem::LoginItem::argument)};
        restart->insert(restart->end(), opened.begin(), opened.end());
        QApplication::exit();
    };
    const OrvelApp::QuitSignals quitSignals(quit, [&delegate] { delegate.programFileChanged(); });
    desktop.setHandlers(
        {.reopen = [&delegate] { delegate.reopen(); },
         .open = [&delegate](const QStringList& opened) { delegate.open(toStrings(opened)); },
         .quit = [&quit] { quit(false); }});
    delegate.applicationDidFinishLaunching();
    if (!urls.isEmpty()) delegate.open(toStrings(urls));
    return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    // A core file would contain what is being typed.
    constexpr rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);

    OrvelSystem::ExitPipe::keep();

    std::optional<Arguments> restart;
    const int status = run(argc, argv, restart);
    if (restart) return become(OrvelSystem::ProgramFile::own().path, *restart);
    // A password check may still run on its thread and use objects that an orderly exit destroys.
    if (OrvelSystem::blockingCalls > 0) {
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}
