"""A typical application window: `tour-app.py mail|notes|ledger|editor ICON X Y`."""
import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GLib, Gtk, Pango

STYLE = """
* { font-family: Inter, Cantarell, sans-serif; font-size: 15px; }
window { background: #ffffff; color: #24262b; }
.side { background: #f2f1f5; padding: 10px; }
.side row { padding: 9px 12px; border-radius: 9px; }
.side row.chosen { background: #3b6fd4; color: #ffffff; }
.faint { opacity: 0.6; font-size: 13px; }
.strong { font-weight: 600; }
.page .title { font-size: 25px; font-weight: 700; }
decoration { padding: 0; border: none; box-shadow: none; }
.page { padding: 28px 34px; }
.paper { background: #fff8dc; }
.paper label { color: #4a412c; }
.total { border-top: 1px solid #d9dbe2; padding-top: 12px; }
.code { background: #171a23; }
.code label { font-family: "DejaVu Sans Mono", monospace; font-size: 14px; color: #c9d4e3; }
.code .keyword { color: #8fb7ff; }
"""

MAILS = [
    ("Margaret Oduya", "Salary review, confidential", "9:41"),
    ("Tomas Brandt", "Re: The offer", "9:12"),
    ("Dr. Weiss", "Your test results", "Yesterday"),
    ("Harbour Bank", "Statement for October", "Yesterday"),
    ("Anna", "Saturday?", "Tuesday"),
    ("Lindqvist & Partner", "Draft of the contract", "Monday"),
]
MESSAGE = """Hello,

here are the figures for the third quarter. Please keep
them to yourself until the board has met on Monday.

Engineering grows by four, Design by one. The offer to
Tomas goes out on Thursday, at the upper end of what we
discussed.

Margaret"""
NOTES = """•  call the landlord about the lease
•  passport: renew before June
•  Anna’s birthday, reserve a table
•  ask Dr. Weiss about the results

Summer house
IBAN  DE02 1203 0000 0000 2020 51
Alarm  4471, then the green key"""
LEDGER = [
    ("Rent", "Flat, November", "1 240.00"),
    ("Insurance", "Household", "86.40"),
    ("Dr. Weiss", "Consultation", "145.00"),
    ("Groceries", "Market hall", "212.35"),
    ("Savings", "Summer house", "600.00"),
    ("Gift", "Anna", "75.00"),
]
CODE = [
    ("double ", "Backoff::cooldown(int failures) const {"),
    ("    if ", "(failures < freeAttempts) return 0;"),
    ("    const ", "int step = failures - freeAttempts;"),
    ("    return ", "schedule[std::min(step, last)];"),
    ("", "}"),
    ("", ""),
    ("TEST", "(Backoff, GrowsToItsLimit) {"),
    ("    const ", "Backoff backoff{5, {60, 300, 900}};"),
    ("    EXPECT_EQ", "(backoff.cooldown(4), 0);"),
    ("    EXPECT_EQ", "(backoff.cooldown(5), 60);"),
    ("    EXPECT_EQ", "(backoff.cooldown(99), 900);"),
    ("", "}"),
]


def label(text, *classes, wide=False):
    made = Gtk.Label(label=text, xalign=0, yalign=0)
    made.set_hexpand(wide)
    made.set_ellipsize(Pango.EllipsizeMode.END if wide else Pango.EllipsizeMode.NONE)
    for name in classes:
        made.get_style_context().add_class(name)
    return made


def box(vertical, spacing, *children, style=None):
    kind = Gtk.Orientation.VERTICAL if vertical else Gtk.Orientation.HORIZONTAL
    made = Gtk.Box(orientation=kind, spacing=spacing)
    for child in children:
        made.add(child)
    if style:
        # A GtkBox has no window of its own, so it draws no background.
        holder = Gtk.Frame(shadow_type=Gtk.ShadowType.NONE)
        for name in style.split():
            holder.get_style_context().add_class(name)
        holder.add(made)
        return holder
    return made


def mail():
    side = Gtk.ListBox(selection_mode=Gtk.SelectionMode.NONE)
    for index, (sender, subject, when) in enumerate(MAILS):
        head = box(False, 8, label(sender, "strong", wide=True), label(when, "faint"))
        row = Gtk.ListBoxRow()
        row.add(box(True, 3, head, label(subject, "faint", wide=True)))
        if index == 0:
            row.get_style_context().add_class("chosen")
        side.add(row)
    side.get_style_context().add_class("side")
    side.set_size_request(290, -1)
    page = box(True, 14, label(MAILS[0][1], "title"), label("Margaret Oduya  to you", "faint"),
               label(MESSAGE), style="page")
    page.set_hexpand(True)
    return box(False, 0, side, page), (860, 520)


def notes():
    return box(True, 16, label("Monday", "title"), label(NOTES), style="page paper"), (430, 340)


def ledger():
    grid = Gtk.Grid(row_spacing=15, column_spacing=34)
    for row, (name, what, amount) in enumerate(LEDGER):
        grid.attach(label(name, "strong"), 0, row, 1, 1)
        grid.attach(label(what, "faint", wide=True), 1, row, 1, 1)
        sum_ = label(amount)
        sum_.set_xalign(1)
        grid.attach(sum_, 2, row, 1, 1)
    total = box(False, 0, label("November", "strong", wide=True), label("2 358.75", "strong"),
                style="total")
    return box(True, 20, label("Accounts", "title"), grid, total, style="page"), (560, 380)


def editor():
    lines = [box(False, 0, label(first, "keyword"), label(rest)) for first, rest in CODE]
    return box(True, 6, *lines, style="page code"), (640, 360)


def main():
    name, icon, x, y = sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4])
    GLib.set_prgname(name)
    Gdk.set_program_class(name.capitalize())
    style = Gtk.CssProvider()
    style.load_from_data(STYLE.encode())
    Gtk.StyleContext.add_provider_for_screen(Gdk.Screen.get_default(), style,
                                             Gtk.STYLE_PROVIDER_PRIORITY_APPLICATION)
    content, size = {"mail": mail, "notes": notes, "ledger": ledger, "editor": editor}[name]()
    window = Gtk.Window(title=name.capitalize())
    window.set_icon_from_file(icon)
    window.set_default_size(*size)
    if Gdk.Screen.get_default().is_composited():
        window.set_titlebar(Gtk.HeaderBar(title=name.capitalize(), show_close_button=True))
    window.add(content)
    window.connect("destroy", Gtk.main_quit)
    window.show_all()
    window.move(x, y)
    Gtk.main()


main()
