#include "OrvelSystem/Linux/X11Workspace.h"

#include <QGuiApplication>
#include <QIcon>
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <sys/syscall.h>
#include <unistd.h>

#include "OrvelSystem/WindowServer.h"

namespace OrvelSystem {

namespace {

constexpr int iconSize = 64;  // pixels
constexpr std::uint32_t iconicState = 3;
/// Words of an icon that a program hangs on its window: a few sizes up to 256.
constexpr std::uint32_t mostIconWords = 1 << 18;

xcb_connection_t* connection() {
    return X11::shared().connection();
}

std::shared_ptr<const Picture> pictureOf(const QImage& image) {
    if (image.isNull()) return nullptr;
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
    auto picture = std::make_shared<Picture>();
    picture->width = pixels.width();
    picture->height = pixels.height();
    for (int y = 0; y < pixels.height(); ++y) {
        const auto* const row = reinterpret_cast<const std::uint32_t*>(pixels.constScanLine(y));
        picture->pixels.insert(picture->pixels.end(), row, row + pixels.width());
    }
    return picture;
}

std::shared_ptr<const Picture> themedIcon(const std::string& name) {
    if (name.empty()) return nullptr;
    const auto text = QString::fromStdString(name);
    const QIcon icon = name.front() == '/' ? QIcon(text) : QIcon::fromTheme(text);
    if (icon.isNull()) return nullptr;
    return pictureOf(icon.pixmap(QSize(iconSize, iconSize), 1).toImage());
}

/// The picture that a program hangs on its window: of several sizes the smallest that is enough.
std::shared_ptr<const Picture> windowIcon(xcb_window_t window) {
    const auto words = X11::shared().property32(window, "_NET_WM_ICON", mostIconWords);
    std::size_t best = words.size();
    for (std::size_t at = 0; at + 2 < words.size();) {
        const std::size_t pixels = std::size_t{words[at]} * words[at + 1];
        if (words[at] == 0 || pixels == 0 || pixels > words.size() - at - 2) break;
        const bool isBetter =
            best == words.size() ||
            (words[best] < iconSize ? words[at] > words[best]
                                    : words[at] >= iconSize && words[at] < words[best]);
        if (isBetter) best = at;
        at += pixels + 2;
    }
    if (best == words.size()) return nullptr;
    auto picture = std::make_shared<Picture>();
    picture->width = static_cast<int>(words[best]);
    picture->height = static_cast<int>(words[best + 1]);
    const auto* const first = words.data() + best + 2;
    picture->pixels.assign(first, first + std::size_t{words[best]} * words[best + 1]);
    return picture;
}

std::string textProperty(xcb_window_t window, std::string_view name) {
    constexpr std::uint32_t words = 64;
    const XReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection(),
                               xcb_get_property(connection(), 0, window, X11::shared().atom(name),
                                                XCB_GET_PROPERTY_TYPE_ANY, 0, words),
                               nullptr));
    if (!reply || reply->format != 8) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

std::string firstLine(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

AppTraits traitsOf(std::int64_t pid, xcb_window_t window) {
    AppTraits traits;
    if (window != 0) {
        const auto both = textProperty(window, "WM_CLASS");
        const auto end = both.find('\0');
        traits.windowInstance = both.substr(0, end);
        if (end != std::string::npos) traits.windowClass = both.substr(end + 1).c_str();
        traits.gtkApplicationID = textProperty(window, "_GTK_APPLICATION_ID");
    }
    const auto process = "/proc/" + std::to_string(pid);
    traits.scope = appOfScope(firstLine(process + "/cgroup"));
    std::error_code error;
    traits.executable = std::filesystem::read_symlink(process + "/exe", error).filename().string();
    return traits;
}

void sendToRoot(xcb_window_t window, std::string_view type, std::uint32_t value) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = X11::shared().atom(type);
    message.data.data32[0] = value;
    xcb_send_event(connection(), 0, X11::shared().root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
}

}  // namespace

Workspace& Workspace::shared() {
    static X11Workspace workspace;
    return workspace;
}

X11Workspace::X11Workspace() {
    auto& x11 = X11::shared();
    x11.selectOnRoot(XCB_EVENT_MASK_PROPERTY_CHANGE);
    // Nobody else tells of windows then.
    if (!isManaged()) x11.selectOnRoot(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    events_ = x11.onEvent([this](const auto& event) { handle(event); });
    active_ = ActiveWindow::shared().observe([this](const ActiveWindow::App& app) {
        if (auto* const known = adopt(app.pid)) known->lastActive = app.window;
        tell([&](const Events& events) { events.activated(app.pid); });
    });
    readClients();
}

bool X11Workspace::isManaged() const {
    return !X11::shared().property32(X11::shared().root(), "_NET_SUPPORTING_WM_CHECK", 1).empty();
}

void X11Workspace::handle(const xcb_generic_event_t& event) {
    auto& x11 = X11::shared();
    switch (event.response_type & 0x7F) {
        case XCB_PROPERTY_NOTIFY: {
            const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            if (notify.window == x11.root()) {
                if (notify.atom == x11.atom("_NET_CLIENT_LIST")) readClients();
                if (notify.atom == x11.atom("_NET_CURRENT_DESKTOP"))
                    tell([](const Events& events) { events.activeSpaceChanged(); });
            } else if (notify.atom == x11.atom("WM_STATE")) {
                const auto client = std::ranges::find(clients_, notify.window, &Client::window);
                if (client == clients_.end()) break;
                const bool was = std::exchange(client->isIconic, isIconic(notify.window));
                if (was && !client->isIconic) tell([](const Events& events) { events.unhidden(); });
            }
            break;
        }
        case XCB_MAP_NOTIFY:
        case XCB_UNMAP_NOTIFY:
            if (!isManaged()) readClients();
            break;
        default:
            break;
    }
}

std::vector<xcb_window_t> X11Workspace::clientWindows() const {
    const auto& x11 = X11::shared();
    std::vector<xcb_window_t> windows;
    if (isManaged()) {
        const auto listed = X11::shared().property32(x11.root(), "_NET_CLIENT_LIST");
        windows.assign(listed.begin(), listed.end());
        return windows;
    }
    const auto onScreen = WindowServer::onScreenWindows();
    for (auto window = onScreen.rbegin(); window != onScreen.rend(); ++window) {
        if (window->layer == 0) windows.push_back(static_cast<xcb_window_t>(window->number));
    }
    return windows;
}

void X11Workspace::readClients() {
    const auto before = std::exchange(clients_, {});
    std::vector<std::int64_t> launched;
    for (const auto window : clientWindows()) {
        const auto known = std::ranges::find(before, window, &Client::window);
        const auto client = known != before.end() ? *known : describe(window);
        if (client.pid == 0 || client.pid == getpid()) continue;
        clients_.push_back(client);
        if (!client.isOrdinary || known != before.end()) continue;
        const bool isNew = !apps_.contains(client.pid);
        if (adopt(client.pid) != nullptr && isNew) launched.push_back(client.pid);
    }
    for (const auto pid : launched) tell([pid](const Events& events) { events.launched(pid); });
}

X11Workspace::Client X11Workspace::describe(xcb_window_t window) const {
    auto& x11 = X11::shared();
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection(), window, XCB_CW_EVENT_MASK, &mask);
    Client client{.window = window, .pid = processOf(window), .isIconic = isIconic(window)};
    for (const auto type : x11.property32(window, "_NET_WM_WINDOW_TYPE")) {
        if (type == x11.atom("_NET_WM_WINDOW_TYPE_DESKTOP") ||
            type == x11.atom("_NET_WM_WINDOW_TYPE_DOCK"))
            client.isOrdinary = false;
    }
    return client;
}

bool X11Workspace::isIconic(xcb_window_t window) const {
    const auto state = X11::shared().property32(window, "WM_STATE", 1);
    return !state.empty() && state.front() == iconicState;
}

X11Workspace::App* X11Workspace::adopt(std::int64_t pid) {
    if (pid <= 0 || pid == getpid()) return nullptr;
    if (const auto known = apps_.find(pid); known != apps_.end()) return &known->second;
    const int process = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    if (process < 0) return nullptr;
    auto& app = apps_[pid];
    app.process = process;
    app.end = std::make_unique<QSocketNotifier>(process, QSocketNotifier::Read);
    QObject::connect(app.end.get(), &QSocketNotifier::activated, [this, pid] { ended(pid); });
    return &app;
}

void X11Workspace::ended(std::int64_t pid) {
    const auto found = apps_.find(pid);
    if (found == apps_.end()) return;
    found->second.end->setEnabled(false);
    // Its notifier is the one that calls.
    found->second.end.release()->deleteLater();
    close(found->second.process);
    apps_.erase(found);
    std::erase_if(clients_, [pid](const Client& client) { return client.pid == pid; });
    tell([pid](const Events& events) { events.terminated(pid); });
}

const RunningApplication& X11Workspace::identify(std::int64_t pid, App& app) {
    if (app.identity) return *app.identity;
    const auto windows = windowsOf(pid);
    const auto traits = traitsOf(pid, windows.empty() ? 0 : windows.front());
    auto& identity = app.identity.emplace();
    identity.pid = pid;
    if (const auto* const entry = findEntry(entries(), traits)) {
        identity.bundleID = bundleIDForEntry(entry->id);
        identity.name = entry->name;
        return identity;
    }
    // Without an entry the program's own file stands for the app, so that it can still be told.
    if (!traits.executable.empty()) identity.bundleID = bundleIDForEntry(traits.executable);
    identity.name = traits.windowClass.empty() ? traits.executable : traits.windowClass;
    return identity;
}

const std::vector<DesktopEntry>& X11Workspace::entries() {
    // Apps are installed seldom, and asking for them all reads hundreds of files.
    constexpr double freshness = 30;
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const auto seconds = static_cast<double>(now.tv_sec);
    if (!entries_ || seconds - entriesRead_ > freshness) {
        entries_ = readDesktopEntries();
        entriesRead_ = seconds;
    }
    return *entries_;
}

const DesktopEntry* X11Workspace::entryOf(std::string_view bundleID) {
    const auto& all = entries();
    for (const auto& id : entriesForBundleID(bundleID)) {
        const auto entry = std::ranges::find(all, id, &DesktopEntry::id);
        if (entry != all.end()) return &*entry;
    }
    return nullptr;
}

std::vector<RunningApplication> X11Workspace::runningApplications() {
    std::vector<RunningApplication> running;
    for (const auto& client : clients_) {
        const auto app = apps_.find(client.pid);
        if (!client.isOrdinary || app == apps_.end()) continue;
        if (std::ranges::find(running, client.pid, &RunningApplication::pid) == running.end())
            running.push_back(identify(client.pid, app->second));
    }
    return running;
}

std::optional<RunningApplication> X11Workspace::application(std::int64_t pid) {
    auto* const app = adopt(pid);
    return app ? std::optional(identify(pid, *app)) : std::nullopt;
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() {
    const auto active = ActiveWindow::shared().current();
    if (!active || active->pid == 0) return std::nullopt;
    if (active->pid == getpid()) return RunningApplication{.pid = active->pid};
    return application(active->pid);
}

std::shared_ptr<const Picture> X11Workspace::icon(std::int64_t pid) {
    const auto app = apps_.find(pid);
    if (app == apps_.end()) return nullptr;
    if (const auto& bundleID = identify(pid, app->second).bundleID) {
        if (auto picture = icon(*bundleID)) return picture;
    }
    for (const auto window : windowsOf(pid)) {
        if (auto picture = windowIcon(window)) return picture;
    }
    return nullptr;
}

std::shared_ptr<const Picture> X11Workspace::icon(std::string_view bundleID) {
    if (const auto known = icons_.find(bundleID); known != icons_.end()) return known->second;
    const auto* const entry = entryOf(bundleID);
    auto picture = entry ? themedIcon(entry->icon) : nullptr;
    icons_.emplace(bundleID, picture);
    return picture;
}

std::vector<InstalledApplication> X11Workspace::installedApplications() {
    std::vector<InstalledApplication> installed;
    for (const auto& entry : entries()) {
        if (entry.isShown) installed.push_back({bundleIDForEntry(entry.id), entry.name});
    }
    std::ranges::sort(installed, {}, &InstalledApplication::name);
    return installed;
}

std::optional<std::string> X11Workspace::nameOfInstalled(std::string_view bundleID) {
    const auto* const entry = entryOf(bundleID);
    return entry ? std::optional(entry->name) : std::nullopt;
}

std::vector<xcb_window_t> X11Workspace::windowsOf(std::int64_t pid) const {
    std::vector<xcb_window_t> windows;
    for (const auto& client : clients_) {
        if (client.pid == pid) windows.push_back(client.window);
    }
    return windows;
}

bool X11Workspace::isActive(std::int64_t pid) {
    const auto active = ActiveWindow::shared().current();
    return active && active->pid == pid;
}

void X11Workspace::activate(std::int64_t pid) {
    const auto windows = windowsOf(pid);
    if (windows.empty()) return;
    const auto app = apps_.find(pid);
    const auto last = app == apps_.end() ? 0 : app->second.lastActive;
    const bool isThere = std::ranges::find(windows, last) != windows.end();
    ActiveWindow::shared().activate(isThere ? last : windows.back());
}

void X11Workspace::hide(std::int64_t pid) {
    const bool managed = isManaged();
    for (const auto window : windowsOf(pid)) {
        if (managed)
            sendToRoot(window, "WM_CHANGE_STATE", iconicState);
        else
            xcb_unmap_window(connection(), window);
    }
    X11::shared().flush();
}

void X11Workspace::terminate(std::int64_t pid) {
    const auto app = apps_.find(pid);
    if (app != apps_.end())
        syscall(SYS_pidfd_send_signal, app->second.process, SIGTERM, nullptr, 0);
}

std::shared_ptr<void> X11Workspace::observe(Events events) {
    auto owned = std::make_shared<Events>(std::move(events));
    observers_.push_back(owned);
    return owned;
}

void X11Workspace::tell(const std::function<void(const Events&)>& call) {
    std::erase_if(observers_, [](const auto& weak) { return weak.expired(); });
    const auto observers = observers_;
    for (const auto& weak : observers) {
        if (const auto observer = weak.lock()) call(*observer);
    }
}

}  // namespace OrvelSystem
