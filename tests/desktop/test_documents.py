"""Documents: made, typed into, kept when they are closed."""

import os
import tempfile
import unittest

from bed import Program, forget_settings, keys, type_text, wait_for

QUESTION = "This document has been changed. Do you wish to save?"


class Documents(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        self.program = self.enterContext(Program())
        keys("ctrl+n")
        wait_for(lambda: "Document 2" in self.program.main_window().name, "a second document")
        type_text("Words to keep.")
        wait_for(lambda: "Words to keep." in self.texts(), "the typed text")

    def texts(self):
        return [pane.text for pane in self.program.text_panes()]

    def close_document(self, answer):
        keys("alt+f", "c")
        message = self.program.wait_for_message()
        self.assertEqual(self.program.answer(message, answer), QUESTION)

    def test_a_changed_document_is_saved_when_it_is_closed(self):
        path = os.path.join(self.folder, "kept.txt")
        self.close_document("Yes")
        self.program.file_dialog()
        type_text(path)
        keys("Return")
        wait_for(lambda: "Words to keep." not in self.texts(), "the document goes")
        with open(path, encoding="utf-8") as file:
            self.assertEqual(file.read().rstrip(), "Words to keep.")
        self.assertEqual(self.program.close(), 0)

    def test_a_changed_document_goes_without_a_trace_if_that_is_wanted(self):
        self.close_document("No")
        wait_for(lambda: "Words to keep." not in self.texts(), "the document goes")
        self.assertEqual(self.program.close(), 0)

    def test_a_cancelled_close_keeps_the_document(self):
        self.close_document("Cancel")
        self.assertIn("Words to keep.", self.texts())


if __name__ == "__main__":
    unittest.main()
