#include "OrvelModes/Qt/MenuRowText.h"

#include "OrvelUI/Linux/Wording.h"

namespace OrvelModes::MenuRowText {

using namespace StatusMenuActions;

namespace {

template <class... Actions>
bool isAnyOf(const StatusMenuEntry& entry) {
    const auto* const action = entry.action();
    return action != nullptr && (std::holds_alternative<Actions>(*action) || ...);
}

}  // namespace

QString title(const StatusMenuEntry& entry) {
    // These titles contain app names, which must not be reworded, and no terms that need it.
    const bool verbatim = std::holds_alternative<StatusMenuEntry::Status>(entry.kind) ||
                          isAnyOf<LockFront, Unlock, PrivateApp>(entry);
    return QString::fromStdString(verbatim ? entry.title : OrvelUI::Wording::shown(entry.title));
}

QStringList keys(const StatusMenuEntry& entry) {
    using Modifiers = OrvelCore::Shortcut::Modifiers;
    if (entry.key.empty() || !isAnyOf<LockMac, LockFront, QuickBlur, FocusBlur>(entry)) return {};
    QStringList keys;
    const auto add = [&](Modifiers modifier, const char* name) {
        if (entry.modifiers.contains(modifier)) keys << QString::fromLatin1(name);
    };
    add(Modifiers::control, "Control");
    add(Modifiers::option, "Alt");
    add(Modifiers::shift, "Shift");
    add(Modifiers::command, "Super");
    return keys << QString::fromStdString(entry.key);
}

}  // namespace OrvelModes::MenuRowText
