#pragma once

#include <QString>
#include <QStringList>

#include "OrvelModes/StatusItem/StatusMenu.h"

/// A row of the plain menu in this desktop's words.
namespace OrvelModes::MenuRowText {

/// Ampersands and underscores stand for themselves.
QString title(const StatusMenuEntry& entry);

/// The keys that do the same as the row from anywhere, as the bus names them: "Super", "Alt", "l".
/// Empty for a row without such keys. The equivalents of Settings and Quit are keys of a menu bar,
/// which there is none here.
QStringList keys(const StatusMenuEntry& entry);

}  // namespace OrvelModes::MenuRowText
