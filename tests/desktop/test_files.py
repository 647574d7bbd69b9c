"""Real files: opened, edited, saved and closed, byte for byte; and what is kept of what isn't saved."""

import glob
import os
import signal
import subprocess
import tempfile
import unittest

from bed import SAVE_QUESTION, Program, forget_settings, keys, type_text, wait_for


def content(path):
    with open(path, "rb") as file:
        return file.read()


def ps(*arguments):
    """The lines that it tells of processes."""
    told = subprocess.run(["ps", *arguments], capture_output=True, text=True).stdout
    return [line.strip() for line in told.splitlines()]


class Files(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        self.state = self.enterContext(tempfile.TemporaryDirectory())
        self.program = self.enterContext(Program(XDG_STATE_HOME=self.state))

    def path(self, name):
        return os.path.join(self.folder, name)

    def copies(self):
        return glob.glob(os.path.join(self.state, "tessavox", "recovery", "*"))

    def is_open(self, path):
        return path in self.program.main_window().name

    def open_and_type(self, path):
        keys("ctrl+o")
        self.program.choose_file(path)
        wait_for(lambda: self.is_open(path), f"{path} is open")
        keys("ctrl+Home")
        type_text("x")
        wait_for(lambda: self.program.text_pane().text.startswith("x"), "the typed text")

    def close_document(self, answer):
        # By the mouse: two menus share a letter, so that their keys take turns.
        self.program.find("menu item", "File").press()
        keys("c")
        message = self.program.wait_for_message()
        self.assertEqual(self.program.answer(message, answer), SAVE_QUESTION)

    def test_a_plain_file_keeps_its_encoding_and_line_ends_through_each_way_of_closing(self):
        before = "h\u00e4nde\r\nzwei\r\n".encode("utf-16")
        path = self.path("a.txt")
        with open(path, "wb") as file:
            file.write(before)
        for answer, after in (("Cancel", before), ("No", before),
                              ("Yes", "xh\u00e4nde\r\nzwei\r\n".encode("utf-16"))):
            if answer != "No":  # it is still open from the cancelled close then
                self.open_and_type(path)
            self.close_document(answer)
            if answer != "Cancel":
                wait_for(lambda: not self.is_open(path), "the document goes")
            self.assertEqual(content(path), after, answer)
        wait_for(lambda: not self.copies(), "nothing that was saved or given up is kept")

    def test_a_crash_leaves_the_text_that_wasnt_saved_and_no_helper(self):
        keys("ctrl+n")
        wait_for(lambda: self.is_open("Document 2"), "a second document")
        type_text("Words to keep.")

        def kept():
            return [path for path in self.copies() if content(path) == b"Words to keep."]
        wait_for(kept, "a copy of the text")
        helpers = ps("-o", "pid=", "--ppid", str(self.program.process.pid))
        self.assertNotEqual(helpers, [])
        self.program.process.send_signal(signal.SIGKILL)
        self.program.process.wait()
        self.assertEqual(len(kept()), 1)
        self.assertIn("Document 2", kept()[0])
        wait_for(lambda: all("<defunct>" in line for line in ps("-o", "cmd=", "-p", ",".join(helpers))),
                 "the helpers end too")
