"""Driven by other programs: copied texts, second starts, the small files between them."""

import os
import signal
import subprocess
import unittest

import bed
from bed import Program, Recorder, config_folder, forget_settings, wait_for

LONG = "This is a long text that goes on and on, so that there is time to pause it. " * 4


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
    wait_for(lambda: note("web.txt") == ["0"] * 4, f"the command {command} is taken")


class Driven(unittest.TestCase):
    def setUp(self):
        forget_settings()
        copied("lay there before the start")
        self.recorder = self.enterContext(Recorder())

    def start(self):
        self.program = self.enterContext(Program())
        self.stop = self.program.find_all("push button", "Stop")[0]

    def test_what_is_copied_is_heard_and_marked_as_often_as_it_is_copied(self):
        self.start()
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

    def test_second_starts_pause_resume_stop_and_save(self):
        self.start()
        self.program.find("check box").press()
        self.program.text_pane().text = LONG
        self.program.read()
        send("400")
        self.program.button("Resume")
        send("400")
        self.program.button("Pause")
        send("500")
        self.program.wait_until_idle()
        subprocess.run([bed.program_path, "600"], check=True)
        self.program.file_dialog()
        self.assertEqual(note("opened.txt"), ["1"])

    def test_a_cold_start_with_300_reads_out_of_sight(self):
        program = subprocess.Popen([bed.program_path, "300"])
        self.addCleanup(program.wait)
        self.addCleanup(program.kill)
        wait_for(lambda: note("opened.txt") == ["1"], "it has become the application")
        copied("Hello from out of sight")
        subprocess.run([bed.program_path, "300"], check=True)
        self.recorder.wait_for_sound()
        program.send_signal(signal.SIGTERM)
        self.assertEqual(program.wait(bed.PATIENCE_SECONDS), 0)
        self.assertEqual(note("opened.txt"), ["0"])


if __name__ == "__main__":
    unittest.main()
