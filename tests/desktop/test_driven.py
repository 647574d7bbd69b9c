"""Driven by other programs: copied texts, second starts, the small files between them."""

import os
import signal
import subprocess
import tempfile
import unittest

import bed
from bed import Program, Recorder, config_folder, forget_settings, wait_for

LONG = "This is a long text that goes on and on, so that there is time to pause it. " * 4
ZEROS = ["0"] * 4


def copied(text, kind="UTF8_STRING"):
    subprocess.run(["xclip", "-selection", "clipboard", "-t", kind, "-i"], check=True,
                   input=text.encode())


def pasted():
    return subprocess.run(["xclip", "-selection", "clipboard", "-o"], capture_output=True,
                          text=True).stdout


def note(name):
    """The values that a small file holds; none before it is there."""
    path = os.path.join(config_folder, name)
    if not os.path.exists(path):
        return []
    with open(path, newline="") as file:
        return file.read().replace('"', "").split("\r\n")[1:-2]


def send(command):
    """A second start with a number: it ends at once and its flag is taken."""
    subprocess.run([bed.program_path, command], check=True)
    wait_for(lambda: note("web.txt") == ZEROS, f"the command {command} is taken")


class Second(Program):
    """One that asks first, because a copy counts as running."""

    def _started(self):
        return self.find_all("push button", "Close")


class Hidden(Program):
    """One that starts out of sight."""

    def _started(self):
        return True


class Driven(unittest.TestCase):
    def setUp(self):
        forget_settings()
        copied("lay there before the start")
        self.recorder = self.enterContext(Recorder())

    def start(self, copies_are_read=True):
        self.program = self.enterContext(Program())
        self.stop = self.program.find_all("push button", "Stop")[0]
        if not copies_are_read:
            self.program.find("check box").press()

    def save_copied_text(self, program):
        path = os.path.join(self.enterContext(tempfile.TemporaryDirectory()), "copied.wav")
        program.choose_file(path)
        program.answer(program.wait_for_message())
        self.assertGreater(os.path.getsize(path), 48000)

    def test_what_is_copied_is_heard_and_marked_as_often_as_it_is_copied(self):
        self.start()
        self.assertEqual(pasted(), "lay there before the start")
        for _ in range(2):
            copied("Hello")
            wait_for(lambda: self.stop.enabled, "the reading begins")
            self.recorder.wait_for_sound()
            self.assertEqual(pasted(), "Hello ")
            self.program.wait_until_idle()
        copied(LONG)
        wait_for(lambda: self.stop.enabled, "the reading begins")
        copied("dropped")
        wait_for(lambda: pasted() == "dropped ", "the text counts as read")
        send("500")
        self.program.wait_until_idle()
        copied("no text", kind="image/png")
        send("400")
        self.assertFalse(self.stop.enabled, "neither the dropped text nor a picture is read")

    def test_second_starts_read_pause_resume_stop_and_save(self):
        self.start(copies_are_read=False)
        copied(LONG)
        send("300")
        wait_for(lambda: self.stop.enabled, "the reading begins")
        self.recorder.wait_for_sound()
        wait_for(lambda: pasted() == "", "an empty clipboard")
        send("400")
        self.program.button("Resume")
        self.recorder.wait_for_silence()
        send("400")
        self.program.button("Pause")
        self.recorder.wait_for_sound()
        send("500")
        self.program.wait_until_idle()
        copied("A text that is saved")
        subprocess.run([bed.program_path, "600"], check=True)
        self.save_copied_text(self.program)
        self.assertEqual(note("opened.txt"), ["1"])

    def test_a_cold_start_opens_a_window_unless_it_has_something_to_read_or_save(self):
        with Hidden("300") as program:
            self.recorder.wait_for_sound()
            wait_for(lambda: note("web.txt") == ZEROS and pasted() == "", "the command is taken")
            shown = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid",
                                    str(program.process.pid)], capture_output=True, text=True)
            self.assertEqual(shown.stdout, "")
            program.process.send_signal(signal.SIGTERM)
            self.assertEqual(program.process.wait(bed.PATIENCE_SECONDS), 0)
        self.assertEqual(note("opened.txt"), ["0"])
        for command in ("400", "500", "a word"):
            with self.subTest(command), Program(command) as program:
                wait_for(lambda: note("opened.txt") == ["1"], "it has become the application")
                self.assertEqual(note("web.txt"), ZEROS)
                box = program.find("check box")
                if box.checked:  # the next start's would clear the flag of 600
                    box.press()
                self.assertEqual(program.close(), 0)
                self.assertEqual(note("opened.txt"), ["0"])
        copied("A text that is saved")
        with Hidden("600") as program:
            self.save_copied_text(program)

    def test_a_copy_beside_the_first_is_asked_about_and_leaves_the_flag_at_zero(self):
        self.start()
        with Second() as second:
            second.button("Close").press()
            self.assertEqual(second.process.wait(bed.PATIENCE_SECONDS), 0)
        with Second() as second:
            second.button("Open a new window >>>").press()
            wait_for(second.main_window, "the second window")
            self.assertEqual(second.close(), 0)
        self.assertEqual(note("opened.txt"), ["0"])
        with Program() as third:  # nobody repairs the flag
            third.process.kill()
        with Second() as after_a_crash:
            after_a_crash.button("Open a new window >>>").press()
            wait_for(after_a_crash.main_window, "a way out")
