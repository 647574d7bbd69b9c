"""What is chosen on the panel is there again at the next start, and lies in the files as promised."""

import os
import unittest

from bed import Program, config_folder, forget_settings, keys, wait_for


def content(name):
    with open(os.path.join(config_folder, name), "rb") as file:
        return file.read()


def write(name, data):
    with open(os.path.join(config_folder, name), "wb") as file:
        file.write(data)


class Settings(unittest.TestCase):
    def setUp(self):
        forget_settings()

    def panel(self, program):
        return {"voice": program.find("combo box", description="Select one voice"),
                "format": program.find("combo box", description="Select voice format"),
                "speed": program.find("scroll bar", "Speed"),
                "volume": program.find("scroll bar", "Volume"),
                "automatic": program.find("check box", "Read clipboard Automatically")}

    def close(self, program):
        self.assertEqual(program.close(), 0)
        self.assertEqual(program.messages, [])

    def test_every_choice_is_found_again_but_the_volume(self):
        with Program() as program:
            panel = self.panel(program)
            voice = panel["voice"].choose(3)
            self.assertEqual(panel["format"].choose(9), "12kHz 8Bit Stereo")
            panel["speed"].drag_to_end(-1)
            wait_for(lambda: panel["speed"].value == -10, "the slowest speed")
            panel["volume"].drag_to_end(-1)
            wait_for(lambda: panel["volume"].value == 0, "the lowest volume")
            was_checked = panel["automatic"].checked
            panel["automatic"].press()
            wait_for(lambda: panel["automatic"].checked != was_checked, "the other state")
            self.assertEqual(program.panel("Speaker:"), f"Speaker:  {voice}")
            self.assertEqual(program.panel("Speaking Speed:"), "Speaking Speed: -10")
            self.close(program)
        with Program() as program:
            panel = self.panel(program)
            self.assertEqual(panel["voice"].name, voice)
            self.assertEqual(panel["format"].name, "12kHz 8Bit Stereo")
            self.assertEqual(panel["speed"].value, -10)
            self.assertEqual(panel["volume"].value, 100)
            self.assertNotEqual(panel["automatic"].checked, was_checked)
            self.assertEqual(program.panel("Speaker:"), f"Speaker:  {voice}")
            self.assertEqual(program.panel("Speaking Speed:"), "Speaking Speed: -10")
            self.close(program)

    def test_the_files_hold_these_bytes(self):
        with Program() as program:
            self.close(program)  # installs the shipped files
        write("setting1.txt", b'"\r\n16kHz 16Bit Mono\r\n 1\r\n 4\r\n 0\r\nhttp://a.example/\r\n"\r\n')
        write("setting2.txt", b'"\r\nDejaVu Sans\r\n 14\r\nTrue\r\n"\r\n')
        write("setting3.txt", b'"\r\nhttp://a.example/\r\n"\r\n')
        with Program() as program:
            panel = self.panel(program)
            self.assertEqual(panel["format"].choose(35), "48kHz 16Bit Stereo")
            panel["voice"].choose(2)
            panel["speed"].drag_to_end(-1)
            wait_for(lambda: panel["speed"].value == -10, "the slowest speed")
            self.close(program)
        self.assertEqual(content("setting1.txt"),
                         b'"\r\n48kHz 16Bit Stereo\r\n 2\r\n-10\r\n 0\r\nhttp://a.example/\r\n"\r\n')
        self.assertEqual(content("setting2.txt"), b'"\r\nDejaVu Sans\r\n 14\r\nTrue\r\n"\r\n')
        self.assertEqual(content("setting3.txt"), b'"\r\nhttp://a.example/\r\n"\r\n')

    def test_of_two_documents_the_one_closed_last_is_remembered(self):
        with Program() as program:
            program.button("New").press()
            wait_for(lambda: len(program.find_all("scroll bar", "Speed")) == 2, "two documents")
            second = program.find_all("scroll bar", "Speed")[1]
            second.drag_to_end(1)
            wait_for(lambda: second.value == 10, "the highest speed in the second one")
            keys("alt+f", "c")
            wait_for(lambda: len(program.find_all("scroll bar", "Speed")) == 1, "one document")
            self.assertIn(b"\r\n 10\r\n", content("setting1.txt"))
            self.close(program)
        self.assertEqual(content("setting1.txt").split(b"\r\n")[3], b" 0")
        with Program() as program:
            self.assertEqual(self.panel(program)["speed"].value, 0)

    def test_reset_brings_the_defaults_back(self):
        with Program() as program:
            panel = self.panel(program)
            first = panel["voice"].name
            panel["voice"].choose(1)
            panel["format"].choose(0)
            panel["speed"].drag_to_end(1)
            panel["volume"].drag_to_end(-1)
            wait_for(lambda: (panel["speed"].value, panel["volume"].value) == (10, 0), "both ends")
            program.button("Reset").press()
            wait_for(lambda: panel["speed"].value == 0, "speed 0")
            self.assertEqual(panel["voice"].name, first)
            self.assertEqual(panel["format"].name, "48kHz 16Bit Stereo")
            self.assertEqual(panel["volume"].value, 100)
            self.assertTrue(panel["automatic"].checked)
            self.assertEqual(program.panel("Speaking Speed:"), "Speaking Speed: 0")
            self.close(program)


if __name__ == "__main__":
    unittest.main()
