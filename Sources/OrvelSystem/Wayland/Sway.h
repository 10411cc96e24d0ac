#pragma once

#include <QObject>
#include <filesystem>
#include <memory>
#include <vector>

#include "OrvelCore/SwayWindows.h"
#include "OrvelSystem/Wayland/SwayConnection.h"

namespace OrvelSystem {

/// A session on sway: its connection, and the windows that this program hides there. Everything
/// hidden comes back when the application quits, and what a killed program has hidden when the next
/// one starts. Main thread only.
class Sway {
  public:
    /// Null in a session without sway. Needs a `QCoreApplication`. All users share one object.
    static std::shared_ptr<Sway> shared();

    /// `record` is the file that says what is hidden.
    Sway(std::unique_ptr<SwayConnection> connection, std::filesystem::path record);
    ~Sway();
    Sway(const Sway&) = delete;
    Sway& operator=(const Sway&) = delete;

    SwayConnection& connection() { return *connection_; }

    /// All windows. A window that this object hides has the frame that it had before. Empty if sway
    /// does not answer.
    std::vector<OrvelCore::SwayWindow> windows();
    /// Removes the window from the screen.
    void hide(OrvelCore::WindowID id);
    /// Brings a hidden window back to its place.
    void show(OrvelCore::WindowID id);
    /// Whether the window was hidden, and somebody has taken it out of the scratchpad since.
    bool wasTakenOut(OrvelCore::WindowID id);
    void showAll();

  private:
    bool save() const;
    void read();

    std::unique_ptr<SwayConnection> connection_;
    std::filesystem::path record_;
    OrvelCore::SwayHidden hidden_;
    std::vector<OrvelCore::SwayWindow> tree_;  // as sway reported it last
    QObject context_;
};

}  // namespace OrvelSystem
