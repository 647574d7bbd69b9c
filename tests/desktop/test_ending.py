"""Documents and the program end when they are asked to, once, and no text is lost by it."""

import os
import signal
import tempfile
import unittest

from bed import Program, forget_settings, keys, type_text, wait_for

QUESTION = "This document has been changed. Do you wish to save?"


class StartingProgram(Program):
    """A program whose first message is not answered yet."""

    def _started(self):
        return self.message()


class Ending(unittest.TestCase):
    def start_with_changes(self, count):
        forget_settings()
        program = self.enterContext(Program())
        for number in range(2, 2 + count):
            keys("ctrl+n")
            wait_for(lambda: f"Document {number}" in program.main_window().name, "a new document")
            type_text(f"Text {number}.")
            wait_for(lambda: f"Text {number}." in [pane.text for pane in program.text_panes()],
                     "the typed text")
        return program

    def alerts(self, program):
        return [top for top in program.application.children() if top.role == "alert"]

    def test_a_second_signal_asks_no_second_time(self):
        program = self.start_with_changes(1)
        for answer in ("Cancel", "No"):
            program.process.send_signal(signal.SIGTERM)
            message = program.wait_for_message()
            program.process.send_signal(signal.SIGHUP)
            program.process.send_signal(signal.SIGTERM)
            self.assertEqual(len(self.alerts(program)), 1)
            self.assertEqual(program.answer(message, answer), QUESTION)
        self.assertEqual(program.process.wait(30), 0)

    def test_a_signal_in_a_dialog_is_obeyed_when_the_dialog_is_answered(self):
        program = self.start_with_changes(0)
        program.button("Play File").press()
        program.dialog("Speak a Wave File")
        program.process.send_signal(signal.SIGTERM)
        keys("Escape")
        self.assertEqual(program.process.wait(30), 0)

    def test_a_signal_at_the_first_message_is_obeyed_after_the_start(self):
        with tempfile.NamedTemporaryFile() as no_folder:
            program = self.enterContext(StartingProgram(XDG_CONFIG_HOME=no_folder.name))
            program.process.send_signal(signal.SIGTERM)

            def ended():
                if program.process.poll() is not None:
                    return True
                if message := program.message():
                    program.answer(message)
                return False
            wait_for(ended, "the end of the program")
            self.assertEqual(program.process.returncode, 0)

    def test_every_changed_document_is_asked_about(self):
        program = self.start_with_changes(2)
        folder = self.enterContext(tempfile.TemporaryDirectory())
        program.ask_to_close()
        for number in (2, 3):
            path = os.path.join(folder, f"{number}.txt")
            self.assertEqual(program.answer(program.wait_for_message(), "Yes"), QUESTION)
            program.choose_file(path)
            wait_for(lambda: os.path.exists(path), "the file")
            with open(path, encoding="utf-8") as file:
                self.assertEqual(file.read().rstrip(), f"Text {number}.")
        self.assertEqual(program.process.wait(30), 0)

    def test_a_changed_document_stays_goes_or_is_saved_as_the_answer_says(self):
        program = self.start_with_changes(2)
        folder = self.enterContext(tempfile.TemporaryDirectory())
        path = os.path.join(folder, "kept.txt")
        for answer, left in (("No", 2), ("Yes", 1), ("Cancel", 1)):
            type_text("More. ")  # one that comes forward counts as unchanged
            program.find("menu item", "File").click()
            keys("c")
            self.assertEqual(program.answer(program.wait_for_message(), answer), QUESTION)
            if answer == "Yes":
                program.choose_file(path)
            wait_for(lambda: len(program.find_all("push button", "Read")) == left, "the rest")
        with open(path, encoding="utf-8") as file:
            self.assertEqual(file.read().rstrip(), "Text 2.More.")
        self.assertIn("More.", " ".join(pane.text for pane in program.text_panes()))


if __name__ == "__main__":
    unittest.main()
