"""python3-dbusmock template: fprintd with one reader on which one finger is enrolled.

The test emits VerifyStatus on the device to simulate a scan.
"""

import dbus

BUS_NAME = "net.reactivated.Fprint"
MAIN_OBJ = "/net/reactivated/Fprint/Manager"
MAIN_IFACE = "net.reactivated.Fprint.Manager"
SYSTEM_BUS = True

DEVICE = "/net/reactivated/Fprint/Device/0"
DEVICE_IFACE = "net.reactivated.Fprint.Device"


def refuse_when(condition, error):
    return f"if {condition}: raise dbus.exceptions.DBusException(" \
           f"'{error}', name='net.reactivated.Fprint.Error.{error}')\n"


def load(mock, _parameters):
    mock.AddMethods(MAIN_IFACE, [
        ("GetDevices", "", "ao", f"ret = dbus.Array([dbus.ObjectPath('{DEVICE}')], signature='o')"),
        ("GetDefaultDevice", "", "o", f"ret = dbus.ObjectPath('{DEVICE}')"),
    ])
    claimed = "getattr(self, 'claimed', False)"
    verifying = "getattr(self, 'verifying', False)"
    mock.AddObject(DEVICE, DEVICE_IFACE, {
        "name": "Sample Reader",
        "num-enroll-stages": dbus.Int32(5),
        "scan-type": "press",
        "finger-present": False,
        "finger-needed": False,
    }, [
        ("ListEnrolledFingers", "s", "as",
         "ret = dbus.Array(['right-index-finger'], signature='s')"),
        ("Claim", "s", "", refuse_when(claimed, "AlreadyInUse") + "self.claimed = True"),
        ("Release", "", "", refuse_when(f"not {claimed}", "ClaimDevice") +
         "self.claimed = self.verifying = False"),
        ("VerifyStart", "s", "", refuse_when(f"not {claimed}", "ClaimDevice") +
         refuse_when(verifying, "AlreadyInUse") + "self.verifying = True"),
        ("VerifyStop", "", "", refuse_when(f"not {verifying}", "NoActionInProgress") +
         "self.verifying = False"),
        ("IsVerifying", "", "b", f"ret = {verifying}"),
    ])
