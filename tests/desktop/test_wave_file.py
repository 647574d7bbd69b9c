"""Reading into a wave file, and playing one."""

import os
import signal
import subprocess
import tempfile
import unittest

from bed import Atspi, Program, Recorder, forget_settings, keys, wait_for

LONG_TEXT = "The quick brown fox jumps over the lazy dog, and the dog sleeps on.\n" * 4500


def soxi(option, path):
    return subprocess.run(["soxi", option, path], check=True, text=True,
                          capture_output=True).stdout.strip()


class WaveFile(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        self.recorder = self.enterContext(Recorder())
        self.program = self.enterContext(Program())
        self.pane = self.program.text_pane()

    def save(self, text, name):
        path = os.path.join(self.folder, name)
        self.pane.text = text
        self.pane.caret = 0
        self.program.button("Read to File").press()
        self.program.choose_file(path)
        return path

    def check_reading_sounds(self):
        self.pane.caret = 0
        self.program.read()
        self.recorder.wait_for_sound()

    def test_a_file_has_the_chosen_format_and_can_be_played_and_reading_sounds_again(self):
        formats = self.program.find("combo box", description="Select voice format")
        formats.choose(17)
        path = self.save("One two three four five six seven.", "kept")
        message = self.program.wait_for_message()
        self.assertEqual(message.name, "File Saved")
        self.assertIn("WAV file successfully written!", self.program.answer(message))
        self.assertEqual(os.listdir(self.folder), ["kept"], "no ending is forced on a name")
        self.assertEqual([soxi(option, path) for option in ("-r", "-b", "-c")],
                         ["22050", "8", "2"])
        self.assertTrue(1.5 < float(soxi("-D", path)) < 6, soxi("-D", path))
        self.check_reading_sounds()
        self.program.wait_until_idle()
        self.recorder.wait_for_silence()

        self.program.button("Play File").press()
        self.program.choose_file(path)
        self.recorder.wait_for_sound()
        self.program.wait_until_idle()

    def long_save(self):
        """Begins one, and returns its file and progress bar once some of it is done."""
        path = self.save(LONG_TEXT, "long.wav")
        progress = self.program.find("progress bar")
        wait_for(lambda: progress.value > 0, "a share of the work")
        return path, progress

    def check_whole(self, path):
        seconds = float(soxi("-D", path))
        self.assertGreater(seconds, 1)
        self.assertAlmostEqual(os.path.getsize(path), 44 + seconds * 48000 * 4, delta=200)

    def test_a_long_save_shows_how_far_it_is_and_escape_ends_it_with_a_whole_file(self):
        path, progress = self.long_save()
        self.assertIn("Escape", progress.name)
        read = self.program.find_all("push button", "Read")[0]
        Atspi.Action.do_action(read.node, 0)  # nothing else of the program runs meanwhile
        keys("Escape")
        wait_for(lambda: not self.program.find_all("progress bar"), "the window goes away")
        self.program.wait_until_idle()
        self.assertIsNone(self.program.message())
        self.check_whole(path)
        self.check_reading_sounds()

    def test_the_system_ends_a_long_save_and_the_program_and_leaves_a_whole_file(self):
        path, _ = self.long_save()
        self.program.process.send_signal(signal.SIGTERM)
        self.program.answer(self.program.wait_for_message(), "No")  # to save the changed text
        self.assertEqual(self.program.process.wait(30), 0)
        self.check_whole(path)
