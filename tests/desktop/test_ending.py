"""Documents and the program end when they are asked to, once, and no text is lost by it."""

import os
import signal
import tempfile
import unittest

from bed import SAVE_QUESTION, Program, forget_settings, keys, type_text, wait_for


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

    def test_a_second_signal_asks_no_second_time(self):
        program = self.start_with_changes(1)
        for answer in ("Cancel", "No"):
            program.process.send_signal(signal.SIGTERM)
            message = program.wait_for_message()
            program.process.send_signal(signal.SIGHUP)
            program.process.send_signal(signal.SIGTERM)
            alerts = [top for top in program.application.children() if top.role == "alert"]
            self.assertEqual(len(alerts), 1)
            self.assertEqual(program.answer(message, answer), SAVE_QUESTION)
        self.assertEqual(program.process.wait(30), 0)

    def test_a_signal_in_a_dialog_is_obeyed_when_the_dialog_is_answered(self):
        program = self.start_with_changes(0)
        program.button("Play File").press()
        program.file_dialog()
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

    def test_every_changed_document_is_asked_about_and_saved(self):
        program = self.start_with_changes(2)
        folder = self.enterContext(tempfile.TemporaryDirectory())
        program.ask_to_close()
        for number in (2, 3):
            path = os.path.join(folder, f"{number}.txt")
            self.assertEqual(program.answer(program.wait_for_message(), "Yes"), SAVE_QUESTION)
            program.choose_file(path)
            wait_for(lambda: os.path.exists(path), "the file")
            with open(path, encoding="utf-8") as file:
                self.assertEqual(file.read().rstrip(), f"Text {number}.")
        self.assertEqual(program.process.wait(30), 0)


if __name__ == "__main__":
    unittest.main()
