"""What screen readers find, and what can be done by them."""

import os
import unittest

from bed import Atspi, Program, forget_settings, keys, wait_for


class Assistance(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.program = self.enterContext(Program())

    def controls(self, window):
        """What can be used in the window, in reading order."""
        roles = ("push button", "check box", "combo box", "scroll bar", "text", "page tab")
        return [(part.role, part.name) for part in window.walk()
                if part.role in roles and part.showing]

    def do(self, role, name):
        """As an assistive technology does it: without mouse and keys."""
        control = self.program.find_all(role, name)[-1]
        wait_for(lambda: control.enabled, f"'{name}' can be used")
        Atspi.Action.do_action(control.node, 0)

    def test_everything_in_every_window_has_a_name(self):
        self.assertEqual(
            [item.role for item in self.program.application.walk()
             if item.role in ("menu", "menu item", "tool bar", "status bar") and not item.name], [])
        document = {name for _, name in self.controls(self.program.main_window())}
        self.assertLessEqual({"Read", "Stop", "Pause", "Speed", "Volume", "Reset", "Text", "Dock",
                              "Read to File", "Play File", "Read Clipboard", "New", "Open", "Save",
                              "Save Clipboard to File", "Read clipboard Automatically"}, document)
        self.assertNotIn("", document)
        for item, button, expected in (
                ("Find and Replace", "Cancel",
                 {"Find", "Replace..", "Replace All", "Cancel", "Replace with", "Match Case",
                  "Find Whole Word Only"}),
                ("Voice tag", "OK", {"OK", "Help"}), ("Speed tag", "OK", {"OK", "Help"}),
                ("Silence tag", "OK", {"OK", "Help", "Silence Time"}),
                ("About", "Close", {"Close"})):
            self.do("menu item", item)
            last = self.program.find("push button", button)
            window = self.program.dialog("Tessavox")
            names = [name for _, name in self.controls(window)]
            self.assertLessEqual(expected, set(names), item)
            self.assertNotIn("", names, item)
            self.assertTrue(any(part.has(Atspi.StateType.FOCUSED) for part in window.walk()), item)
            last.press()
            wait_for(lambda: not last.showing, f"the window of '{item}' is closed")
        self.do("push button", "Dock")
        self.program.find("push button", "Show Software")
        self.assertEqual([name for _, name in self.controls(self.program.dialog("Tessavox"))],
                         ["Read Clipboard", "Stop", "Pause", "Read to File", "Play File",
                          "Show Software"])

    def test_a_text_is_read_paused_stopped_and_saved_without_a_screen(self):
        pane = self.program.text_pane()
        pane.text = "One two three four five six seven eight nine ten."
        pane.caret = 0
        self.do("push button", "Read")
        wait_for(lambda: pane.selected.strip() == "two", "it is read")
        self.do("push button", "Pause")
        self.program.find("push button", "Resume")
        self.do("push button", "Resume")
        wait_for(lambda: pane.selected.strip() == "four", "it goes on")
        self.do("push button", "Stop")
        self.program.wait_until_idle()
        path = os.path.join(os.environ["HOME"], "kept.txt")
        keys("alt+f", "a")
        self.program.choose_file(path)
        wait_for(lambda: os.path.exists(path), "the file")
