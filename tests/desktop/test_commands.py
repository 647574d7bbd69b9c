"""What menus, the global keys and the dock bar do, from outside."""

import unittest

from bed import Program, forget_settings, keys, type_text, wait_for


class Commands(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.program = self.enterContext(Program())
        self.pane = self.program.text_pane()
        self.pane.text = "One bird and two birds."
        self.pane.click()

    def dialog(self, button):
        """The small window that has the button."""
        return self.program.find("push button", button)

    def test_find_and_replace_play_their_two_captions(self):
        keys("ctrl+Home", "ctrl+f")
        self.dialog("Find")
        type_text("bird")
        keys("Return")
        wait_for(lambda: self.pane.selected == "bird", "the first match")
        first = self.pane.selection
        self.program.find("push button", "Find Next").press()
        wait_for(lambda: self.pane.selection != first and self.pane.selected == "bird", "the next")
        self.program.find("push button", "Find Next").press()
        message = self.program.wait_for_message()
        self.assertEqual(self.program.answer(message), "The Specified Region Has Been Searched.")
        self.program.find("push button", "Cancel").press()

    def test_a_tag_is_put_in_and_obeyed(self):
        keys("ctrl+End", "alt+i", "i")
        self.dialog("OK")
        self.dialog("OK").press()
        wait_for(lambda: self.pane.text == 'One bird and two birds.<silence msec="500" /  > ', "tag")
        keys("ctrl+Home")
        words = self.program.follow_reading()
        self.assertEqual([word.strip() for word in words if "<" in word], [])

    def test_the_keys_work_over_another_program(self):
        keys("ctrl+F9")
        wait_for(lambda: not self.program.main_window().showing, "the window hides")
        keys("ctrl+F5")
        wait_for(lambda: self.program.main_window().showing, "the window comes back to read")
        wait_for(lambda: self.pane.selected == "bird", "words are read")
        keys("ctrl+F7")
        self.program.wait_until_idle()
        keys("ctrl+Up")
        wait_for(lambda: self.program.panel("Speaking Speed: 1"), "the speed")

    def test_the_dock_bar_takes_the_place_of_the_window(self):
        self.program.button("Dock").press()
        bar = self.program.find("push button", "Show Software")
        wait_for(lambda: not self.program.main_window().showing, "the window hides")
        bar.press()
        wait_for(lambda: self.program.main_window().showing, "the window comes back")


if __name__ == "__main__":
    unittest.main()
