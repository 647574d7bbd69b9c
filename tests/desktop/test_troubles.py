"""The program goes on when sound, folders or files are not what it hopes for."""

import os
import shutil
import tempfile
import unittest

import servers
from bed import Program, Recorder, config_folder, forget_settings, program_path, wait_for

TEXT = "One two three four five six seven eight nine ten eleven twelve."
SETTINGS = ("setting1.txt", "setting2.txt", "setting3.txt")


class Troubles(unittest.TestCase):
    def setUp(self):
        forget_settings()

    def read_to_the_end(self, program):
        pane = program.text_pane()
        pane.text = TEXT
        pane.caret = 0
        program.follow_reading()
        self.assertEqual(pane.selected, "twelve")
        self.assertFalse(program.button("Stop").enabled)

    def close(self, program):
        self.assertEqual(program.close(), 0)

    def test_without_a_sound_server_the_words_move_on_all_the_same(self):
        with Program(PULSE_SERVER="unix:/nowhere") as program:
            self.read_to_the_end(program)

    def test_a_reading_outlives_its_sound_server_and_the_next_one_finds_a_new_server(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        address = os.path.join(folder, "sound")
        server = servers.start_sound_server(folder, os.environ, address)
        with Program(PULSE_SERVER="unix:" + address) as program:
            pane = program.text_pane()
            pane.text = TEXT
            pane.caret = 0
            program.read()
            wait_for(lambda: pane.selected == "three", "a word while the server lives")
            server.kill()
            program.wait_until_idle()
            self.assertEqual(pane.selected, "twelve")

            server = servers.start_sound_server(folder, os.environ, address)
            self.addCleanup(server.stop)
            with Recorder(PULSE_SERVER="unix:" + address) as recorder:
                pane.caret = 0
                program.button("Read").press()
                recorder.wait_for_sound()

    def test_a_first_start_has_its_settings_without_a_message(self):
        with Program() as program:
            self.assertEqual(program.messages, [])
            self.assertEqual(program.find("combo box", description="Select voice format").name,
                             "48kHz 16Bit Stereo")
            self.close(program)
        self.assertLessEqual(set(SETTINGS), set(os.listdir(config_folder)))

    def test_a_folder_that_cannot_be_made_is_told_and_a_voice_can_be_chosen_all_the_same(self):
        with tempfile.NamedTemporaryFile() as no_folder:
            with Program(XDG_CONFIG_HOME=no_folder.name) as program:
                names = ("opened.txt", "setting1.txt", "setting3.txt", "setting2.txt", "web.txt",
                         "control.txt")
                messages = program.messages
                while len(messages) < len(names):  # the last ones come when the timers look
                    messages.append(program.answer(program.wait_for_message()))
                for name, message in zip(names, messages, strict=True):
                    self.assertRegex(message, f"^The software setting files .*/{name} have been "
                                     "moved, please reinstall our software again$")
                program.find("combo box", description="Select one voice").choose(0)
                self.read_to_the_end(program)

    def test_without_its_start_document_the_program_has_an_empty_one(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        program_folder = os.path.join(folder, "bin")
        os.mkdir(program_folder)
        for part in (program_path, program_path + "-voice-helper"):
            shutil.copy(part, program_folder)
        source = os.path.join(os.path.dirname(__file__), "..", "..", "share")
        shutil.copytree(source, os.path.join(folder, "share", "tessavox"),
                        ignore=shutil.ignore_patterns("first.txt"))
        with Program(path=os.path.join(program_folder, "tessavox")) as program:
            self.assertEqual(program.messages, [])
            self.assertEqual(program.text_pane().text, "")
            self.read_to_the_end(program)

    def test_strange_settings_files_do_no_harm(self):
        with Program() as program:
            self.close(program)  # installs the shipped files

        def folder(path):
            os.unlink(path)
            os.mkdir(path)

        def replace(data):
            def act(path):
                with open(path, "wb") as file:
                    file.write(data)
            return act

        cases = {"empty": replace(b""),
                 "binary": replace(bytes(range(256)) * 64),
                 "one endless line": replace(b"9" * 1_000_000),
                 "missing": os.unlink,
                 "folders": folder}
        for case, spoil in cases.items():
            with self.subTest(case):
                for name in SETTINGS:
                    path = os.path.join(config_folder, name)
                    if os.path.isfile(path):
                        spoil(path)
                with Program() as program:
                    told = 3 if case in ("missing", "folders") else 0
                    self.assertEqual(len(program.messages), told, program.messages)
                    self.assertIn("Welcome", program.text_pane().text)
                    self.close(program)


if __name__ == "__main__":
    unittest.main()
