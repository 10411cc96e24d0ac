"""python3-dbusmock template: a desktop portal with the user's appearance settings and shortcuts.

It gives each shortcut the proposed keys, unless its description is "Refuse".
"""

import dbus

SHORTCUTS = "org.freedesktop.portal.GlobalShortcuts"

BUS_NAME = "org.freedesktop.portal.Desktop"
MAIN_OBJ = "/org/freedesktop/portal/desktop"
MAIN_IFACE = "org.freedesktop.portal.Settings"
SYSTEM_BUS = False


def load(mock, parameters):
    """`parameters` are appearance settings by name; the default is reduced motion."""
    wishes = ", ".join(f"{name!r}: dbus.UInt32({int(value)})"
                       for name, value in (parameters or {"reduced-motion": 1}).items())
    mock.AddProperties(SHORTCUTS, {"version": dbus.UInt32(1)})
    mock.AddMethod(
        MAIN_IFACE, "ReadAll", "as", "a{sa{sv}}",
        f"ret = {{'org.freedesktop.appearance': {{{wishes}}}}}")


def answer(mock, sender, options, results):
    place = sender[1:].replace(".", "_")
    path = f"{MAIN_OBJ}/request/{place}/{options['handle_token']}"
    mock.EmitSignalDetailed("org.freedesktop.portal.Request", "Response", "ua{sv}",
                            [dbus.UInt32(0), results], {"path": path})
    return dbus.ObjectPath(path)


@dbus.service.method(SHORTCUTS, in_signature="a{sv}", out_signature="o", sender_keyword="sender")
def CreateSession(self, options, sender=None):
    session = f"{MAIN_OBJ}/session/{options['session_handle_token']}"
    self.AddObject(session, "org.freedesktop.portal.Session", {}, [("Close", "", "", "")])
    return answer(self, sender, options, {"session_handle": session})


@dbus.service.method(SHORTCUTS, in_signature="oa(sa{sv})sa{sv}", out_signature="o",
                     sender_keyword="sender")
def BindShortcuts(self, session, shortcuts, _window, options, sender=None):
    self.session = session
    given = [(name, {"trigger_description": wish.get("preferred_trigger", "")})
             for name, wish in shortcuts if wish["description"] != "Refuse"]
    return answer(self, sender, options, {"shortcuts": dbus.Array(given, signature="(sa{sv})")})


@dbus.service.method(SHORTCUTS, in_signature="s", out_signature="")
def Press(self, name):
    self.EmitSignal(SHORTCUTS, "Activated", "osta{sv}", [self.session, name, 0, {}])
