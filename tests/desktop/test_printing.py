"""Printing on the default printer, measured on the pages that its queue was given."""

import glob
import os
import re
import signal
import tempfile
import time
import unittest

import servers
from bed import Program, forget_settings, keys, wait_for
from test_web import WORDS, Server, WebPane, output_of

HALF_AN_INCH = 36  # points


class Printing(unittest.TestCase):
    def setUp(self):
        forget_settings()
        folder = self.enterContext(tempfile.TemporaryDirectory())
        self.server, address, self.spool = servers.start_print_server(folder, os.environ)
        self.addCleanup(self.server.kill)
        self.program = self.enterContext(Program(CUPS_SERVER=address))

    def print(self):
        """Returns the path of the document that the printer has got."""
        before = set(glob.glob(self.spool + "/d*"))
        keys("ctrl+p")

        def arrived():
            new = set(glob.glob(self.spool + "/d*")) - before
            return new and output_of("tail", "-c", "6", min(new)).strip() == "%%EOF" and min(new)
        return wait_for(arrived, "the printer has got the text")

    def test_all_of_the_text_comes_on_pages_with_margins_of_half_an_inch(self):
        pane = self.program.text_pane()
        pane.text = "\n".join(f"{number} " + "nearly every line is as long as the paper is wide " * 3
                              for number in range(200))
        path = self.print()
        self.assertEqual(output_of("pdftotext", path, "-").split(), pane.text.split())
        edges = []
        for page in output_of("pdftotext", "-bbox", path, "-").split("<page ")[1:]:
            width, height, left, top, right, bottom = (
                [float(value) for value in re.findall(name + '="([0-9.]+)"', page)]
                for name in ("width", "height", "xMin", "yMin", "xMax", "yMax"))
            edges.append((min(left), min(top), width[0] - max(right), height[0] - max(bottom)))
        self.assertGreater(len(edges), 3)
        for left, top, right, bottom in edges:
            self.assertAlmostEqual(left, HALF_AN_INCH, delta=2)
            self.assertGreaterEqual(min(top, right, bottom), HALF_AN_INCH - 2)
        for side, room in ((1, 4), (2, 40), (3, 24)):
            self.assertLess(max(edge[side] for edge in edges[:-1]), HALF_AN_INCH + room)
        pane.text = ""
        path = self.print()
        self.assertRegex(output_of("pdfinfo", path), r"Pages: +1\n")
        self.assertEqual(output_of("pdftotext", path, "-").strip(), "")

    def test_a_page_of_the_web_prints_itself(self):
        server = self.enterContext(Server())
        WebPane(self.program, server)
        wait_for(lambda: "/loaded/one" in server.asked, "the page")
        self.program.read()
        self.program.wait_until_idle()  # the words that were selected have brought the command back
        self.assertEqual(output_of("pdftotext", self.print(), "-").split(), WORDS.split())

    def test_a_printer_that_hangs_or_vanishes_leaves_everything_as_it_was(self):
        self.print()
        for end in signal.SIGSTOP, signal.SIGKILL:
            self.server.process.send_signal(end)
            self.program.text_pane().text = "after it nothing else has changed"
            begin = time.monotonic()
            keys("ctrl+p")
            self.assertEqual(len(self.program.follow_reading()), 7)
            self.assertLess(time.monotonic() - begin, 20)  # of which the server has two
            self.assertIsNone(self.program.message())
