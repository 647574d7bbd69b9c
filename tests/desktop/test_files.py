"""Real files: opened, edited, saved and closed, byte for byte; and what is kept of what isn't saved."""

import glob
import os
import signal
import tempfile
import unittest

from bed import Program, forget_settings, keys, type_text, wait_for

QUESTION = "This document has been changed. Do you wish to save?"


def copies(state):
    return glob.glob(os.path.join(state, "tessavox", "recovery", "*"))


class Files(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        self.state = self.enterContext(tempfile.TemporaryDirectory())
        self.program = self.enterContext(Program(XDG_STATE_HOME=self.state))

    def put(self, name, content):
        path = os.path.join(self.folder, name)
        with open(path, "wb") as file:
            file.write(content)
        return path

    def content(self, path):
        with open(path, "rb") as file:
            return file.read()

    def choose(self, path):
        """Answers the file dialog that is shown."""
        self.program.file_dialog()
        type_text(path)
        keys("Return")

    def open(self, path):
        keys("ctrl+o")
        self.choose(path)
        wait_for(lambda: path in self.program.main_window().name, f"{path} is open")

    def texts(self):
        return [pane.text for pane in self.program.text_panes()]

    def type_at_the_start(self, text):
        keys("ctrl+Home")
        type_text(text)
        wait_for(lambda: any(shown.startswith(text) for shown in self.texts()), "the typed text")

    def close_document(self, answer):
        # By the mouse: two menus share a letter, so that their keys take turns.
        self.program.find("menu item", "File").press()
        keys("c")
        self.assertEqual(self.program.answer(self.program.wait_for_message(), answer), QUESTION)

    def test_a_plain_file_keeps_its_encoding_and_line_ends_through_each_way_of_closing(self):
        before = "h\u00e4nde\r\nzwei\r\n".encode("utf-16")
        path = self.put("a.txt", before)
        for answer, after in (("Cancel", before), ("No", before),
                              ("Yes", "xh\u00e4nde\r\nzwei\r\n".encode("utf-16"))):
            if answer != "No":  # it is still open from the cancelled close then
                self.open(path)
                self.type_at_the_start("x")
            self.close_document(answer)
            if answer != "Cancel":
                wait_for(lambda: path not in self.program.main_window().name, "the document goes")
            self.assertEqual(self.content(path), after, answer)
        wait_for(lambda: not copies(self.state), "nothing that was saved or given up is kept")

    def test_rich_text_is_saved_as_such(self):
        path = self.put("a.rtf", b"{\\rtf1\\ansi one {\\b bold} two\\par}")
        self.open(path)
        self.assertIn("one bold two", self.texts())
        self.type_at_the_start("x")
        keys("ctrl+s")
        wait_for(lambda: b"xone" in self.content(path), "the save")
        saved = self.content(path)
        self.assertTrue(saved.startswith(b"{\\rtf1"))
        self.assertRegex(saved, rb"\\b[ \\][^}]*bold")

    def test_what_cant_be_opened_is_refused_while_the_dialog_is_open(self):
        pipe = os.path.join(self.folder, "pipe")
        os.mkfifo(pipe)
        huge = os.path.join(self.folder, "huge.txt")
        with open(huge, "wb") as file:
            file.truncate(65 << 20)
        for path, reason in ((pipe, "pipe is no file that can be opened"),
                             (huge, "huge.txt is too long"),
                             (self.put("lines.txt", b"\n" * 1_000_001), "lines.txt is too long")):
            keys("ctrl+o")
            self.choose(path)
            self.assertIn(reason, self.program.answer(self.program.wait_for_message()))
            self.program.file_dialog()
            keys("Escape")
            wait_for(lambda: not [top for top in self.program.application.children()
                                  if top.role in ("dialog", "file chooser")], "the dialog goes")

    def test_a_crash_leaves_the_text_that_wasnt_saved(self):
        keys("ctrl+n")
        wait_for(lambda: "Document 2" in self.program.main_window().name, "a second document")
        type_text("Words to keep.")

        def kept():
            return [path for path in copies(self.state) if self.content(path) == b"Words to keep."]
        wait_for(kept, "a copy of the text")
        self.program.process.send_signal(signal.SIGKILL)
        self.program.process.wait()
        self.assertEqual(len(kept()), 1)
        self.assertIn("Document 2", kept()[0])


if __name__ == "__main__":
    unittest.main()
