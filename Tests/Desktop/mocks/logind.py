"""python3-dbusmock template: the part of logind that a screen locker uses.

It has one X11 session, "1". Like the real service, it sends signals from the session's own path
only, whatever path or manager call was used.
"""

import os
import pwd

import dbus
from dbusmock import mockobject
from gi.repository import GLib

BUS_NAME = "org.freedesktop.login1"
MAIN_OBJ = "/org/freedesktop/login1"
MAIN_IFACE = "org.freedesktop.login1.Manager"
SYSTEM_BUS = True

SESSION_IFACE = "org.freedesktop.login1.Session"
USER_IFACE = "org.freedesktop.login1.User"
SESSION_ID = "1"
SESSION = "/org/freedesktop/login1/session/_31"
ALIASES = [f"/org/freedesktop/login1/session/{name}" for name in ("auto", "self", SESSION_ID)]

inhibitors = {}


def load(mock, _parameters):
    uid = os.getuid()
    user = f"/org/freedesktop/login1/user/_{uid}"
    to_session = f"objects['{SESSION}'].EmitSignal('{SESSION_IFACE}', "
    mock.AddMethods(MAIN_IFACE, [
        ("GetSessionByPID", "u", "o", f"ret = dbus.ObjectPath('{SESSION}')"),
        ("GetUser", "u", "o", f"ret = dbus.ObjectPath('{user}')"),
        ("GetUserByPID", "u", "o", f"ret = dbus.ObjectPath('{user}')"),
        ("LockSession", "s", "", to_session + "'Lock', '', [])"),
        ("LockSessions", "", "", to_session + "'Lock', '', [])"),
        ("UnlockSession", "s", "", to_session + "'Unlock', '', [])"),
        ("UnlockSessions", "", "", to_session + "'Unlock', '', [])"),
    ])
    mock.AddProperties(MAIN_IFACE, {"PreparingForSleep": False, "PreparingForShutdown": False,
                                    "BlockInhibited": ""})

    paths = [SESSION, *ALIASES]
    set_hint = f"for path in {paths!r}: objects[path].UpdateProperties(" \
               f"'{SESSION_IFACE}', {{'LockedHint': dbus.Boolean(args[0])}})"
    for path in paths:
        mock.AddObject(path, SESSION_IFACE, {
            "Id": SESSION_ID,
            "Name": pwd.getpwuid(uid).pw_name,
            "User": (dbus.UInt32(uid), dbus.ObjectPath(user)),
            "Type": "x11",
            "Class": "user",
            "State": "active",
            "Active": True,
            "Remote": False,
            "IdleHint": False,
            "LockedHint": False,
            "Seat": ("seat0", dbus.ObjectPath("/org/freedesktop/login1/seat/seat0")),
        }, [
            ("Lock", "", "", to_session + "'Lock', '', [])"),
            ("Unlock", "", "", to_session + "'Unlock', '', [])"),
            ("Activate", "", "", ""),
            ("SetIdleHint", "b", "", ""),
            ("SetLockedHint", "b", "", set_hint),
        ])
    mock.AddObject(user, USER_IFACE, {
        "UID": dbus.UInt32(uid),
        "Display": (SESSION_ID, dbus.ObjectPath(SESSION)),
        "Sessions": dbus.Array([(SESSION_ID, dbus.ObjectPath(SESSION))], signature="(so)"),
    }, [])


@dbus.service.method(MAIN_IFACE, in_signature="s", out_signature="o")
def GetSession(_self, _name):
    # On a machine with sessions of its own, the program asks for one of those.
    return dbus.ObjectPath(SESSION)


@dbus.service.method(MAIN_IFACE, in_signature="", out_signature="a(susso)")
def ListSessions(_self):
    session = mockobject.objects[SESSION]
    uid = session.Get(SESSION_IFACE, "User")[0]
    return [(SESSION_ID, uid, session.Get(SESSION_IFACE, "Name"), "seat0",
             dbus.ObjectPath(SESSION))]


def tell_of_inhibitors(manager):
    """Like the real service, signals even if the union of the inhibitors has not changed."""
    blocked = {what for entry in inhibitors.values() for what in entry[0].split(":")}
    manager.UpdateProperties(MAIN_IFACE, {"BlockInhibited": ":".join(sorted(blocked))})


@dbus.service.method(MAIN_IFACE, in_signature="ssss", out_signature="h", sender_keyword="sender")
def Inhibit(self, what, who, why, mode, sender=None):
    ours, theirs = os.pipe()
    daemon = dbus.SystemBus().get_object("org.freedesktop.DBus", "/org/freedesktop/DBus")
    pid = daemon.GetConnectionUnixProcessID(sender)
    inhibitors[ours] = (what, who, why, mode, dbus.UInt32(os.getuid()), dbus.UInt32(pid))
    tell_of_inhibitors(self)

    def dropped(fd, _condition):
        os.close(fd)
        del inhibitors[fd]
        tell_of_inhibitors(self)
        return False

    GLib.unix_fd_add_full(GLib.PRIORITY_HIGH, ours, GLib.IO_HUP, dropped)
    # The reply duplicates the descriptor. Close ours, or the end of the inhibitor would not be
    # noticed.
    GLib.idle_add(os.close, theirs)
    return dbus.types.UnixFd(theirs)


@dbus.service.method(MAIN_IFACE, in_signature="", out_signature="a(ssssuu)")
def ListInhibitors(_self):
    return dbus.Array(list(inhibitors.values()), signature="(ssssuu)")
