"""The web view: pages of a server of its own are shown, read word for word, and kept in their place."""

import http.server
import os
import pathlib
import socket
import ssl
import subprocess
import tempfile
import threading
import time
import unittest

from bed import (SILENCE_PEAK, Program, Recorder, TextPane, config_folder, forget_settings, keys,
                 type_text, wait_for, xdotool)

WORDS = "The quick brown fox jumps over the lazy dog."
SPOKEN = {"/plain": "A title " + WORDS, "/form": "Your name: Somebody Thank you.",
          "/umlauts": "Zwölf Boxkämpfer jagen Viktor quer über den großen Sylter Deich.",
          "/right-to-left": "דג סקרן שט בים מאוכזב ולפתע מצא חברה"}
LINKS = ("href=/file.bin", "href=file:///etc/passwd", "href=/plain target=_blank",
         "href=\"javascript:void open('/umlauts')\"")  # only the last two go anywhere
BAD = {"/alerts": "setTimeout(() => { for (;;) alert('more'); }, 300)",
       "/hangs": "setTimeout(() => { for (;;); }, 300)",
       "/keeps": "onbeforeunload = event => event.returnValue = 'stay'",
       "/seizes": """setInterval(() => { navigator.clipboard?.writeText('seized'); print();
           document.execCommand('copy'); open('/plain'); location = 'mailto:a@b' }, 50)"""}
PDF = b"""%PDF-1.4
1 0 obj<</Pages 2 0 R>>endobj 2 0 obj<</Kids[3 0 R]/Count 1>>endobj
3 0 obj<</MediaBox[0 0 612 792]/Contents 4 0 R/Resources<</Font<</F 5 0 R>>>>>>endobj
4 0 obj<</Length 52>>stream
BT /F 24 Tf 72 720 Td (Words of a document.) Tj ET
endstream endobj
5 0 obj<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>endobj trailer<</Root 1 0 R>>"""


def page(body, script=""):
    return ("text/html; charset=utf-8", f"""<!doctype html><title>t</title><script>
        onload = () => fetch('/loaded' + location.pathname);{script}</script>{body}""".encode())


PAGES = {
    "/plain": page(f"<h1>A title</h1><p>{WORDS}</p>"),
    "/form": page("<p>Your name:</p><form><input value='Somebody' autofocus></form><p>Thank you.</p>"),
    "/umlauts": page(f"<p>{SPOKEN['/umlauts']}</p>"),
    "/right-to-left": page(f"<p dir=rtl>{SPOKEN['/right-to-left']}</p>"),
    "/one": page(f"<p>{WORDS}</p>"),
    "/links": page("".join(f"<p><a style='font-size:60px' {link}>link</a></p>" for link in LINKS)),
    "/file.bin": ("application/octet-stream", b"refused"),
    "/reaches": page("<iframe src=file:///etc/hostname></iframe><p id=p>", """
        addEventListener('load', async () => {
            let inside = '';
            try { inside = frames[0].document.body.textContent; } catch { }
            const [asked] = await Promise.allSettled([fetch('file:///etc/hostname')]);
            p.textContent = asked.status + ' ' + typeof qt + inside;
        })"""),
    **{path: page(f"<p>{WORDS}</p>", script) for path, script in BAD.items()},
    "/a.pdf": ("application/pdf", PDF),
    "/broken.pdf": ("application/pdf", b"%PDF-1.4\nnothing of use"),
}


class Server(http.server.ThreadingHTTPServer):
    def __init__(self, context=None):
        super().__init__(("127.0.0.1", 0), Pages)
        self.asked, self.scheme = [], "https" if context else "http"
        if context:
            self.socket = context.wrap_socket(self.socket, server_side=True)
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def __exit__(self, *reason):
        self.shutdown()
        super().__exit__(*reason)

    def address(self, path):
        return f"{self.scheme}://127.0.0.1:{self.server_address[1]}{path}"


