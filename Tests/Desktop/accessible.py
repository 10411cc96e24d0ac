"""Prints the elements of a program's windows as a screen reader gets them, in reading order. Each
line holds, separated by tabs: role, name, description, states, value, x, y, width, height.

    accessible.py PROGRAM
"""

import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

STATES = ["FOCUSED", "CHECKED", "ENABLED", "SELECTED", "EXPANDED", "EDITABLE", "SHOWING"]


def clean(text):
    return (text or "").replace("\t", " ").replace("\n", " ")


def line(node):
    states = node.get_state_set()
    names = [name.lower() for name in STATES
             if states.contains(getattr(Atspi.StateType, name))]
    value = ""
    if node.get_value_iface() is not None:
        value = f"{Atspi.Value.get_current_value(node):g}"
    elif node.get_text_iface() is not None:
        value = Atspi.Text.get_text(node, 0, -1)
    component = node.get_component_iface()
    area = component.get_extents(Atspi.CoordType.SCREEN) if component else Atspi.Rect()
    # Newer versions of the library call it "button".
    role = {"push button": "button"}.get(node.get_role_name(), node.get_role_name())
    fields = [role, clean(node.get_name()), clean(node.get_description()),
              ",".join(names), clean(value), area.x, area.y, area.width, area.height]
    return "\t".join(str(field) for field in fields)


def walk(node):
    try:
        if not node.get_state_set().contains(Atspi.StateType.SHOWING) and \
                node.get_role() != Atspi.Role.APPLICATION:
            return
        print(line(node))
        for index in range(node.get_child_count()):
            child = node.get_child_at_index(index)
            if child is not None:
                walk(child)
    except gi.repository.GLib.Error:
        pass  # the element disappeared


def main():
    Atspi.init()
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        program = desktop.get_child_at_index(index)
        if program is not None and program.get_name() == sys.argv[1]:
            walk(program)


main()
