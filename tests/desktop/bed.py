"""Drives the program from outside, as a user does: accessibility tree, mouse, keys, sound.

For use inside with_desktop. The program is named by TESSAVOX_PROGRAM."""

import array
import os
import shutil
import subprocess
import tempfile
import time
import wave

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

POLL_SECONDS = 0.005
# A bound for everything that is waited for; a sanitized build on a busy machine is slow.
PATIENCE_SECONDS = 30
RECORDER_RATE = 16000
SILENCE_PEAK = 100  # of 32767; speech peaks lie above 3000
SAVE_QUESTION = "This document has been changed. Do you wish to save?"

program_path = os.environ.get("TESSAVOX_PROGRAM", "")
config_folder = os.path.join(os.environ.get("XDG_CONFIG_HOME", ""), "tessavox", "conf")


def forget_settings():
    """Makes the next start a first one. A program that was killed still counts as running."""
    shutil.rmtree(config_folder, ignore_errors=True)


def holds(condition):
    """The value of condition(); an accessible that has just gone counts as false."""
    try:
        return condition()
    except GLib.Error:
        return False


def wait_for(condition, what, seconds=PATIENCE_SECONDS):
    """Returns the first true value of condition()."""
    end = time.monotonic() + seconds
    while True:
        value = holds(condition)
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"not within {seconds} s: {what}")
        time.sleep(POLL_SECONDS)


def xdotool(*arguments):
    return subprocess.run(["xdotool", *map(str, arguments)], check=True, text=True,
                          capture_output=True).stdout


def keys(*names):
    """Presses keys by their names, "Return" or "ctrl+a", in the window that has the focus."""
    xdotool("key", "--clearmodifiers", *names)


def type_text(text):
    xdotool("type", "--clearmodifiers", "--delay", "5", text)


def screenshot(path):
    subprocess.run(["import", "-window", "root", path], check=True)


