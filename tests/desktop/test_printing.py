"""Printing on the default printer, measured on the pages that its queue was given."""

import glob
import os
import re
import subprocess
import tempfile
import unittest

import servers
from bed import Program, forget_settings, keys, wait_for
from test_web import Server, WebPane

HALF_AN_INCH = 36  # points


def output_of(*command):
    return subprocess.run(command, check=True, text=True, capture_output=True).stdout


class Printing(unittest.TestCase):
    def setUp(self):
        forget_settings()
        folder = self.enterContext(tempfile.TemporaryDirectory())
        self.server, address, self.spool = servers.start_print_server(folder, os.environ)
        self.addCleanup(self.server.stop)
        self.program = self.enterContext(Program(CUPS_SERVER=address))
        self.pane = self.program.text_pane()

    def print_text(self, text):
        """Returns the path of the document that the printer has got."""
        self.pane.text = text
        return self.print()

    def print(self):
        before = set(glob.glob(self.spool + "/d*"))
        keys("ctrl+p")

        def arrived():
            new = set(glob.glob(self.spool + "/d*")) - before
            return new and output_of("tail", "-c", "6", min(new)).strip() == "%%EOF" and min(new)
        return wait_for(arrived, "the printer has got the text")

    def test_all_of_the_text_comes_on_pages_with_margins_of_half_an_inch(self):
        text = "\n".join(f"{number} " + "nearly every line is as long as the paper is wide " * 3
                         for number in range(200))
        path = self.print_text(text)
        self.assertEqual(output_of("pdftotext", path, "-").split(), text.split())
        pages = output_of("pdftotext", "-bbox", path, "-").split("<page ")[1:]
        self.assertGreater(len(pages), 3)
        edges = []
        for page in pages:
            numbers = {name: [float(value) for value in re.findall(name + '="([0-9.]+)"', page)]
                       for name in ("width", "height", "xMin", "yMin", "xMax", "yMax")}
            edges.append((min(numbers["xMin"]), min(numbers["yMin"]),
                          numbers["width"][0] - max(numbers["xMax"]),
                          numbers["height"][0] - max(numbers["yMax"])))
        for left, top, right, bottom in edges:
            self.assertAlmostEqual(left, HALF_AN_INCH, delta=2)
            self.assertGreaterEqual(min(top, right, bottom), HALF_AN_INCH - 2)
        full = edges[:-1]
        self.assertLess(max(top for _, top, _, _ in full), HALF_AN_INCH + 4)
        self.assertLess(min(right for _, _, right, _ in full), HALF_AN_INCH + 40)
        self.assertLess(max(bottom for _, _, _, bottom in full), HALF_AN_INCH + 24)

    def test_an_empty_document_is_one_empty_page(self):
        path = self.print_text("")
        self.assertRegex(output_of("pdfinfo", path), r"Pages: +1\n")
        self.assertEqual(output_of("pdftotext", path, "-").strip(), "")

    def test_a_page_of_the_web_prints_itself(self):
        server = Server()
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        WebPane(self.program, server)
        wait_for(lambda: "/loaded/one" in server.asked, "the page")
        self.program.read()
        self.program.wait_until_idle()  # the words that were selected have brought the command back
        path = self.print()
        self.assertRegex(output_of("pdfinfo", path), r"Pages: +1\n")
        self.assertGreater(os.path.getsize(path), 3000)

    def test_a_printer_that_vanishes_leaves_everything_as_it_was(self):
        self.print_text("before")
        self.server.kill()
        self.pane.text = "after it nothing else has changed"
        keys("ctrl+p")
        self.assertEqual(len(self.program.follow_reading()), 7)
        self.assertIsNone(self.program.message())


if __name__ == "__main__":
    unittest.main()
