"""Voices of programs of others: in the list, heard, and each word selected while it sounds."""

import json
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import tempfile
import unittest

from bed import SILENCE_PEAK, Program, Recorder, forget_settings, wait_for

HERE = pathlib.Path(__file__).resolve().parent
MODEL = "en_US-standin-medium.onnx"
SENTENCES = ["Seven children carried baskets down the garden path.",
             "Before dinner somebody counted twenty golden pears.",
             "The captain kept the broken compass in a drawer."]
PAGE = " ".join(SENTENCES)
# Where each sentence's words are on the page.
WORDS = [[match.span() for match in re.compile(r"\w+").finditer(PAGE, PAGE.index(one),
                                                              PAGE.index(one) + len(one))]
         for one in SENTENCES]
# What the marks may be off, and what it takes to see a selection from outside of a busy program.
MEAN_SECONDS = 0.020 + 0.040
MOST_SECONDS = 0.060 + 0.140
SLICE_SECONDS = 0.005


def install_piper():
    """The program into the user's own folder, and a model where such models lie."""
    program = pathlib.Path.home() / ".local/bin/piper"
    program.parent.mkdir(parents=True, exist_ok=True)
    shutil.copy(HERE / "stand_in_piper.py", program)
    program.chmod(0o755)
    voices = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "piper-voices/en/en_US/standin/medium"
    voices.mkdir(parents=True, exist_ok=True)
    (voices / MODEL).write_bytes(b"weights")
    (voices / (MODEL + ".json")).write_text(json.dumps(
        {"audio": {"sample_rate": 16000}, "espeak": {"voice": "en-us"}, "num_speakers": 1}))


def festival_starts(voice):
    """When festival itself begins each word, in seconds after the sentence's first word."""
    with tempfile.TemporaryDirectory() as folder:
        texts = os.path.join(folder, "texts")
        with open(texts, "w") as file:
            file.write("\n".join(f'"{sentence}"' for sentence in SENTENCES))
        subprocess.run(
            ["festival", "-b", f"(set! voice {voice})", f'(set! sentences "{texts}")',
             f'(set! folder "{folder}")', str(HERE.parents[1] / "bench/festival_truth.scm")],
            check=True, stdout=subprocess.DEVNULL)
        starts = []
        for number in range(len(SENTENCES)):
            times = [float(line) for line in
                     (pathlib.Path(folder) / f"{number}.times").read_text().split()[1:]]
            starts.append([time - times[0] for time in times])
        return starts


def onsets(recorder, begin, count):
    """The seconds since `begin` at which sound starts, after the `count` longest silences."""
    size = int(SLICE_SECONDS * recorder.rate)
    samples = recorder.samples(begin)
    found, silent = [], len(samples)  # it begins with silence
    for at in range(0, len(samples) - size, size):
        if max(map(abs, samples[at:at + size])) <= SILENCE_PEAK:
            silent += size
        else:
            found.append((silent, at / recorder.rate))
            silent = 0
    return sorted(second for _, second in sorted(found)[-count:])


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

    def seen_words(self):
        """When each word of the page was selected first, in recorded seconds from the start."""
        pane, stop = self.program.text_pane(), self.program.button("Stop")
        pane.text = PAGE
        pane.caret = 0
        begin = self.recorder.position()
        seen = {}
        self.program.button("Read").press()
        wait_for(lambda: stop.enabled, "the reading begins")

        def over():
            seen.setdefault(pane.selection, (self.recorder.position() - begin) / self.recorder.rate)
            return not stop.enabled
        wait_for(over, "the end of the reading", 120)
        return begin, seen

    def check(self, heard, seen):
        """`heard` has the seconds at which each word of each sentence begins to sound."""
        errors = [abs(seen[word] - second) for words, seconds in zip(WORDS, heard)
                  for word, second in zip(words, seconds) if word in seen]
        self.assertGreater(len(errors), 0.9 * sum(map(len, WORDS)), "hardly a word passes unseen")
        told = f"{len(errors)} words, {sorted(round(error, 3) for error in errors)}"
        self.assertLess(statistics.mean(errors), MEAN_SECONDS, told)
        self.assertLess(sorted(errors)[int(0.95 * len(errors)) - 1], MOST_SECONDS, told)

    def test_they_stand_at_the_end_of_the_list_at_every_start(self):
        ends = ["English (United States), male, Kal (Festival)",
                "English (United States), female, Slt (Festival)",
                "English (United States), Standin medium (Piper)"]
        voices = self.voices()
        self.assertEqual(voices[-3:], ends)
        self.program.close()
        with Program() as program:
            self.list = program.find("combo box", description="Select one voice")
            self.assertEqual(self.voices(), voices)

    def test_a_piper_voice_selects_each_word_as_it_sounds(self):
        self.assertIn("Piper", self.list.choose(-1))
        begin, seen = self.seen_words()
        heard = onsets(self.recorder, begin, sum(map(len, WORDS)))
        first = [sum(map(len, WORDS[:number])) for number in range(len(WORDS) + 1)]
        self.check([heard[a:b] for a, b in zip(first, first[1:])], seen)

    def test_a_festival_voice_selects_each_word_as_it_sounds(self):
        self.assertIn("Slt", self.list.choose(-2))
        begin, seen = self.seen_words()
        heard = onsets(self.recorder, begin, len(SENTENCES))
        starts = festival_starts("voice_cmu_us_slt_arctic_hts")
        self.check([[onset + start for start in sentence]
                    for onset, sentence in zip(heard, starts)], seen)


if __name__ == "__main__":
    unittest.main()
