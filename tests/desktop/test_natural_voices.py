"""Voices of programs of others: in the list, heard, and each word selected while it sounds."""

import json
import os
import pathlib
import re
import unittest

from bed import SILENCE_PEAK, Program, Recorder, forget_settings

MODEL = "en_US-standin-medium.onnx"
PAGE = ("Seven children carried baskets down the garden path. Before dinner somebody counted twenty "
        "golden pears.")
WORDS = [match.span() for match in re.finditer(r"\w+", PAGE)]


def install_piper():
    """A program into the user's own folder, and a model where such models lie."""
    program = pathlib.Path.home() / ".local/bin/piper"
    program.parent.mkdir(parents=True, exist_ok=True)
    program.write_text("#!/bin/sh\n")
    program.chmod(0o755)
    voices = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "piper-voices/en/en_US/standin/medium"
    voices.mkdir(parents=True, exist_ok=True)
    (voices / MODEL).write_bytes(b"weights")
    (voices / (MODEL + ".json")).write_text(json.dumps(
        {"audio": {"sample_rate": 16000}, "espeak": {"voice": "en-us"}, "num_speakers": 1}))


class NaturalVoices(unittest.TestCase):
    def setUp(self):
        forget_settings()
        install_piper()
        self.recorder = self.enterContext(Recorder())
        self.program = self.enterContext(Program())
        self.list = self.program.find("combo box", description="Select one voice")

    def voices(self):
        entries = self.list.children()[0].node
        return [entries.get_child_at_index(index).get_name()
                for index in range(entries.get_child_count())]

    def test_they_stand_at_the_end_of_the_list(self):
        ends = ["English (United States), male, Kal (Festival)",
                "English (United States), female, Slt (Festival)",
                "English (United States), Standin medium (Piper)"]
        self.assertEqual(self.voices()[-3:], ends)

    def test_a_festival_voice_selects_each_word_while_it_sounds(self):
        self.assertIn("Slt", self.list.choose(-2))
        pane = self.program.text_pane()
        pane.text = PAGE
        pane.caret = 0
        begin = self.recorder.position()
        seen = [selection for selection in self.program.follow_reading() if selection in WORDS]
        self.assertEqual(seen, sorted(set(seen)), "no word comes twice or late")
        self.assertGreater(len(seen), 0.9 * len(WORDS), "hardly a word passes unseen")
        self.assertEqual(pane.selection, WORDS[-1])
        self.assertGreater(self.recorder.peak(begin), SILENCE_PEAK)
