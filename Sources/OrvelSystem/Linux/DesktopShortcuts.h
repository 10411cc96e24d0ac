#pragma once

#include <span>

#include "OrvelCore/ShortcutRules.h"

namespace OrvelSystem::DesktopShortcuts {

/// The combinations that Linux desktops and their programs use by default. Where desktops differ,
/// the table names the most common use.
std::span<const OrvelCore::ReservedShortcut> reserved();

}  // namespace OrvelSystem::DesktopShortcuts
