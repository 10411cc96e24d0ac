#include "OrvelModes/Linux/ContextMenu.h"

#include <QAction>
#include <QKeySequence>

#include "OrvelModes/Linux/MenuRowText.h"

namespace OrvelModes {

namespace {

QKeySequence keySequence(const StatusMenuEntry& entry) {
    auto keys = MenuRowText::keys(entry);
    // Qt's own names of these two.
    keys.replaceInStrings(QStringLiteral("Control"), QStringLiteral("Ctrl"));
    keys.replaceInStrings(QStringLiteral("Super"), QStringLiteral("Meta"));
    return QKeySequence(keys.join(u'+'));
}

}  // namespace

void ContextMenu::show(QPoint at) {
    controller_.menuNeedsUpdate();
    menu_ = std::make_unique<QMenu>();
    add(*menu_, controller_.menu());
    menu_->popup(at);
}

void ContextMenu::add(QMenu& menu, const std::vector<StatusMenuEntry>& entries) {
    for (const auto& entry : entries) {
        if (std::holds_alternative<StatusMenuEntry::Separator>(entry.kind)) {
            menu.addSeparator();
            continue;
        }
        // Qt reads an ampersand as the mark of an access key.
        const QString title = MenuRowText::title(entry).replace(u'&', QStringLiteral("&&"));
        QAction* row = nullptr;
        if (std::holds_alternative<StatusMenuEntry::Submenu>(entry.kind)) {
            auto* const submenu = menu.addMenu(title);
            add(*submenu, entry.children);
            row = submenu->menuAction();
        } else {
            row = menu.addAction(title);
        }
        row->setCheckable(entry.checked);
        row->setChecked(entry.checked);
        row->setEnabled(entry.enabled);
        row->setShortcut(keySequence(entry));
        row->setShortcutVisibleInContextMenu(true);
        if (const auto* const action = entry.action())
            QObject::connect(
                row, &QAction::triggered, row,
                [this, chosen = *action] { controller_.perform(chosen); }, Qt::QueuedConnection);
    }
}

}  // namespace OrvelModes
