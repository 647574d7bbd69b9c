"""The web view: pages of a server of its own are shown, read word for word, and kept in their place."""

import http.server
import os
import socket
import subprocess
import tempfile
import threading
import time
import unittest

from bed import (Program, Recorder, TextPane, config_folder, forget_settings, keys,
                 type_text, wait_for, xdotool)

TELL = "<script>onload = () => fetch('/loaded' + location.pathname)</script>"
WORDS = "The quick brown fox jumps over the lazy dog."


def page(body, head=""):
    return ("text/html; charset=utf-8", f"<!doctype html><title>t</title>{head}{TELL}{body}".encode())


def pdf(text):
    """A document of one page."""
    stream = f"BT /F 24 Tf 72 720 Td ({text}) Tj ET".encode()
    objects = [b"<</Type/Catalog/Pages 2 0 R>>", b"<</Type/Pages/Kids[3 0 R]/Count 1>>",
               b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Contents 4 0 R"
               b"/Resources<</Font<</F 5 0 R>>>>>>",
               b"<</Length %d>>stream\n%s\nendstream" % (len(stream), stream),
               b"<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>"]
    document, places = b"%PDF-1.4\n", []
    for number, content in enumerate(objects, 1):
        places.append(len(document))
        document += b"%d 0 obj%s endobj\n" % (number, content)
    table = b"".join(b"%010d 00000 n \n" % place for place in places)
    return document + (b"xref\n0 6\n0000000000 65535 f \n%strailer<</Size 6/Root 1 0 R>>\n"
                       b"startxref\n%d\n%%%%EOF" % (table, len(document)))


PAGES = {
    "/plain": page(f"<h1>A title</h1><p>{WORDS}</p>"),
    "/one": page(f"<p>{WORDS}</p>"),
    "/umlauts": page("<p>Zwölf Boxkämpfer jagen Viktor quer über den großen Sylter Deich.</p>"),
    "/right-to-left": page("<p dir=rtl>דג סקרן שט בים מאוכזב ולפתע מצא חברה</p>"),
    "/form": page("<p>Your name:</p><form><input value='Somebody' autofocus></form><p>Thank you.</p>"),
    "/alerts": page(f"<p>{WORDS}</p>", "<script>setTimeout(() => { for (;;) alert('more'); }, 300)"
                                       "</script>"),
    "/hangs": page(f"<p>{WORDS}</p>", "<script>setTimeout(() => { for (;;); }, 300)</script>"),
    "/seizes": page(f"<p>{WORDS}</p>", "<script>setInterval(() => { navigator.clipboard?.writeText("
                                       "'seized'); document.execCommand('copy'); open('/plain'); "
                                       "print(); location = 'mailto:a@b' }, 50)</script>"),
    "/a.pdf": ("application/pdf", pdf("Words of a document.")),
    "/broken.pdf": ("application/pdf", b"%PDF-1.4\nnothing of use"),
}


class Server(http.server.ThreadingHTTPServer):
    def __init__(self):
        super().__init__(("127.0.0.1", 0), Pages)
        self.asked = []
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def address(self, path):
        return f"http://127.0.0.1:{self.server_address[1]}{path}"


class Pages(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.server.asked.append(self.path)
        if self.path == "/endless":
            self.send_response(302)
            self.send_header("Location", "/endless")
            return self.end_headers()
        kind, content = PAGES.get(self.path, ("text/plain", b""))
        self.send_response(200)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(content)))
        self.end_headers()
        self.wfile.write(content)

    def log_message(self, *_):
        pass


def clipboard():
    return subprocess.run(["timeout", "5", "xclip", "-o", "-selection", "clipboard"], text=True,
                          capture_output=True).stdout


def copy(text):
    subprocess.run(["xclip", "-selection", "clipboard", "-i"], check=True, input=text.encode())


