#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <tuple>

/// The D-Bus types of status items and their menus. Each is one D-Bus structure with its fields in
/// order.
namespace OrvelModes::StatusNotifier {

/// An image with its rows from the top and four bytes per pixel: alpha, red, green, blue.
struct Pixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;

    static auto fields(auto& value) { return std::tie(value.width, value.height, value.bytes); }
};
using Pixmaps = QList<Pixmap>;

struct ToolTip {
    QString iconName;
    Pixmaps icon;
    QString title;
    QString text;

    static auto fields(auto& value) {
        return std::tie(value.iconName, value.icon, value.title, value.text);
    }
};

/// A menu row with its properties.
struct Row {
    int id = 0;
    QVariantMap properties;

    static auto fields(auto& value) { return std::tie(value.id, value.properties); }
};
using Rows = QList<Row>;

/// A menu row and the rows below it, each of which is a `Layout`.
struct Layout {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;

    static auto fields(auto& value) { return std::tie(value.id, value.properties, value.children); }
};

/// An event on a row, as reported by the menu's host.
struct Event {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint time = 0;

    static auto fields(auto& value) {
        return std::tie(value.id, value.name, value.data, value.time);
    }
};
using Events = QList<Event>;

template <class Value>
concept Structure = requires(Value& value) {
    Value::fields(value);
};

template <Structure Value>
QDBusArgument& operator<<(QDBusArgument& argument, const Value& value) {
    argument.beginStructure();
    std::apply([&](const auto&... field) { (argument << ... << field); }, Value::fields(value));
    argument.endStructure();
    return argument;
}

template <Structure Value>
const QDBusArgument& operator>>(const QDBusArgument& argument, Value& value) {
    argument.beginStructure();
    std::apply([&](auto&... field) { (argument >> ... >> field); }, Value::fields(value));
    argument.endStructure();
    return argument;  // NOLINT(bugprone-return-const-ref-from-parameter): Qt's own signature.
}

/// Registers the types with Qt. Further calls do nothing.
void registerTypes();

}  // namespace OrvelModes::StatusNotifier

Q_DECLARE_METATYPE(OrvelModes::StatusNotifier::Pixmap)
Q_DECLARE_METATYPE(OrvelModes::StatusNotifier::ToolTip)
Q_DECLARE_METATYPE(OrvelModes::StatusNotifier::Row)
Q_DECLARE_METATYPE(OrvelModes::StatusNotifier::Layout)
Q_DECLARE_METATYPE(OrvelModes::StatusNotifier::Event)
