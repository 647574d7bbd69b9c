"""What menus, the global keys and the dock bar do, from outside."""

import subprocess
import unittest

from bed import (RECORDER_RATE, SILENCE_PEAK, Program, Recorder, forget_settings, keys, type_text,
                 wait_for, xdotool)


def properties(*which):
    return subprocess.run(["xprop", *which], capture_output=True, text=True, check=True).stdout


class Commands(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.recorder = self.enterContext(Recorder())
        self.program = self.enterContext(Program())
        self.pane = self.program.text_pane()
        self.pane.text = "One bird and two birds."
        self.pane.click()

    def wait_for_window(self, shows):
        wait_for(lambda: self.program.main_window().showing == shows, f"a window: {shows}")

    def heard(self):
        """How many seconds the text sounds when it is read."""
        keys("ctrl+Home")
        begin = self.recorder.position()
        self.program.follow_reading()
        self.recorder.wait_for_silence()
        samples = self.recorder.samples(begin)
        loud = [at for at, sample in enumerate(samples) if sample > SILENCE_PEAK]
        return (loud[-1] - loud[0]) / RECORDER_RATE

    def test_each_tag_is_put_in_by_its_dialog_and_heard(self):
        plain = self.heard()
        voices = self.program.find_all("combo box")[0].children()[0].children()
        woman = next(voice.name for voice in voices if "female" in voice.name)
        rows = (("i", "700", "One <silence msec=\"700\" /  > bird", lambda s: s > plain + 0.5),
                ("s", "10", "One <rate speed=\"10\" > bird", lambda s: s < 0.8 * plain),
                ("v", woman, f"One <VOICE REQUIRED=\"NAME={woman}\" > bird", lambda s: s > plain / 2),
                ("p", None, "One <spell>bird</spell> and", lambda s: s > plain + 0.5))
        for key, value, text, is_obeyed in rows:
            self.pane.text = "One bird and two birds."
            self.pane.select(4, 4 if value else 8)
            keys("alt+i", key)
            if value:
                self.program.button("OK")
                keys("ctrl+a")
                type_text(value)
                self.program.button("OK").press()
            wait_for(lambda text=text: self.pane.text.startswith(text), text)
            self.pane.click()
            seconds = self.heard()
            self.assertTrue(is_obeyed(seconds), (text, seconds, plain))
            self.assertEqual(self.pane.selected, "birds")

    def test_the_keys_work_over_another_program(self):
        other = subprocess.Popen(["xev", "-geometry", "300x300+600+400"], stdout=subprocess.DEVNULL)
        self.addCleanup(other.wait)
        self.addCleanup(other.kill)
        wait_for(lambda: "Event Tester" in subprocess.run(
            ["xdotool", "getactivewindow", "getwindowname"], capture_output=True, text=True).stdout,
            "another program in front")
        locks = "Caps_Lock", "Num_Lock"
        self.addCleanup(xdotool, "key", *locks)
        xdotool("key", *locks, "ctrl+Up")
        wait_for(lambda: self.program.panel("Speaking Speed: 1"), "the speed")
        keys("ctrl+F9")
        self.wait_for_window(False)
        keys("ctrl+F5")
        self.wait_for_window(True)
        wait_for(lambda: self.pane.selected == "bird", "words are read")
        keys("ctrl+F7")
        self.program.wait_until_idle()

    def test_the_keys_work_while_a_menu_is_open_and_on_another_keyboard(self):
        speed = self.program.find("scroll bar", "Speed")
        keyboard = subprocess.run("xkbcomp -xkb $DISPLAY -", shell=True, check=True, text=True,
                                  capture_output=True).stdout
        other = keyboard.replace("<UP> = 111;", "").replace("<PGUP> = 112;",
                                                            "<PGUP> = 111; <UP> = 112;")
        self.assertIn("<UP> = 112;", other)
        keys("alt+c")
        item = self.program.find("menu item", "Speak")
        for change in "true", "xkbcomp -I -w0 - $DISPLAY", "setxkbmap -layout us":
            subprocess.run(change, shell=True, check=True, text=True, input=other)
            before = speed.value
            wait_for(lambda: xdotool("key", "ctrl+Up") or speed.value > before, change)
        self.assertTrue(item.showing)

    def test_every_menu_is_gone_through_by_the_keyboard(self):
        menus = [menu for menu in self.program.application.walk()
                 if menu.role == "menu bar"][0].children()
        names = [menu.name for menu in menus if menu.showing]
        self.assertEqual(names, ["File", "Control", "Edit", "Format", "Insert", "Website", "Window",
                                 "Help"])
        keys("alt+c", "Left")
        for name in names:
            menu = next(menu for menu in menus if menu.name == name)
            wait_for(lambda menu=menu: menu.children()[0].showing, f"the menu {name}")
            self.assertEqual([item.name for item in menu.children()
                              if item.role == "menu item" and not item.showing], [], name)
            keys("Right")
        keys("Escape", "Escape")
        self.pane.select(4, 8)
        keys("alt+i", "Left", "c", "u")  # Format, Change Case, UPPERCASE
        wait_for(lambda: self.pane.text == "One BIRD and two birds.", "large letters")

    def test_the_dock_bar_takes_the_place_of_the_window_and_is_dragged_to_the_edges(self):
        panel = subprocess.Popen(
            ["trayer", "--edge", "top", "--heighttype", "pixel", "--height", "40", "--SetDockType",
             "true", "--SetPartialStrut", "true"], stderr=subprocess.DEVNULL)
        self.addCleanup(panel.wait)
        self.addCleanup(panel.kill)
        wait_for(lambda: "0, 40" in properties("-root", "_NET_WORKAREA"), "a panel at the top")
        self.program.button("Dock").press()
        bar = self.program.button("Show Software")
        self.wait_for_window(False)
        self.assertGreater(bar.box[1], 40, "below the panel")
        gap = self.program.button("Read Clipboard").box
        x, y = gap[0] + gap[2] + 3, gap[1] + 8  # between two buttons

        def drag_by(dx, dy, steps=20):
            nonlocal x, y
            xdotool("mousemove", x, y, "mousedown", 1)
            for step in range(1, steps + 1):
                xdotool("mousemove", x + dx * step // steps, y + dy * step // steps)
            xdotool("mouseup", 1)
            x, y = x + dx, y + dy

        def place():
            return self.program.dialog("Tessavox").box[:2]
        def is_above():
            return "ABOVE" in properties("-name", "Tessavox", "_NET_WM_STATE")
        left, top = place()
        subprocess.run(["wmctrl", "-F", "-r", "Tessavox", "-b", "remove,above"], check=True)
        wait_for(lambda: not is_above(), "the user has it below other windows")
        drag_by(-100, 200)
        wait_for(lambda: place() == (left - 100, top + 200), "it follows the pointer")
        wait_for(is_above, "it stays above other windows")
        drag_by(8 - left + 100, 0, 1)  # within reach of the edge
        wait_for(lambda: place()[0] < 3, "the edge holds it")
        bar.press()
        self.wait_for_window(True)