class WebPane:
    """The web view of the active document, showing pages of a server."""

    def __init__(self, program, server):
        self.program, self.server = program, server
        settings = os.path.join(config_folder, "setting1.txt")
        with open(settings, newline="") as file:
            lines = file.read().split("\r\n")
        lines[5] = server.address("/one")  # which the tab leads to
        with open(settings, "w", newline="") as file:
            file.write("\r\n".join(lines))
        self.tab("Web")
        self.box = program.find("combo box", description="Address of the page")

    def tab(self, name):
        self.program.find("page tab", name).press()

    def address(self):
        return TextPane(self.box.children()[1].node).text

    def go(self, address):
        self.box.click()
        keys("ctrl+a")
        type_text(address)
        keys("Return")

    def show(self, path):
        """Shows a page of the server and waits for it."""
        self.server.asked.clear()
        self.go(self.server.address(path))
        wait_for(lambda: "/loaded" + path in self.server.asked, f"{path} is loaded")
        wait_for(lambda: self.address() == self.server.address(path), "the box follows")

    def click_at(self, x, y, times=1):
        """Clicks that far from the upper left corner of the page."""
        left, top, _, _ = self.program.find("filler", "Web").box
        xdotool("mousemove", left + x, top + y, "click", "--repeat", times, "--delay", 20, 1)

    def copied(self):
        """The words that the user's own keys copy out of the page."""
        copy("nothing")
        self.click_at(300, 500)
        keys("ctrl+a", "ctrl+c")
        try:
            wait_for(lambda: clipboard() != "nothing", "the copy", 1)
        except AssertionError:
            return []  # there is no page yet
        return clipboard().split()

    def read(self):
        """Reads the page; returns the words handed to the voice, which stay on the clipboard."""
        self.program.read()
        spoken = clipboard()
        self.program.button("Stop").press()
        self.program.wait_until_idle()
        return spoken.split()


class WebBed(unittest.TestCase):
    environment = {}

    def setUp(self):
        forget_settings()
        self.server = Server()
        self.addCleanup(self.server.server_close)
        self.addCleanup(self.server.shutdown)
        self.program = self.enterContext(Program(**self.environment))
        self.program.find("check box").press()  # what is copied isn't read
        self.text = self.program.text_pane().text
        self.web = WebPane(self.program, self.server)
        if not self.environment:
            wait_for(lambda: "/loaded/one" in self.server.asked, "the first page")

    def check_alive(self):
        self.web.tab("Text")
        self.assertEqual(self.program.text_pane().text, self.text)
        self.assertIsNone(self.program.message())


