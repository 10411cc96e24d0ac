#include "OrvelModes/Linux/StatusNotifierTypes.h"

#include <QDBusMetaType>
#include <tuple>

namespace OrvelModes::StatusNotifier {

namespace {

auto fields(auto& value) requires requires {
    value.bytes;
}
{ return std::tie(value.width, value.height, value.bytes); }
auto fields(auto& value) requires requires {
    value.iconName;
}
{ return std::tie(value.iconName, value.icon, value.title, value.text); }
auto fields(auto& value) requires requires {
    value.children;
}
{ return std::tie(value.id, value.properties, value.children); }
auto fields(auto& value) requires(
    requires { value.properties; } && !requires { value.children; }) {
    return std::tie(value.id, value.properties);
}
auto fields(auto& value) requires requires {
    value.data;
}
{ return std::tie(value.id, value.name, value.data, value.time); }

}  // namespace

template <class Value>
concept Structure = requires(Value& value) {
    fields(value);
};

template <Structure Value>
QDBusArgument& operator<<(QDBusArgument& argument, const Value& value) {
    argument.beginStructure();
    std::apply([&](const auto&... field) { (argument << ... << field); }, fields(value));
    argument.endStructure();
    return argument;
}

template <Structure Value>
const QDBusArgument& operator>>(const QDBusArgument& argument, Value& value) {
    argument.beginStructure();
    std::apply([&](auto&... field) { (argument >> ... >> field); }, fields(value));
    argument.endStructure();
    return argument;
}

void registerTypes() {
    [[maybe_unused]] static const bool once = [] {
        qDBusRegisterMetaType<Pixmap>();
        qDBusRegisterMetaType<Pixmaps>();
        qDBusRegisterMetaType<ToolTip>();
        qDBusRegisterMetaType<Row>();
        qDBusRegisterMetaType<Rows>();
        qDBusRegisterMetaType<Layout>();
        qDBusRegisterMetaType<Event>();
        qDBusRegisterMetaType<Events>();
        qDBusRegisterMetaType<QList<QDBusVariant>>();
        qDBusRegisterMetaType<QList<QStringList>>();
        qDBusRegisterMetaType<QList<int>>();
        return true;
    }();
}

}  // namespace OrvelModes::StatusNotifier