class Pages(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.server.asked.append(self.path)
        kind, content = PAGES.get(self.path, ("text/plain", b""))
        self.send_response(302 if self.path == "/endless" else 200)
        self.send_header("Location", "/endless")
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(content)))
        self.end_headers()
        self.wfile.write(content)

    def log_message(self, *_):
        pass


def output_of(*command, **options):
    return subprocess.run([*map(str, command)], check=True, text=True, stdout=-1, **options).stdout


def clipboard():
    return subprocess.run(["timeout", "5", "xclip", "-o", "-selection", "clipboard"], text=True,
                          capture_output=True).stdout


def copy(text):
    subprocess.run(["xclip", "-selection", "clipboard", "-i"], check=True, input=text.encode())


class WebPane:
    """The web view of the active document, showing pages of a server."""

    def __init__(self, program, server):
        self.program, self.server = program, server
        settings = pathlib.Path(config_folder, "setting1.txt")
        lines = settings.read_bytes().split(b"\r\n")
        lines[5] = server.address("/one").encode()  # which the tab leads to
        settings.write_bytes(b"\r\n".join(lines))
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
        wait_for(lambda: str(address) in self.address(), "the box follows")

    def show(self, path):
        """Shows a page of the server and waits for it."""
        self.server.asked.clear()
        self.go(self.server.address(path))
        wait_for(lambda: "/loaded" + path in self.server.asked, f"{path} is loaded")

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
            pass  # there is no page yet
        return " ".join(clipboard().split())

    def read(self):
        """Reads the page; returns the words handed to the voice, which stay on the clipboard."""
        self.program.read()
        spoken = clipboard()
        self.program.button("Stop").press()
        self.program.wait_until_idle()
        return " ".join(spoken.split())


