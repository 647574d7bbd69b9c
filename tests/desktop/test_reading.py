"""Reading aloud: each word is selected while it sounds, and the buttons do what they say."""

import re
import unittest

from bed import SILENCE_PEAK, Program, Recorder, forget_settings, keys, wait_for

TEXT = ("The quick brown fox jumps over the lazy dog. After that it sleeps in the warm sun, "
        "and nobody wakes it before supper.")
WORDS = [match.span() for match in re.finditer(r"\w+", TEXT)]


def word_at(word):
    begin = TEXT.index(word)
    return begin, begin + len(word)


class Reading(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.recorder = self.enterContext(Recorder())
        self.program = self.enterContext(Program())
        self.pane = self.program.text_pane()
        self.start_text = self.pane.text
        self.pane.text = TEXT

    def check_words(self, seen, words):
        """`seen` went along `words` from the first to the last. What is selected before the first
        word sounds does not count, and a very short word may pass unseen."""
        spoken = [selection for selection in seen if selection in WORDS]
        self.assertEqual(spoken, sorted(set(spoken)), "no word comes twice or late")
        self.assertLessEqual(set(spoken), set(words))
        self.assertGreater(len(spoken), len(words) / 2)
        self.assertIn(spoken[0], words[:2])
        self.assertEqual(self.pane.selection, words[-1], "the last word stays selected")
        first = seen.index(spoken[0])
        self.assertEqual(seen[first:], spoken, "nothing but words is selected between words")

    def test_a_start_shows_the_start_document_in_an_idle_window(self):
        self.assertIn("Welcome to Tessavox", self.start_text)
        self.assertTrue(self.program.button("Read").enabled)
        self.assertFalse(self.program.button("Stop").enabled)
        self.assertEqual(self.program.messages, [])

    def test_words_are_selected_in_order_while_they_sound(self):
        self.pane.caret = 0
        begin = self.recorder.position()
        self.check_words(self.program.follow_reading(), WORDS)
        self.assertGreater(self.recorder.peak(begin), SILENCE_PEAK)

    def test_reading_begins_at_the_caret_or_keeps_to_the_selection(self):
        sleeps = WORDS.index(word_at("sleeps"))
        fox = WORDS.index(word_at("fox"))
        cases = {
            "from the caret on": (word_at("sleeps")[0],) * 2 + (WORDS[sleeps:],),
            "only the selection": (word_at("fox")[0], word_at("over")[1], WORDS[fox:fox + 3]),
            "from the top when the caret is at the end": (len(TEXT), len(TEXT), WORDS),
        }
        for case, (begin, end, words) in cases.items():
            with self.subTest(case):
                self.pane.select(begin, end)
                self.check_words(self.program.follow_reading(), words)

    def test_pause_holds_still_and_resume_goes_on(self):
        self.pane.caret = 0
        self.program.read()
        wait_for(lambda: self.pane.selected == "fox", "a word in the middle")
        self.recorder.wait_for_sound()
        self.program.button("Pause").press()
        self.program.button("Resume")
        self.recorder.wait_for_silence()
        held = self.pane.selection
        self.assertIn(held, WORDS)
        self.assertLessEqual(self.recorder.wait_seconds(0.7), SILENCE_PEAK)
        self.assertEqual(self.pane.selection, held)
        begin = self.recorder.position()
        self.check_words(self.program.follow_reading("Resume"), WORDS[WORDS.index(held):])
        self.assertGreater(self.recorder.peak(begin), SILENCE_PEAK)

    def test_stop_ends_the_sound_and_the_next_read_speaks_the_word_left_selected(self):
        self.pane.caret = 0
        self.program.read()
        wait_for(lambda: self.pane.selected == "jumps", "a word in the middle")
        self.program.button("Stop").press()
        wait_for(lambda: self.program.button("Read").enabled, "idle controls")
        self.recorder.wait_for_silence()
        held = self.pane.selection
        self.assertIn(held, WORDS)
        self.assertLessEqual(self.recorder.wait_seconds(0.7), SILENCE_PEAK)
        self.assertEqual(self.pane.selection, held)
        self.check_words(self.program.follow_reading(), [held])

    def test_the_keyboard_alone_reads_pauses_and_stops(self):
        self.pane.caret = 0
        keys("ctrl+F5")
        wait_for(lambda: self.pane.selected == "brown", "a word")
        keys("ctrl+F6")
        self.recorder.wait_for_silence()
        keys("ctrl+F6")
        wait_for(lambda: self.pane.selected == "jumps", "a later word")
        keys("ctrl+F7")
        self.recorder.wait_for_silence()
        self.assertTrue(self.program.button("Read").enabled)

    def test_an_empty_document_is_not_read(self):
        self.pane.text = ""
        self.program.button("Read").press()
        self.assertLessEqual(self.recorder.wait_seconds(0.5), SILENCE_PEAK)
        self.assertTrue(self.program.button("Read").enabled)
        self.assertFalse(self.program.button("Stop").enabled)


if __name__ == "__main__":
    unittest.main()