class Web(WebBed):
    def test_pages_are_read_word_for_word(self):
        rows = {"/plain": "A title " + WORDS, "/form": "Your name: Somebody Thank you.",
                "/umlauts": "Zwölf Boxkämpfer jagen Viktor quer über den großen Sylter Deich.",
                "/right-to-left": "דג סקרן שט בים מאוכזב ולפתע מצא חברה"}
        for path, words in rows.items():
            with self.subTest(path):
                self.web.show(path)
                copy("what the user had there")
                self.assertEqual(self.web.read(), words.split())
                self.assertEqual(self.web.read(), words.split())  # selected by now
                self.web.show(path)
                self.assertEqual(self.web.read(), words.split())  # anew

    def test_a_selected_word_is_all_that_is_read(self):
        self.web.show("/plain")
        self.web.click_at(70, 40, 2)
        self.assertEqual(self.web.read(), ["title"])

    def test_a_page_is_spoken_and_saved_in_its_length(self):
        self.web.show("/one")
        with tempfile.TemporaryDirectory() as folder:
            by_the_engine, path = os.path.join(folder, "reference"), os.path.join(folder, "page.wav")
            subprocess.run(["espeak-ng", "-v", "gmw/en-US", "-w", by_the_engine,
                            WORDS], check=True)
            self.program.button("Read to File").press()
            self.program.choose_file(path)
            self.program.answer(self.program.wait_for_message())
            seconds = [float(subprocess.run(["soxi", "-D", file], check=True, text=True,
                                            capture_output=True).stdout)
                       for file in (by_the_engine, path)]
        self.assertAlmostEqual(seconds[0], seconds[1], delta=0.1 * seconds[0])
        with Recorder() as recorder:
            begin = recorder.position()
            self.program.read()
            self.program.wait_until_idle()
            heard = (recorder.position() - begin) / recorder.rate
        self.assertAlmostEqual(heard, seconds[0], delta=0.2 * seconds[0])

    def test_addresses_are_kept_as_they_came(self):
        for path in ("/plain", "/umlauts", "/plain"):
            self.web.show(path)
        self.program.close()
        addresses = [self.server.address(path) for path in ("/plain", "/umlauts")]
        with open(os.path.join(config_folder, "setting3.txt"), "rb") as file:
            self.assertEqual(file.read().decode(), "\r\n".join(['"', *addresses, '"', ""]))
        with open(os.path.join(config_folder, "setting1.txt"), "rb") as file:
            self.assertEqual(file.read().split(b"\r\n")[5].decode(), addresses[0])

    def test_back_forward_and_refresh(self):
        self.web.show("/plain")
        self.web.show("/umlauts")
        for button, path in (("Back", "/plain"), ("Forward", "/umlauts"), ("Refresh", "/umlauts")):
            self.server.asked.clear()
            self.program.button(button).press()
            wait_for(lambda: self.web.address() == self.server.address(path), button)
        wait_for(lambda: "/umlauts" in self.server.asked, "asked for again")

    def test_of_a_pdf_what_the_user_has_copied_is_read(self):
        self.web.go(self.server.address("/a.pdf"))
        words = ["Words", "of", "a", "document."]
        wait_for(lambda: self.web.copied() == words, "the document")
        self.assertEqual(self.web.address(), self.server.address("/a.pdf"))
        self.assertEqual(self.web.read(), words)
        copy("copied elsewhere")
        self.assertEqual(self.web.read(), ["copied", "elsewhere"])

    def test_bad_pages_leave_the_window_and_its_text_alone(self):
        self.web.go(self.server.address("/broken.pdf"))
        wait_for(lambda: "cannot be shown" in " ".join(self.web.copied()), "a plain message")
        for path in ("/alerts", "/hangs", "/seizes"):
            with self.subTest(path):
                self.web.show(path)
                copy("the user's")
                time.sleep(0.5)  # what the page does begins after its load
                begin = time.monotonic()
                self.program.button("Read").press()
                stop = self.program.find_all("push button", "Stop")[0]
                wait_for(lambda: stop.enabled or path != "/seizes", "the reading begins")
                self.assertLess(time.monotonic() - begin, 5)
                self.assertNotIn("seized", clipboard())
                self.check_alive()
                self.web.tab("Web")
        with socket.create_server(("127.0.0.1", 0)) as nobody:
            shut = f"http://127.0.0.1:{nobody.getsockname()[1]}/"
        for address in (self.server.address("/endless"), shut, "nowhere.invalid"):
            with self.subTest(address):
                self.web.go(address)
                wait_for(lambda: address in self.web.address(), "the box follows")
        self.check_alive()


class WithoutTheEngine(WebBed):
    """A library that can't be loaded stands for one that isn't installed."""

    def setUp(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        open(os.path.join(folder, "libQt6WebEngineCore.so.6"), "wb").close()
        self.environment = {"LD_LIBRARY_PATH": folder}
        super().setUp()

    def test_the_pane_says_so(self):
        wait_for(lambda: any(label.name.startswith("Web pages cannot be shown: the web engine could "
                                                   "not be loaded") and label.showing
                             for label in self.program.find_all("label")), "a plain message")
        self.check_alive()


if __name__ == "__main__":
    unittest.main()