class Web(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.server = self.enterContext(Server())

    def start(self, has_engine=True, **environment):
        forget_settings()
        self.program = self.enterContext(Program(**environment))
        self.program.find("check box").press()  # what is copied isn't read
        self.text = self.program.text_pane().text
        self.web = WebPane(self.program, self.server)
        wait_for(lambda: "/loaded/one" in self.server.asked or not has_engine, "the first page")

    def check_alive(self):
        self.web.tab("Text")
        self.assertEqual(self.program.text_pane().text, self.text)
        self.assertIsNone(self.program.message())

    def test_pages_are_read_word_for_word(self):
        self.start()
        for path, words in [*SPOKEN.items()] * 2:
            with self.subTest(path):
                self.web.show(path)
                copy("what the user had there")
                self.assertEqual([self.web.read(), self.web.read()], [words] * 2)  # all is selected
        self.program.find("label", words)  # which screen readers find as well
        self.web.show("/plain")
        self.web.click_at(70, 40, 2)
        self.assertEqual(self.web.read(), "title")

    def test_a_page_is_spoken_and_saved(self):
        self.start()
        wanted, wave = self.folder / "wanted", self.folder / "wave"
        output_of("espeak-ng", "-v", "gmw/en-US", "-w", wanted, WORDS)
        self.program.button("Read to File").press()
        self.program.choose_file(str(wave))
        self.program.answer(self.program.wait_for_message())
        with Recorder() as recorder:
            self.program.read()
            self.program.wait_until_idle()
            loud = [at for at, sample in enumerate(recorder.samples()) if abs(sample) > SILENCE_PEAK]
        wanted, saved = (float(output_of("soxi", "-D", file)) for file in (wanted, wave))
        self.assertAlmostEqual(saved, wanted, delta=0.1 * wanted)
        self.assertAlmostEqual((loud[-1] - loud[0]) / recorder.rate, wanted, delta=0.15 * wanted)
        for path in self.folder / "a.txt", self.folder / "a.html":
            keys("ctrl+s")  # which the reading has brought back
            self.program.choose_file(str(path))
            wait_for(lambda: path.exists() and WORDS in path.read_text(), "the page is saved")

    def test_addresses_are_kept_as_they_came(self):
        self.start()
        first, second = (self.server.address(path) for path in ("/plain", "/umlauts"))
        for path in ("/plain", "/umlauts") * 2:
            self.web.show(path)
        for button, address in (("Back", first), ("Forward", second), ("Refresh", second)):
            self.server.asked.clear()
            self.program.button(button).press()
            wait_for(lambda: self.web.address() == address, button)
        wait_for(lambda: "/umlauts" in self.server.asked, "asked for again")
        self.program.close()
        kept = [pathlib.Path(config_folder, name).read_bytes().decode()
                for name in ("setting3.txt", "setting1.txt")]
        self.assertEqual(kept[0], "\r\n".join(['"', first, second, '"', ""]))
        self.assertEqual(kept[1].split("\r\n")[5], second)

    def test_of_a_pdf_what_the_user_has_copied_is_read(self):
        self.start()
        self.web.read()  # with which the Edit menu has its keys back
        self.web.go(self.server.address("/a.pdf"))
        wait_for(lambda: self.web.copied() == "Words of a document.", "the document")
        self.assertEqual(self.web.address(), self.server.address("/a.pdf"))
        self.assertEqual(self.web.read(), "Words of a document.")
        copy("copied elsewhere")
        self.assertEqual(self.web.read(), "copied elsewhere")

    def test_bad_pages_leave_the_window_and_its_text_alone(self):
        self.start()
        self.web.go(self.server.address("/broken.pdf"))
        wait_for(lambda: "cannot be shown" in self.web.copied(), "a plain message")
        for path in BAD:
            with self.subTest(path):
                self.web.show(path)
                copy("the user's")
                time.sleep(0.5)  # what the page does begins after its load
                self.web.click_at(300, 500)
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
            self.web.go(address)
        self.check_alive()

    def test_pages_reach_neither_files_nor_windows_nor_the_program(self):
        browser, opened, page_file = (self.folder / name for name in ("browser", "opened", "a.html"))
        browser.write_text(f'#!/bin/sh\necho "$1" >>{opened}\n')
        browser.chmod(0o755)
        opened.touch()
        page_file.write_bytes(PAGES["/reaches"][1])
        self.start(BROWSER=str(browser))
        for address in self.server.address("/reaches"), str(page_file):
            self.web.go(address)
            wait_for(lambda: self.web.read() == "rejected undefined", address)
        self.web.show("/links")
        for number in range(len(LINKS)):
            self.web.click_at(60, 50 + 86 * number)
        outside = [self.server.address(path) for path in ("/plain", "/umlauts")]
        wait_for(lambda: opened.read_text().split() == outside, "the desktop has both")
        self.assertIn("/file.bin", self.server.asked)
        self.assertFalse([*pathlib.Path.home().rglob("file.bin")])
        for process in output_of("pgrep", "-u", os.geteuid(), "-f", "Process --type=renderer").split():
            self.assertIn(f"Seccomp:\t{2 if os.geteuid() else 0}",  # root shows pages in a test bed
                          pathlib.Path("/proc", process, "status").read_text())

    def test_a_certificate_of_nobody_is_refused(self):
        output_of("openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=a", "-out",
                  self.folder / "sign", "-keyout", self.folder / "key", stderr=subprocess.DEVNULL)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(self.folder / "sign", self.folder / "key")
        self.start()
        server = self.enterContext(Server(context))
        self.web.go(server.address("/one"))
        wait_for(lambda: "ERR_CERT_AUTHORITY_INVALID" in self.web.read(), "the engine's own page")
        self.assertEqual(server.asked, [])

    def test_without_the_engine_the_pane_says_so(self):
        (self.folder / "libQt6WebEngineCore.so.6").touch()  # stands for one that isn't installed
        self.start(has_engine=False, LD_LIBRARY_PATH=str(self.folder))
        wait_for(lambda: any(label.name.startswith("Web pages cannot be shown: the web engine could "
                                                   "not be loaded") and label.showing
                             for label in self.program.find_all("label")), "a plain message")
        self.check_alive()


if __name__ == "__main__":
    unittest.main()
