#pragma once

#include <QString>
#include <QStringList>

#include "OrvelModes/StatusItem/StatusMenu.h"

/// The text of a row of the plain menu, with this desktop's terms.
namespace OrvelModes::MenuRowText {

/// Ampersands and underscores are not escaped.
QString title(const StatusMenuEntry& entry);

/// The keys of the row's global shortcut, with the names that the bus uses: "Super", "Alt", "l".
/// Empty for a row without one. The key equivalents of Settings and Quit work only in a menu bar,
/// which does not exist here.
QStringList keys(const StatusMenuEntry& entry);

}  // namespace OrvelModes::MenuRowText
