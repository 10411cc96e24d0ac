#include "OrvelUI/Qt/ControlAccessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "OrvelUI/Qt/KeycapsWidget.h"
#include "OrvelUI/Qt/MenuBarPictures.h"
#include "OrvelUI/Qt/MenuPanelRowWidget.h"
#include "OrvelUI/Qt/MenuPanelView.h"

namespace OrvelUI {

namespace {

using Kind = MenuPanelRow::Kind;

QAccessible::Role role(Kind kind) {
    switch (kind) {
        case Kind::header:
        case Kind::section:
            return QAccessible::Heading;
        case Kind::separator:
            return QAccessible::Separator;
        case Kind::prominent:
        case Kind::item:
        case Kind::choice:
        case Kind::footer:
            break;
    }
    return QAccessible::Grouping;
}

QAccessibleInterface* controlInterface(const QString&, QObject* object) {
    if (auto* caps = dynamic_cast<KeycapsWidget*>(object))
        return new QAccessibleWidget(caps, QAccessible::StaticText);
    if (auto* drawing = dynamic_cast<MenuBarDrawingWidget*>(object))
        return new QAccessibleWidget(drawing, QAccessible::Graphic);
    if (auto* view = dynamic_cast<MenuPanelView*>(object))
        return new QAccessibleWidget(view, QAccessible::Grouping);
    // Qt itself describes a row that is a button.
    auto* const row = dynamic_cast<MenuPanelRowWidget*>(object);
    if (row != nullptr && !row->isButton())
        return new QAccessibleWidget(row, role(row->content().kind));
    return nullptr;
}

}  // namespace

void installControlAccessibility() {
    [[maybe_unused]] static const bool once = [] {
        QAccessible::installFactory(controlInterface);
        return true;
    }();
}

}  // namespace OrvelUI
