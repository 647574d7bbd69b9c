"""What menus, the global keys and the dock bar do, from outside."""

import subprocess
import unittest

from bed import Program, forget_settings, keys, type_text, wait_for, xdotool


class Commands(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.program = self.enterContext(Program())
        self.pane = self.program.text_pane()
        self.pane.text = "One bird and two birds."
        self.pane.click()

    def wait_for_window(self, shows):
        wait_for(lambda: self.program.main_window().showing == shows, f"a window: {shows}")

    def test_a_tag_is_put_in_by_keys_and_obeyed(self):
        keys("ctrl+End", "alt+i", "i")
        self.program.button("OK").press()
        wait_for(lambda: self.pane.text == 'One bird and two birds.<silence msec="500" /  > ', "tag")
        keys("ctrl+Home")
        tag = self.pane.text.index("<")
        words = self.program.follow_reading()[1:]
        self.assertEqual([word for word in words[1:] if word[1] > tag], [], "the tag is no word")
        self.assertEqual(self.pane.selected, "birds")

    def test_find_is_typed_into_and_asked_by_the_return_key(self):
        keys("ctrl+Home", "ctrl+f")
        self.program.button("Find")
        type_text("bird")
        keys("Return")
        wait_for(lambda: self.pane.selected == "bird", "the first match")

    def test_the_keys_work_over_another_program(self):
        keys("ctrl+F9")
        self.wait_for_window(False)
        keys("ctrl+F5")
        self.wait_for_window(True)
        wait_for(lambda: self.pane.selected == "bird", "words are read")
        keys("ctrl+F7")
        self.program.wait_until_idle()
        keys("ctrl+Up")
        wait_for(lambda: self.program.panel("Speaking Speed: 1"), "the speed")

    def test_the_dock_bar_takes_the_place_of_the_window(self):
        self.program.button("Dock").press()
        bar = self.program.button("Show Software")
        self.wait_for_window(False)
        bar.press()
        self.wait_for_window(True)


if __name__ == "__main__":
    unittest.main()
