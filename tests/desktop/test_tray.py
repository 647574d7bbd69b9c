"""The icon in the tray: the way back to a hidden window, also where the tray comes late or goes."""

import subprocess
import unittest

from gi.repository import Gio

from bed import GLib, Program, forget_settings, keys, wait_for, xdotool

TRAY = ["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "pixel", "--width", "100",
        "--heighttype", "pixel", "--height", "30"]
ICON = "1265", "945"  # of 1280 x 960


def windows():
    return subprocess.run(["xwininfo", "-root", "-tree"], capture_output=True, text=True).stdout


def minimise():
    xdotool("search", "--onlyvisible", "--name", "Tessavox -", "windowminimize")


def is_in_task_bar():
    listed = subprocess.run(["wmctrl", "-l"], capture_output=True, text=True).stdout
    return "Tessavox - [" in listed


class BusTray:
    """Of the session bus: a service that is told of icons, and shows them while it has a host."""

    NAME, PATH = "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher"
    XML = f"""<node><interface name='{NAME}'>
        <method name='RegisterStatusNotifierItem'><arg type='s' direction='in'/></method>
        <property name='IsStatusNotifierHostRegistered' type='b' access='read'/>
        </interface></node>"""

    def __init__(self):
        self.has_host, self.icons = True, []
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.bus.register_object(
            self.PATH, Gio.DBusNodeInfo.new_for_xml(self.XML).interfaces[0],
            self.add_icon, lambda *_: GLib.Variant("b", self.has_host))
        Gio.bus_own_name_on_connection(self.bus, self.NAME, Gio.BusNameOwnerFlags.NONE)

    def add_icon(self, *call):
        self.icons.append(call[0])
        call[-1].return_value(None)

    def serves_until(self, condition, what):
        def served():
            GLib.MainContext.default().iteration(False)
            return condition()
        wait_for(served, what)

    def lose_host(self):
        self.has_host = False
        self.bus.emit_signal(None, self.PATH, self.NAME, "StatusNotifierHostUnregistered")


class Tray(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.tray = None
        self.addCleanup(self.end_tray)

    def start_tray(self):
        self.tray = subprocess.Popen(TRAY, stderr=subprocess.DEVNULL)
        wait_for(lambda: "22x28" in windows(), "an icon in the tray")

    def open_menu(self, program, button):
        """Clicks again where a click is lost on an icon that is just being placed."""
        entry = program.find_all("menu item", "Show Software")[0]
        for seconds in 5, 30:
            xdotool("mousemove", *ICON, "click", button)
            try:
                return wait_for(lambda: entry.showing, "the menu", seconds)
            except AssertionError as failure:
                missed = failure
        raise missed

    def end_tray(self):
        if self.tray:
            self.tray.terminate()
            self.tray.wait()

    def test_a_minimised_window_hides_as_long_as_an_icon_leads_back(self):
        program = self.enterContext(Program())
        self.start_tray()  # later than the program
        minimise()
        wait_for(lambda: not program.main_window().showing, "the window hides")
        for button in "1", "3":
            self.open_menu(program, button)
            wait_for(lambda: program.main_window().showing, "the window")
            keys("Escape")
        minimise()
        wait_for(lambda: not program.main_window().showing, "the window hides")
        self.end_tray()
        wait_for(is_in_task_bar, "the window is in reach again")
        self.start_tray()  # as a panel does that is started again
        minimise()
        wait_for(lambda: not program.main_window().showing, "the window hides")

    def test_a_tray_of_the_bus_counts_as_long_as_it_shows_icons(self):
        tray = BusTray()
        self.enterContext(Program())
        tray.serves_until(lambda: tray.icons, "an icon")
        minimise()
        tray.serves_until(lambda: not is_in_task_bar(), "the window hides")
        tray.lose_host()
        tray.serves_until(is_in_task_bar, "the window is in reach again")
