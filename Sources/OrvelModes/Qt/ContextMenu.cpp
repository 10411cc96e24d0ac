#include "OrvelModes/Qt/ContextMenu.h"

#include <QAction>

#include "OrvelModes/Qt/MenuRowText.h"

namespace OrvelModes {

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
        // Qt treats an ampersand as the prefix of an access key and shows text after a tab as keys.
        // Real Qt shortcuts would take the keys and show other names for them.
        QString title = MenuRowText::title(entry).replace(u'&', QStringLiteral("&&"));
        if (auto keys = MenuRowText::keys(entry); !keys.isEmpty()) {
            keys.last() = keys.last().toUpper();
            title += u'\t' + keys.join(u'+');
        }
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
        if (const auto* const action = entry.action())
            QObject::connect(
                row, &QAction::triggered, row,
                [this, chosen = *action] { controller_.perform(chosen); }, Qt::QueuedConnection);
    }
}

}  // namespace OrvelModes
