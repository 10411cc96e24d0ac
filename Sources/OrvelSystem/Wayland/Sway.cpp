#include "OrvelSystem/Wayland/Sway.h"

#include <QCoreApplication>
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "OrvelCore/AppFolders.h"
#include "OrvelCore/AtomicFile.h"

namespace OrvelSystem {

using OrvelCore::SwayHidden;
using OrvelCore::SwayWindow;
using OrvelCore::WindowID;

std::shared_ptr<Sway> Sway::shared() {
    static std::weak_ptr<Sway> existing;
    auto sway = existing.lock();
    if (sway) return sway;
    auto connection = SwayConnection::open();
    if (!connection) return nullptr;
    existing = sway = std::make_shared<Sway>(std::move(connection),
                                             OrvelCore::dataFolder() / "hidden-windows.json");
    return sway;
}

Sway::Sway(std::unique_ptr<SwayConnection> connection, std::filesystem::path record)
    : connection_(std::move(connection)), record_(std::move(record)) {
    // The path of the socket contains the process ID of sway.
    const char* const socket = std::getenv("SWAYSOCK");
    hidden_ = SwayHidden::decode(OrvelCore::readFile(record_).value_or(std::string()),
                                 socket ? socket : "");
    showAll();
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &context_, [this] {
        showAll();
        connection_->stopEvents();
    });
}

Sway::~Sway() = default;

void Sway::read() {
    const auto tree = connection_->ask(SwayConnection::Message::tree);
    if (!tree) return;
    tree_ = OrvelCore::swayWindows(*tree);
    const bool anyGone =
        std::erase_if(hidden_.windows, [this](const auto& entry) {
            return std::ranges::find(tree_, entry.first, &SwayWindow::id) == tree_.end();
        }) > 0;
    if (anyGone) (void)save();
}

std::vector<SwayWindow> Sway::windows() {
    read();
    auto windows = tree_;
    for (auto& window : windows) {
        const auto hidden = hidden_.windows.find(window.id);
        if (hidden != hidden_.windows.end() && !window.isShown())
            window.frame = hidden->second.frame;
    }
    // What the user keeps in the scratchpad is not on the screen.
    std::erase_if(windows, [this](const SwayWindow& window) {
        return !window.isShown() && !hidden_.windows.contains(window.id);
    });
    return windows;
}

void Sway::hide(WindowID id) {
    const auto found = std::ranges::find(tree_, id, &SwayWindow::id);
    if (found == tree_.end()) return;
    // Kept from the first time, because the scratchpad makes a window floating.
    // The record is written first. If that fails, the window is hidden nevertheless.
    if (hidden_.windows.emplace(id, *found).second) (void)save();
    connection_->run(SwayHidden::hide(id));
    read();
}

void Sway::show(WindowID id) {
    read();
    const auto hidden = hidden_.windows.find(id);
    if (hidden == hidden_.windows.end()) return;
    const auto now = std::ranges::find(tree_, id, &SwayWindow::id);
    const auto commands = SwayHidden::show(hidden->second, now != tree_.end() && now->isShown());
    // A window that could not be brought back stays in the record.
    if (!commands.empty() && !connection_->run(commands)) return;
    hidden_.windows.erase(hidden);
    (void)save();
}

bool Sway::wasTakenOut(WindowID id) {
    const auto now = std::ranges::find(tree_, id, &SwayWindow::id);
    return hidden_.windows.contains(id) && now != tree_.end() && now->isShown();
}

void Sway::showAll() {
    read();
    const auto hidden = hidden_.windows;
    for (const auto& [id, window] : hidden) show(id);
    std::error_code ignored;
    if (hidden_.windows.empty()) std::filesystem::remove(record_, ignored);
}

bool Sway::save() const {
    return OrvelCore::writeAtomically(record_, hidden_.encoded()).has_value();
}

}  // namespace OrvelSystem
