"""The program goes on when sound or folders are not what it hopes for."""

import os
import shutil
import tempfile
import unittest

import servers
from bed import Program, Recorder, forget_settings, program_path, wait_for

TEXT = "One two three four five six seven eight nine ten eleven twelve."


class Troubles(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.folder = self.enterContext(tempfile.TemporaryDirectory())

    def start(self, **arguments):
        program = self.enterContext(Program(**arguments))
        self.pane = program.text_pane()
        return program

    def begin_to_read(self, program):
        self.pane.text = TEXT
        self.pane.caret = 0
        program.read()

    def check_words_move_to_the_end(self, program):
        program.wait_until_idle()
        self.assertEqual(self.pane.selected, "twelve")

    def test_a_reading_outlives_its_sound_server_and_the_next_one_finds_a_new_server(self):
        address = os.path.join(self.folder, "sound")
        server = servers.start_sound_server(self.folder, os.environ, address)
        program = self.start(PULSE_SERVER="unix:" + address)
        self.begin_to_read(program)
        wait_for(lambda: self.pane.selected == "three", "a word while the server lives")
        server.kill()
        self.check_words_move_to_the_end(program)
        self.begin_to_read(program)  # without any server
        self.check_words_move_to_the_end(program)

        server = servers.start_sound_server(self.folder, os.environ, address)
        self.addCleanup(server.stop)
        with Recorder(PULSE_SERVER="unix:" + address) as recorder:
            self.begin_to_read(program)
            recorder.wait_for_sound()

    def test_the_texts_are_the_users_and_English_where_there_are_none(self):
        for locale, first_menu in (("de_AT.UTF-8", "Datei"), ("vi_VN.UTF-8", "文件(F)"),
                                   ("zh_CN.UTF-8", "File"), ("xx_YY.none@?", "File"), ("", "File")):
            forget_settings()
            with Program(LC_ALL=locale, LANGUAGE="") as program, self.subTest(locale):
                names = [menu.name for menu in program.application.walk() if menu.role == "menu item"]
                self.assertEqual(names[0], first_menu)

    def test_an_installed_program_does_without_its_start_document(self):
        program_folder = os.path.join(self.folder, "bin")
        os.mkdir(program_folder)
        for part in (program_path, program_path + "-voice-helper"):
            shutil.copy(part, program_folder)
        source = os.path.join(os.path.dirname(__file__), "..", "..", "share")
        shutil.copytree(source, os.path.join(self.folder, "share", "tessavox"),
                        ignore=shutil.ignore_patterns("first.txt"))
        program = self.start(path=os.path.join(program_folder, "tessavox"))
        self.assertEqual(program.messages, [])
        self.assertEqual(self.pane.text, "")
        self.begin_to_read(program)
        self.check_words_move_to_the_end(program)
