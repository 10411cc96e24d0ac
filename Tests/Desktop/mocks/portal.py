"""python3-dbusmock template: a desktop portal with the user's appearance settings."""

BUS_NAME = "org.freedesktop.portal.Desktop"
MAIN_OBJ = "/org/freedesktop/portal/desktop"
MAIN_IFACE = "org.freedesktop.portal.Settings"
SYSTEM_BUS = False


def load(mock, parameters):
    """`parameters` are appearance settings by name; the default is reduced motion."""
    wishes = ", ".join(f"{name!r}: dbus.UInt32({int(value)})"
                       for name, value in (parameters or {"reduced-motion": 1}).items())
    mock.AddMethod(
        MAIN_IFACE, "ReadAll", "as", "a{sa{sv}}",
        f"ret = {{'org.freedesktop.appearance': {{{wishes}}}}}")
