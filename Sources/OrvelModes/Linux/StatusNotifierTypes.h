#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// What the bus carries of status items and their menus. Each is one structure of the bus, its
/// fields in order.
namespace OrvelModes::StatusNotifier {

/// A picture, rows from the top, four bytes a pixel: alpha, red, green, blue.
struct Pixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;
};
using Pixmaps = QList<Pixmap>;

struct ToolTip {
    QString iconName;
    Pixmaps icon;
    QString title;
    QString text;
};

/// A menu's row with its properties.
struct Row {
    int id = 0;
    QVariantMap properties;
};
using Rows = QList<Row>;

/// A menu's row and the rows below it, each a `Layout`.
struct Layout {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;
};

/// Something that happened to a row, as a menu's host tells it.
struct Event {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint time = 0;
};
using Events = QList<Event>;

/// Once is enough; more does nothing.
void registerTypes();

}  // namespace OrvelModes::StatusNotifier

Q_DECLARE_METATYPE(OrvelModes::StatusNotifier::Pixmap)
Q_DECLARE_METATYPE(OrvelModes::StatusNotifier::ToolTip)
Q_DECLARE_METATYPE(OrvelModes::StatusNotifier::Row)
Q_DECLARE_METATYPE(OrvelModes::StatusNotifier::Layout)
Q_DECLARE_METATYPE(OrvelModes::StatusNotifier::Event)
