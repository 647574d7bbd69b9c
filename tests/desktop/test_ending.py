"""Documents and the program end when they are asked to, once, and no text is lost by it."""

import signal
import tempfile
import unittest

from bed import SAVE_QUESTION, Program, forget_settings, keys, wait_for


class StartingProgram(Program):
    """A program whose first message is not answered yet."""

    def _started(self):
        return self.message()


class Ending(unittest.TestCase):
    def start(self):
        forget_settings()
        return self.enterContext(Program())

    def test_a_second_signal_asks_no_second_time(self):
        program = self.start()
        program.text_pane().text = "changed"
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
        program = self.start()
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
