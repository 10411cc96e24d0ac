#include "OrvelModes/Linux/StatusNotifierTypes.h"

#include <QDBusMetaType>

namespace OrvelModes::StatusNotifier {

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
