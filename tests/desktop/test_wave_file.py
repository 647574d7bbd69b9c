"""Reading into a wave file, and playing one."""

import os
import signal
import subprocess
import tempfile
import unittest

from bed import SILENCE_PEAK, Atspi, Program, Recorder, forget_settings, keys, wait_for

TEXT = "One two three four five six seven eight nine ten."
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
        self.pane.text = TEXT
        self.pane.caret = 0

    def save_as(self, path, button="Read to File"):
        self.program.button(button).press()
        self.program.choose_file(path)

    def test_the_file_has_the_chosen_format_and_the_whole_text(self):
        formats = {"8kHz 8Bit Mono": ("8000", "16", "1"),  # always was 16 bit
                   "22kHz 8Bit Stereo": ("22050", "8", "2"),
                   "48kHz 16Bit Stereo": ("48000", "16", "2")}
        for index, (name, expected) in zip((0, 17, 35), formats.items()):
            with self.subTest(name):
                path = os.path.join(self.folder, f"{index}.wav")
                formats_list = self.program.find("combo box", description="Select voice format")
                self.assertEqual(formats_list.choose(index), name)
                self.pane.caret = 0
                self.save_as(path)
                message = self.program.wait_for_message()
                self.assertEqual(message.name, "File Saved")
                self.assertIn("WAV file successfully written!", self.program.answer(message))
                self.assertEqual((soxi("-r", path), soxi("-b", path), soxi("-c", path)), expected)
                self.assertTrue(2 < float(soxi("-D", path)) < 8, soxi("-D", path))

    def long_save(self, name):
        """Begins one, and returns its file and progress bar once some of it is done."""
        path = os.path.join(self.folder, name)
        self.pane.text = LONG_TEXT
        self.pane.caret = 0
        self.save_as(path)
        progress = self.program.find("progress bar")
        wait_for(lambda: progress.value > 0, "a share of the work")
        return path, progress

    def check_whole(self, path):
        seconds = float(soxi("-D", path))
        self.assertGreater(seconds, 1)
        self.assertAlmostEqual(os.path.getsize(path), 44 + seconds * 48000 * 4, delta=200)

    def test_a_long_save_shows_how_far_it_is_and_escape_ends_it_with_a_whole_file(self):
        path, progress = self.long_save("long.wav")
        self.assertIn("Escape", progress.name)
        read = self.program.find_all("push button", "Read")[0]
        Atspi.Action.do_action(read.node, 0)  # nothing else of the program runs meanwhile
        keys("Escape")
        wait_for(lambda: not self.program.find_all("progress bar"), "the window goes away")
        self.program.wait_until_idle()
        self.assertIsNone(self.program.message())
        self.check_whole(path)
        self.pane.caret = 0
        self.program.read()
        self.recorder.wait_for_sound()

    def test_the_system_ends_a_long_save_and_the_program_and_leaves_a_whole_file(self):
        path, _ = self.long_save("ended.wav")
        self.program.process.send_signal(signal.SIGTERM)
        self.program.answer(self.program.wait_for_message(), "No")  # to save the changed text
        self.assertEqual(self.program.process.wait(30), 0)
        self.check_whole(path)

    def test_selection_rest_and_clipboard_are_saved_and_nothing_else(self):
        four, eight = TEXT.index("four"), TEXT.index("eight")
        cases = {
            "the selection": (four, TEXT.index(" seven"), "Read to File", "four five six"),
            "the rest from the caret on": (eight, eight, "Read to File", TEXT[eight:]),
            "the clipboard": (four, TEXT.index(" nine"), "Save Clipboard to File",
                              TEXT[four:TEXT.index(" nine")]),
        }
        for case, (begin, end, button, words) in cases.items():
            with self.subTest(case):
                path = os.path.join(self.folder, case)
                if "Clipboard" in button:
                    self.pane.copy(begin, end)
                else:
                    self.pane.select(begin, end)
                self.save_as(path, button)
                self.program.answer(self.program.wait_for_message())
                by_the_engine = os.path.join(self.folder, "reference")
                subprocess.run(["espeak-ng", "-v", "gmw/en-US", "-w", by_the_engine, words],
                               check=True)
                expected = float(soxi("-D", by_the_engine))
                self.assertAlmostEqual(float(soxi("-D", path)), expected, delta=0.1 * expected)

    def test_after_a_save_reading_sounds_again_and_the_file_can_be_played(self):
        path = os.path.join(self.folder, "kept")  # no ending is forced on a name
        self.save_as(path)
        self.program.answer(self.program.wait_for_message())
        self.assertEqual(os.listdir(self.folder), ["kept"])
        self.pane.caret = 0
        self.program.read()
        self.recorder.wait_for_sound()
        self.program.wait_until_idle()
        self.recorder.wait_for_silence()

        self.program.button("Play File").press()
        self.program.choose_file(path)
        self.recorder.wait_for_sound()
        self.program.wait_until_idle()

    def test_cancelling_the_dialog_leaves_everything_as_it_was(self):
        self.program.button("Read to File").press()
        self.program.dialog("Save to a Wave File")
        keys("Escape")
        wait_for(lambda: len(self.program.application.children()) == 1, "the dialog goes away")
        self.assertEqual(os.listdir(self.folder), [])
        self.program.button("Read").press()
        self.recorder.wait_for_sound()

    def test_a_reading_in_progress_blocks_the_command(self):
        self.program.read()
        self.assertFalse(self.program.button("Read to File").enabled)
        self.assertFalse(self.program.button("Play File").enabled)
        self.assertGreater(self.recorder.wait_seconds(1), SILENCE_PEAK)


if __name__ == "__main__":
    unittest.main()
