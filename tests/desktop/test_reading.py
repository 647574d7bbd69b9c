"""Reading aloud: each word is selected while it sounds, and the buttons do what they say."""

import re
import unittest

from bed import SILENCE_PEAK, Program, Recorder, forget_settings, keys, wait_for

TEXT = ("The quick brown fox jumps over the lazy dog. After that it sleeps in the warm sun, "
        "and nobody wakes it before supper.")
WORDS = [match.span() for match in re.finditer(r"\w+", TEXT)]


def words_from(first, last="supper"):
    begin, end = TEXT.index(first), TEXT.index(last) + len(last)
    return [word for word in WORDS if begin <= word[0] and word[1] <= end]


class Reading(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.recorder = self.enterContext(Recorder())
        self.program = self.enterContext(Program())
        self.pane = self.program.text_pane()
        self.assertIn("Welcome to Tessavox", self.pane.text)
        self.pane.text = TEXT

    def check_words(self, words, button="Read"):
        """Presses the button: the selection goes along `words` from the first to the last while
        they sound. What is selected before the first word sounds does not count, and a very short
        word may pass unseen."""
        start = self.recorder.position()
        seen = self.program.follow_reading(button)
        spoken = [selection for selection in seen if selection in WORDS]
        self.assertEqual(spoken, sorted(set(spoken)), "no word comes twice or late")
        self.assertLessEqual(set(spoken), set(words))
        self.assertGreater(len(spoken), len(words) / 2)
        self.assertIn(spoken[0], words[:2])
        self.assertEqual(self.pane.selection, words[-1], "the last word stays selected")
        first = seen.index(spoken[0])
        self.assertEqual(seen[first:], spoken, "nothing but words is selected between words")
        self.assertGreater(self.recorder.peak(start), SILENCE_PEAK)

    def check_it_holds_still(self):
        """Returns the word that stays selected, in silence."""
        self.recorder.wait_for_silence()
        held = self.pane.selection
        self.assertIn(held, WORDS)
        self.assertLessEqual(self.recorder.wait_seconds(0.7), SILENCE_PEAK)
        self.assertEqual(self.pane.selection, held)
        return held

    def test_words_are_selected_from_the_caret_on_or_in_the_selection_while_they_sound(self):
        end = len(TEXT)
        for begin, end, words in ((end, end, WORDS),
                                  (TEXT.index("sleeps"),) * 2 + (words_from("sleeps"),),
                                  (16, 30, words_from("fox", "over"))):
            with self.subTest(begin=begin):
                self.pane.select(begin, end)
                self.check_words(words)

    def test_pause_holds_still_and_resume_goes_on_and_after_a_stop_the_selected_word_is_read(self):
        self.pane.caret = 0
        self.program.read()
        wait_for(lambda: self.pane.selected == "fox", "a word in the middle")
        self.program.button("Pause").press()
        self.program.button("Resume")
        held = self.check_it_holds_still()
        self.check_words(WORDS[WORDS.index(held):], "Resume")

        self.pane.caret = 0
        self.program.read()
        wait_for(lambda: self.pane.selected == "jumps", "a word in the middle")
        self.program.button("Stop").press()
        wait_for(lambda: self.program.button("Read").enabled, "idle controls")
        self.check_words([self.check_it_holds_still()])

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
