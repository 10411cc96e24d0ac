#pragma once

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

/// Returns the visible widget of this kind with this accessible name; null if there is none.
template <class Widget = QWidget>
Widget* named(QWidget& root, const QString& name) {
    for (auto* child : root.findChildren<QWidget*>())
        if (auto* found = dynamic_cast<Widget*>(child);
            found != nullptr && found->accessibleName() == name && found->isVisibleTo(&root))
            return found;
    return nullptr;
}

inline QAccessibleInterface& accessible(QWidget* widget) {
    return *QAccessible::queryAccessibleInterface(widget);
}

/// Presses and releases a key.
inline void press(QWidget& widget, int key) {
    for (const auto kind : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(kind, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    }
}