class Control:
    """A node of the accessibility tree. Everything is asked anew each time."""

    def __init__(self, node):
        self.node = node

    role = property(lambda self: self.node.get_role_name())
    name = property(lambda self: self.node.get_name())
    description = property(lambda self: self.node.get_description())
    enabled = property(lambda self: self.has(Atspi.StateType.ENABLED))
    showing = property(lambda self: self.has(Atspi.StateType.SHOWING, Atspi.StateType.VISIBLE))
    checked = property(lambda self: self.has(Atspi.StateType.CHECKED))
    value = property(lambda self: Atspi.Value.get_current_value(self.node))

    def children(self):
        nodes = (self.node.get_child_at_index(i) for i in range(self.node.get_child_count()))
        return [Control(node) for node in nodes if node]

    def walk(self):
        yield self
        if self.role != "combo box":  # its entries are many, and never looked for this way
            for child in self.children():
                yield from child.walk()

    def has(self, *states):
        found = self.node.get_state_set()
        return all(found.contains(state) for state in states)

    @property
    def box(self):
        """Left, top, width, height on the screen."""
        box = Atspi.Component.get_extents(self.node, Atspi.CoordType.SCREEN)
        return box.x, box.y, box.width, box.height

    def click(self, button=1):
        left, top, width, height = self.box
        xdotool("mousemove", left + width // 2, top + height // 2, "click", button)

    def press(self):
        """Clicks it with the mouse as soon as it can be clicked."""
        wait_for(lambda: self.showing and self.enabled, f"'{self.name}' can be pressed")
        self.click()

    def press_until(self, condition, what):
        """Presses it again if nothing comes of it: a click is lost on a window that is just being
        placed, and a slow program takes the late end of a click for another one."""
        for seconds in (5, 5, PATIENCE_SECONDS):
            if not holds(condition):
                self.press()
            try:
                return wait_for(condition, what, seconds)
            except AssertionError as failure:
                missed = failure
        raise missed

    def drag_to_end(self, direction):
        """Drags the thumb of a scroll bar to the left (-1) or right (1) end."""
        left, top, width, height = self.box
        lowest = Atspi.Value.get_minimum_value(self.node)
        share = (self.value - lowest) / (Atspi.Value.get_maximum_value(self.node) - lowest)
        ends = 25  # the arrow and half the thumb
        x, y = int(left + ends + share * (width - 2 * ends)), top + height // 2
        xdotool("mousemove", x, y, "mousedown", 1)
        # A bar follows the pointer only after it has seen it move.
        for step in (5, 10, width):
            xdotool("mousemove", "--", max(0, x + direction * step), y)
        xdotool("mouseup", 1)

    def choose(self, index):
        """Chooses an entry of a list by its position, with mouse and keys: -1 is the last one.
        Returns its text."""
        entries = self.children()[0]
        count = entries.node.get_child_count() if index < 0 else 0
        entry = Control(entries.node.get_child_at_index(count + index)).name
        self.press_until(lambda: entries.showing, "the open list")
        keys(*(["End", *["Up"] * (-1 - index)] if index < 0 else ["Home", *["Down"] * index]),
             "Return")
        wait_for(lambda: not entries.showing and self.name == entry, f"'{entry}' is chosen")
        return entry


class TextPane(Control):
    @property
    def text(self):
        return Atspi.Text.get_text(self.node, 0, Atspi.Text.get_character_count(self.node))

    @text.setter
    def text(self, text):
        Atspi.EditableText.set_text_contents(self.node, text)
        wait_for(lambda: self.text == text, "the new text")

    @property
    def caret(self):
        return Atspi.Text.get_caret_offset(self.node)

    @caret.setter
    def caret(self, offset):
        if Atspi.Text.get_n_selections(self.node):
            Atspi.Text.remove_selection(self.node, 0)
        Atspi.Text.set_caret_offset(self.node, offset)
        wait_for(lambda: self.selection == (offset, offset), f"the caret at {offset}")

    @property
    def selection(self):
        """Its begin and end, both the caret where nothing is selected."""
        if not Atspi.Text.get_n_selections(self.node):
            return (self.caret, self.caret)
        found = Atspi.Text.get_selection(self.node, 0)
        return (found.start_offset, found.end_offset)

    @property
    def selected(self):
        begin, end = self.selection
        return self.text[begin:end]

    def select(self, begin, end):
        self.caret = begin
        Atspi.Text.add_selection(self.node, begin, end)
        wait_for(lambda: self.selection == (begin, end), f"a selection from {begin} to {end}")


class Program:
    """The running program. Use it in a `with` statement, which ends it.

    Messages at its start are answered with OK; `messages` has their texts."""

    def __init__(self, *arguments, path=None, **environment):
        command = [path or program_path, *arguments]
        self.process = subprocess.Popen(command, env=dict(os.environ, **environment))
        self.messages = []
        self.application = wait_for(self._find, "the program shows up in the accessibility tree")
        wait_for(self._started, "its window is shown")

    def _find(self):
        assert self.process.poll() is None, f"the program ended with {self.process.returncode}"
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            node = desktop.get_child_at_index(i)
            if node and node.get_process_id() == self.process.pid:
                # Nobody runs the main loop that would keep a cache up to date.
                node.set_cache_mask(Atspi.Cache.NONE)
                return Control(node)
        return None

    def _started(self):
        message = self.message()
        if message:
            self.messages.append(self.answer(message))
        return self.main_window() and self.main_window().has(Atspi.StateType.ACTIVE)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()

    def main_window(self):
        return next((top for top in self.application.children() if top.role == "frame"), None)

    def shown(self, is_wanted):
        """The first such window that is shown, if any."""
        return next((top for top in self.application.children()
                     if is_wanted(top) and top.showing), None)

    def message(self):
        """The message box that is shown, if any."""
        return self.shown(lambda top: top.role == "alert")

    def dialog(self, title):
        """The dialog of that title, once it is shown."""
        return wait_for(lambda: self.shown(lambda top: top.name == title), f"the dialog '{title}'")

    def file_dialog(self):
        """The file dialog that is shown, whatever its title."""
        return wait_for(lambda: self.shown(lambda top: top.role in ("dialog", "file chooser")),
                        "a file dialog")

    def choose_file(self, path):
        """Answers the file dialog that is shown, or about to be."""
        wait_for(lambda: self.file_dialog().has(Atspi.StateType.ACTIVE), "keys reach the dialog")
        type_text(path)
        keys("Return")

    def wait_for_message(self):
        return wait_for(self.message, "a message")

    def answer(self, message, button="OK"):
        """Presses a button of a message box. Returns the message's text."""
        text = " ".join(part.name for part in message.walk() if part.role == "label" and part.name)
        pressed = next(part for part in message.walk()
                       if part.role == "push button" and part.name.replace("&", "") == button)

        def gone():
            shown = self.message()
            return not shown or shown.node != message.node
        pressed.press_until(gone, f"the message '{text}' goes away")
        return text

    def find_all(self, role, name=None, description=""):
        """The controls of that kind and name whose description begins with `description`."""
        return [control for control in self.application.walk()
                if control.role == role and name in (None, control.name)
                and control.description.startswith(description)]

    def find(self, role, name=None, description=""):
        """The shown control of that kind; waits until there is one."""
        return wait_for(lambda: next((control for control in self.find_all(role, name, description)
                                      if control.showing), None),
                        f"a {role} '{name or description}' is shown")

    def button(self, name):
        return self.find("push button", name)

    def read(self, button="Read"):
        # Looked for before, or the first words would pass meanwhile.
        start, stop = self.button(button), self.find_all("push button", "Stop")[0]
        start.press()
        wait_for(lambda: stop.enabled, "the reading begins")

    def text_pane(self):
        return TextPane(self.find("text").node)

    def panel(self, start):
        """The text of the status bar panel that begins with `start`, "" if there is none."""
        return next((control.name for control in self.find_all("label")
                     if control.name.startswith(start)), "")

    def wait_until_idle(self):
        read = self.button("Read")
        wait_for(lambda: read.enabled, "the end of the reading", 120)

    def follow_reading(self, button="Read"):
        """Presses the button and returns the selections that come by until the reading is over."""
        read, pane = self.button("Read"), self.text_pane()
        seen = [pane.selection]
        self.read(button)

        def over():
            idle = read.enabled
            selection = pane.selection
            if seen[-1] != selection:
                seen.append(selection)
            return idle
        wait_for(over, "the end of the reading", 120)
        return seen

    def ask_to_close(self):
        """Has the window manager close the main window, and doesn't wait for that."""
        def own_windows():
            windows = subprocess.run(["wmctrl", "-lp"], check=True, text=True, capture_output=True)
            return [line.split()[0] for line in windows.stdout.splitlines()
                    if line.split()[2] == str(self.process.pid)]
        window = wait_for(own_windows, "the window manager knows the window")[0]
        subprocess.run(["wmctrl", "-i", "-c", window], check=True)

    def close(self):
        """Closes the main window; returns the exit code."""
        self.ask_to_close()
        return self.process.wait(PATIENCE_SECONDS)


class Recorder:
    """Records what the desktop's sound output plays: 16-bit mono. Use it in a `with` statement,
    and start it before the sound: a sound device that nobody listens to runs ahead."""

    def __init__(self, rate=RECORDER_RATE, **environment):
        self.rate = rate
        self.file = tempfile.NamedTemporaryFile(suffix=".raw")
        self.process = subprocess.Popen(
            ["parec", "-d", "nul.monitor", "--format=s16le", "--channels=1", f"--rate={rate}",
             "--latency-msec=10"], stdout=self.file, env=dict(os.environ, **environment))
        wait_for(self.position, "the first recorded sound")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()
        self.file.close()

    def stop(self):
        self.process.terminate()
        self.process.wait()

    def position(self):
        """Samples recorded so far."""
        return os.stat(self.file.name).st_size // 2

    def samples(self, begin=0, end=None):
        end = self.position() if end is None else end
        with open(self.file.name, "rb") as file:
            file.seek(2 * begin)
            return array.array("h", file.read(2 * max(0, end - begin)))

    def peak(self, begin=0, end=None):
        samples = self.samples(begin, end)
        return max(max(samples), -min(samples)) if samples else 0

    def wait_for_sound(self, begin=None):
        begin = self.position() if begin is None else begin
        wait_for(lambda: self.peak(begin) > SILENCE_PEAK, "sound")

    def wait_for_silence(self, seconds=0.3):
        """Until the last `seconds` of the recording are silent."""
        length = int(seconds * self.rate)
        start = self.position()

        def silent():
            end = self.position()
            return end - start >= length and self.peak(end - length, end) <= SILENCE_PEAK
        wait_for(silent, f"{seconds} s of silence")

    def wait_seconds(self, seconds):
        """Until so much more sound, or silence, is recorded. Returns the peak of that stretch."""
        begin = self.position()
        end = begin + int(seconds * self.rate)
        wait_for(lambda: self.position() >= end, f"{seconds} s are recorded", seconds + 10)
        return self.peak(begin, end)

    def save(self, path):
        with wave.open(path, "wb") as file:
            file.setparams((1, 2, self.rate, 0, "NONE", ""))
            file.writeframes(self.samples().tobytes())
