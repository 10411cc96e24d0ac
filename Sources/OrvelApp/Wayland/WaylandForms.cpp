#include "OrvelApp/Wayland/WaylandForms.h"

#include <QPointF>
#include <utility>

#include <unistd.h>

#include "OrvelApp/Wayland/SwayCovers.h"
#include "OrvelLock/Wayland/WaylandLock.h"
#include "OrvelModes/Linux/LiveStatusItem.h"
#include "OrvelModes/Wayland/LayerForms.h"
#include "OrvelSystem/Linux/PortalHotkeys.h"
#include "OrvelSystem/Wayland/Compositor.h"
#include "OrvelSystem/Wayland/IdleTime.h"
#include "OrvelSystem/Wayland/Outputs.h"
#include "OrvelSystem/Wayland/Sway.h"
#include "OrvelSystem/Wayland/SwayHotkeys.h"
#include "OrvelSystem/Workspace.h"

namespace OrvelApp {

using namespace OrvelModes;
using namespace OrvelSystem;

namespace {

/// The objects that the forms share.
struct Session {
    explicit Session(MainLoop& loop) : idle(compositor, loop) {}

    Compositor compositor;
    Outputs outputs;
    OrvelLock::SessionLock lock{compositor};
    IdleTime idle;
    /// Null in a session without sway.
    std::shared_ptr<Sway> sway = Sway::shared();
};

/// For a session that does not permit a program to register global shortcuts.
class NoHotkeys final : public HotkeyPlatform {
  public:
    void installEventHandler(std::function<void(std::uint32_t)>) override {}
    void unregisterHotKey(HotkeyRef) override {}
};

/// For a session that reports nothing about the windows of other programs.
CoverSystem noCovers(MainLoop& loop, OrvelAuth::PasswordVerifying& verifier) {
    using namespace OrvelCovers;
    const std::int64_t ownPID = getpid();
    CoverSystem covers{
        .makeSurface = [](const auto&, auto, auto) { return nullptr; },
        .sources = {.windows = [] { return std::vector<OrvelCore::WindowInfo>(); },
                    .windowNumbers = [] { return std::vector<OrvelCore::WindowID>(); },
                    .windowBounds =
                        [](const auto&) {
                            return std::map<OrvelCore::WindowID, OrvelCore::Rect>();
                        },
                    .displays = [] { return std::vector<OrvelCore::Rect>(); },
                    .activePID = [] { return std::optional<std::int64_t>(); },
                    .peekPoint = [] { return std::optional<OrvelCore::Point>(); },
                    .mouseDown = [] { return false; },
                    .now = [&loop] { return loop.uptime(); },
                    .ownPID = ownPID},
        .watcherReads = {.numbers = [] { return std::vector<OrvelCore::WindowID>(); },
                         .bounds =
                             [](const auto&) {
                                 return std::map<OrvelCore::WindowID, OrvelCore::Rect>();
                             },
                         .button = [] { return false; },
                         .option = [] { return false; },
                         .observe = [](const auto&) { return nullptr; }},
        .badges = {},
        .appLock = AppLockSystem::live(loop, verifier, ownPID),
        .running = RunningApp::regular,
        .observeWorkspace = [](const auto&) { return nullptr; }};
    covers.appLock.activateOrvel = [] {};
    covers.appLock.orvelIsActive = [] { return false; };
    return covers;
}

/// For the same kind of session.
FocusBlurSystem noFocusBlur() {
    FocusBlurSystem system;
    system.windows = [] { return std::vector<OrvelCore::WindowInfo>(); };
    system.displays = [] { return std::vector<OrvelCore::Rect>(); };
    system.makeSurface = [] { return nullptr; };
    system.ownPID = getpid();
    system.reduceMotion = [] { return true; };
    system.frontPID = [] { return std::optional<std::int64_t>(); };
    return system;
}

/// A program does not know the position of the pointer, and a bar reports a click relative to
/// itself, so the panel is placed in the upper right corner of the first output.
StatusItemDesktop statusItemDesktop(Outputs& outputs) {
    return {.screens = [&outputs] { return outputs.frames(); },
            .workArea = [](const OrvelCore::Rect& screen) { return screen; },
            .pointer =
                [&outputs] {
                    const auto frames = outputs.frames();
                    if (frames.empty()) return OrvelCore::Point{};
                    return OrvelCore::Point{frames.front().x + frames.front().width - 1,
                                            frames.front().y};
                },
            .logical = [](OrvelCore::Point at) { return QPointF(at.x, at.y).toPoint(); },
            .clicksTellPlace = false};
}

}  // namespace

SessionForms makeWaylandForms(MainLoop& loop, OrvelAuth::PasswordVerifying& verifier) {
    const auto session = std::make_shared<Session>(loop);
    const auto& compositor = session->compositor;
    std::unique_ptr<HotkeyPlatform> hotkeys;
    if (session->sway)
        hotkeys = std::make_unique<SwayHotkeys>(session->sway->connection());
    else
        hotkeys = PortalHotkeys::open();
    const auto offered =
        OrvelCore::capabilities({.sessionLock = compositor.sessionLock != nullptr,
                                 .layerShell = compositor.layerShell != nullptr,
                                 .idleNotifier = compositor.idleNotifier != nullptr,
                                 .isSway = session->sway != nullptr,
                                 .shortcutsPortal = !session->sway && hotkeys});
    if (!hotkeys) hotkeys = std::make_unique<NoHotkeys>();
    return {
        .shared = session,
        .capabilities = offered,
        .hotkeys = std::move(hotkeys),
        .kiosk = OrvelLock::waylandKiosk(loop, session->lock),
        .blurSupport = {},
        .lockPresenter =
            [&loop, session](OrvelBlur::BlurBackend) {
                return OrvelLock::waylandLockPresenter(loop, session->lock, session->outputs);
            },
        .covers = offered.appCovers ? swayCovers(loop, verifier, session->sway, session->compositor,
                                                 session->outputs)
                                    : noCovers(loop, verifier),
        .quickBlur =
            [session](OrvelBlur::BlurBackend, ModeSystem::Look look,
                      std::function<bool()> macLocked) {
                return waylandQuickBlur(session->compositor, session->outputs, std::move(look),
                                        std::move(macLocked));
            },
        .focusBlur = [](auto, auto) { return noFocusBlur(); },
        .idleSeconds = [session] { return session->idle.seconds(); },
        .makeCornerPanel =
            [session] { return makeLayerCorner(session->compositor, session->outputs); },
        .screens = [session] { return session->outputs.frames(); },
        .observeScreens =
            [session](std::function<void()> changed) {
                session->outputs.onChanged = std::move(changed);
            },
        .toasts = waylandToasts(session->compositor, session->outputs),
        .menuPanel = waylandMenuPanel(session->compositor, session->outputs),
        .makeStatusItem = [session](StatusMenuController& menu) -> std::unique_ptr<StatusItem> {
            return std::make_unique<LiveStatusItem>(menu, statusItemDesktop(session->outputs));
        },
        .recorderHooks = waylandShortcutRecorder,
        .locksExclusively = true,
        .holdsLock = [session] { return session->lock.isWanted() || session->lock.isRefused(); },
    };
}

}  // namespace OrvelApp
