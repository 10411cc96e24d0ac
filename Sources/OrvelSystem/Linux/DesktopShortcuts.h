#pragma once

#include <span>

#include "OrvelCore/ShortcutRules.h"

namespace OrvelSystem::DesktopShortcuts {

/// The combinations that Linux desktops and the programs on them use as they are installed. The
/// most common use of a combination counts where desktops differ.
std::span<const OrvelCore::ReservedShortcut> reserved();

}  // namespace OrvelSystem::DesktopShortcuts
