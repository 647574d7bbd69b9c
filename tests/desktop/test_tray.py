"""The icon in the tray: the way back to a hidden window, also where the tray comes late or goes."""

import subprocess
import unittest

from bed import Program, forget_settings, keys, wait_for, xdotool

TRAY = ["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "pixel", "--width", "100",
        "--heighttype", "pixel", "--height", "30"]
ICON = "1265", "945"  # of 1280 x 960


def windows():
    return subprocess.run(["xwininfo", "-root", "-tree"], capture_output=True, text=True).stdout


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
        xdotool("search", "--onlyvisible", "--name", "Tessavox -", "windowminimize")
        wait_for(lambda: not program.main_window().showing, "the window hides")
        for button in "1", "3":
            self.open_menu(program, button)
            wait_for(lambda: program.main_window().showing, "the window")
            keys("Escape")
        xdotool("search", "--onlyvisible", "--name", "Tessavox -", "windowminimize")
        wait_for(lambda: not program.main_window().showing, "the window hides")
        self.end_tray()
        wait_for(lambda: "Tessavox - [" in subprocess.run(
            ["wmctrl", "-l"], capture_output=True, text=True).stdout, "the window is in reach again")
        self.start_tray()  # as a panel does that is started again
        xdotool("search", "--onlyvisible", "--name", "Tessavox -", "windowminimize")
        wait_for(lambda: not program.main_window().showing, "the window hides")
