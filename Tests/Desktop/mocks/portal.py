"""python3-dbusmock template: a desktop portal whose user has asked for less motion."""

BUS_NAME = "org.freedesktop.portal.Desktop"
MAIN_OBJ = "/org/freedesktop/portal/desktop"
MAIN_IFACE = "org.freedesktop.portal.Settings"
SYSTEM_BUS = False


def load(mock, _parameters):
    mock.AddMethod(
        MAIN_IFACE, "ReadAll", "as", "a{sa{sv}}",
        "ret = {'org.freedesktop.appearance': {'reduced-motion': dbus.UInt32(1)}}")
