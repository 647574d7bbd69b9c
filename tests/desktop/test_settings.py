"""What users have chosen is found again at the next start."""

import os
import unittest

from bed import Program, config_folder, forget_settings, wait_for


class Settings(unittest.TestCase):
    def start(self):
        program = self.enterContext(Program())
        return program, {
            "voice": program.find("combo box", description="Select one voice"),
            "format": program.find("combo box", description="Select voice format"),
            "speed": program.find("scroll bar", "Speed"),
            "volume": program.find("scroll bar", "Volume"),
            "automatic": program.find("check box", "Read clipboard Automatically")}

    def shown(self, program, panel):
        return (panel["voice"].name, panel["format"].name, panel["speed"].value,
                panel["automatic"].checked, program.panel("Speaker:"),
                program.panel("Speaking Speed:"))

    def test_every_choice_is_found_again_but_the_volume(self):
        forget_settings()
        program, panel = self.start()
        self.assertTrue(panel["automatic"].checked)
        self.assertEqual(panel["format"].name, "48kHz 16Bit Stereo")
        voice = panel["voice"].choose(3)
        panel["format"].choose(9)
        panel["speed"].drag_to_end(-1)
        panel["volume"].drag_to_end(-1)
        panel["automatic"].press()
        chosen = (voice, "12kHz 8Bit Stereo", -10, False, f"Speaker:  {voice}",
                  "Speaking Speed: -10")
        wait_for(lambda: self.shown(program, panel) == chosen, "the choices")
        wait_for(lambda: panel["volume"].value == 0, "the lowest volume")
        self.assertEqual(program.close(), 0)

        with open(os.path.join(config_folder, "setting1.txt"), "rb") as file:
            self.assertTrue(file.read().startswith(b'"\r\n12kHz 8Bit Stereo\r\n 3\r\n-10\r\n 0\r\n'))
        program, panel = self.start()
        self.assertEqual(self.shown(program, panel), chosen)
        self.assertEqual(panel["volume"].value, 100)
        self.assertEqual(program.close(), 0)
        self.assertEqual(program.messages, [])
