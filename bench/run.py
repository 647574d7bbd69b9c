#!/usr/bin/python3
"""run.py BUILD_FOLDER [--quick]: measures the program and its parts, and prints one table.

For use inside with_desktop. A row has the figure, what was measured, what it is measured against,
and how they compare: below 1 is better than the yardstick."""

import json
import os
import re
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "desktop"))
import bed  # noqa: E402
import test_web  # noqa: E402
from window_watch import Screen  # noqa: E402

WARM_STARTS = 5
IDLE_SECONDS = 5
COPIES = 7
SOUND = 8  # of 32767; a silent output has zeros
DOCUMENTS = 30  # as many as there can be
PAINTED_COLOURS = 8  # text with smooth edges has many more, an empty window fewer


class Table:
    def __init__(self):
        self.rows = []

    def add(self, figure, value, unit, limit=None, yardstick=""):
        self.add_row(figure, f"{value:.4g} {unit}".strip(),
                     "" if limit is None else f"{limit:.4g} {unit} {yardstick}".strip(),
                     "" if not limit else f"{value / limit:.2f}")

    def add_row(self, figure, measured, yardstick, ratio):
        self.rows.append((figure, measured, yardstick, ratio))
        print(f"  {figure}: {measured}", file=sys.stderr, flush=True)

    def show(self):
        rows = [("figure", "measured", "yardstick", "ratio"), *self.rows]
        widths = [max(len(row[i]) for row in rows) for i in range(4)]
        for row in rows:
            print("  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip())


def seconds_to_painted_window(screen, program):
    known = {window for window, _, _ in screen.mapped_windows()}
    begin = time.monotonic()
    process = subprocess.Popen([program])
    try:
        while time.monotonic() < begin + bed.PATIENCE_SECONDS:
            for window, left, top in screen.mapped_windows():
                if window not in known and screen.colours(left + 100, top + 60) > PAINTED_COLOURS:
                    return time.monotonic() - begin
        raise AssertionError("the program shows no window")
    finally:
        process.terminate()  # it unloads its windows, as it must, or it counts as running
        process.wait()
        bed.wait_for(lambda: {window for window, _, _ in screen.mapped_windows()} <= known,
                     "its window goes away")


def start_of_program(table, program):
    screen = Screen()
    first = seconds_to_painted_window(screen, program)
    times = sorted(seconds_to_painted_window(screen, program) for _ in range(WARM_STARTS))
    table.add("first start until the window is painted", first * 1000, "ms")
    table.add("warm start until the window is painted", times[WARM_STARTS // 2] * 1000, "ms", 300)


def memory(pid):
    """PSS and RSS in MB."""
    found = {}
    with open(f"/proc/{pid}/smaps_rollup") as file:
        for line in file:
            name, _, rest = line.partition(":")
            if name in ("Pss", "Rss"):
                found[name] = int(rest.split()[0]) / 1024
    return found["Pss"], found["Rss"]


def processor_seconds(pid):
    with open(f"/proc/{pid}/stat") as file:
        fields = file.read().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def idle_processor_share(pid):
    begin, used = time.monotonic(), processor_seconds(pid)
    time.sleep(IDLE_SECONDS)  # idle time can only be measured by letting it pass
    return 100 * (processor_seconds(pid) - used) / (time.monotonic() - begin)


def bytes_written(pid):
    with open(f"/proc/{pid}/io") as file:
        return next(int(line.split()[1]) for line in file if line.startswith("write_bytes"))


def running_program(table, program_path):
    with bed.Program(path=program_path) as program:
        pid = program.process.pid
        share, written = idle_processor_share(pid), bytes_written(pid)
        table.add("processor use when idle, copies are read at once", share, "% of a core", 1)
        program.find("check box").press()
        table.add("processor use when idle, copies are not read", idle_processor_share(pid),
                  "% of a core", 1)
        table.add("written to the disk meanwhile", bytes_written(pid) - written, "bytes")
        pss, rss = memory(pid)
        table.add("memory with the start document (PSS)", pss, "MB", 100)
        table.add("memory with the start document (RSS)", rss, "MB", 100)
        with bed.Recorder() as recorder:
            pane, begin = program.text_pane(), recorder.position()
            program.button("Read").press()
            bed.wait_for(lambda: pane.selected == "page", "a word of the first sentence")
            assert recorder.peak(begin) > bed.SILENCE_PEAK, "no sound"
            used, start = processor_seconds(pid), time.monotonic()
            time.sleep(IDLE_SECONDS)
            table.add("processor use while reading", 100 * (processor_seconds(pid) - used)
                      / (time.monotonic() - start), "% of a core")
            table.add("memory while reading (PSS)", memory(pid)[0], "MB", 100)


def copied_until_heard(program, recorder, text):
    """Milliseconds from the end of another program's copying to the first sample."""
    recorder.wait_for_silence()
    begin = recorder.position()
    subprocess.run(["xclip", "-selection", "clipboard", "-i"], check=True, input=text.encode())
    recorder.wait_for_sound(begin)
    first = next(i for i, sample in enumerate(recorder.samples(begin)) if abs(sample) > SOUND)
    program.wait_until_idle()
    return 1000 * first / recorder.rate


def second_start_until_silent(program_path, recorder):
    """Milliseconds from a second start to the last sample, and processor time of that start."""
    begin = recorder.position()
    process = subprocess.Popen([program_path, "500"])
    _, _, usage = os.wait4(process.pid, 0)
    recorder.wait_for_silence(1)  # longer than any pause in the text
    samples = recorder.samples(begin)
    last = max(i for i, sample in enumerate(samples) if abs(sample) > SOUND)
    return 1000 * last / recorder.rate, 1000 * (usage.ru_utime + usage.ru_stime)


def driven(table, program_path):
    with bed.Recorder() as recorder, bed.Program(path=program_path) as program:
        times = sorted(copied_until_heard(program, recorder, f"word {number}")
                       for number in range(COPIES))
        table.add("a copy in another program until its first sample", times[COPIES // 2], "ms", 60)
        program.find("check box").press()
        program.text_pane().text = "The quick brown fox jumps over the lazy dog " * 50
        program.read()
        recorder.wait_for_sound()
        until_silent, used = second_start_until_silent(program_path, recorder)
        table.add("a second start with 500 until silence", until_silent, "ms", 1200)
        table.add("processor time of that second start", used, "ms", 50)


def read_until_heard(program, recorder):
    """Milliseconds from the release of the Read button to the first sample."""
    recorder.wait_for_silence()
    left, top, width, height = program.button("Read").box
    bed.xdotool("mousemove", left + width // 2, top + height // 2, "mousedown", 1)
    start = recorder.position()
    bed.xdotool("mouseup", 1)
    recorder.wait_for_sound(start)
    first = next(i for i, sample in enumerate(recorder.samples(start)) if abs(sample) > SOUND)
    return 1000 * first / recorder.rate


def web_page(table, program_path):
    words = "The quick brown fox jumps over the lazy dog. " * 8
    test_web.PAGES["/long"] = test_web.page(f"<p>{words}</p>" * (100_000 // len(words)))
    server = test_web.Server()
    shown, memories, heard = [], [], []
    for _ in range(COPIES):
        bed.forget_settings()
        with bed.Recorder() as recorder, bed.Program(path=program_path) as program:
            program.find("check box").press()
            begin = time.monotonic()
            web = test_web.WebPane(program, server)
            bed.wait_for(lambda: "/loaded/one" in server.asked, "the page that the tab leads to")
            shown.append(1000 * (time.monotonic() - begin))
            memories.append(memory(program.process.pid)[0])
            web.show("/long")
            heard.append(read_until_heard(program, recorder))
    server.shutdown()
    middle = COPIES // 2
    table.add("the first page, from the tab on", sorted(shown)[middle], "ms")
    table.add("memory of the program alone with a page (PSS)", sorted(memories)[middle], "MB")
    table.add("Read on a page of 100 kB until its first sample", sorted(heard)[middle], "ms", 150)


def opening_of_documents(table, program_path):
    with bed.Program(path=program_path) as program:
        area, new = program.find("layered pane"), program.button("New")
        left, top, width, height = new.box
        bed.xdotool("mousemove", left + width // 2, top + height // 2)
        milliseconds = {}
        for number in range(2, DOCUMENTS + 1):
            bed.xdotool("mousedown", 1)  # xdotool's own click rests for 100 ms
            begin = time.monotonic()
            bed.xdotool("mouseup", 1)
            bed.wait_for(lambda: area.node.get_child_count() == number, f"document {number}")
            milliseconds[number] = (time.monotonic() - begin) * 1000
        table.add("opening of the 2nd document, from the click", milliseconds[2], "ms", 50)
        table.add(f"opening of the {DOCUMENTS}th document", milliseconds[DOCUMENTS], "ms",
                  milliseconds[2], "(2nd)")
        table.add(f"memory with {DOCUMENTS} documents (PSS)", memory(program.process.pid)[0], "MB")


def heard(table, folder):
    limits = {"word_event_mean_error_ms": 15, "volume_change_heard_ms": 100}
    output = subprocess.run([os.path.join(folder, "bench_heard")], check=True, text=True,
                            capture_output=True).stdout
    for line in output.splitlines():
        name, value = line.rsplit(" ", 1)
        words, _, unit = name.rpartition("_")
        if unit == "ms":
            table.add(words.replace("_", " "), float(value), "ms", limits.get(name))
        else:
            table.add(name.replace("_", " "), float(value), "")


# Google Benchmark programs: a benchmark may carry a counter `limit`, in the benchmark's own unit of
# time, and counters of any other name, which become rows of their own.
PLAIN_FIELDS = {"name", "family_index", "per_family_instance_index", "run_name", "run_type",
                "repetitions", "repetition_index", "threads", "iterations", "real_time",
                "cpu_time", "time_unit", "label", "limit", "aggregate_name", "aggregate_unit"}


# What their rows are called in the table, and the most that they may take in their own unit.
READABLE = {
    "WordInALongText/0": ("a word highlighted at the start of 10 MB", 1),
    "WordInALongText/5": ("a word highlighted in the middle of 10 MB", 1),
    "WordInALongText/9": ("a word highlighted near the end of 10 MB", 1),
    "WordWhileTheTextIsStillLaidOut": ("a word highlighted right after 10 MB were loaded", 16),
    "WordInLongParagraphs/1000": ("a word highlighted in a paragraph of 1,000 words", 1),
    "WordInLongParagraphs/15000": ("a word highlighted in a paragraph of 15,000 words", 16),
    "LoadingALongText": ("10 MB put into the pane", 350),
    "SelectingAllOfALongTextJustLoaded": ("all of 10 MB selected, then a word", 100),
    "PrintingABook": ("1,000 pages printed at 600 dpi", 5000),
    "FindThroughALongText/0": ("a search through 10 MB in letters of either case", 20),
    "FindThroughALongText/4": ("a search through 10 MB with case", 20),
    "ReplaceAll/10000": ("Replace All with 10,000 matches in 10 MB", 500),
    "BM_Read10MBRichText": ("10 MB of rich text read into a document", 700),
    "BM_Write10MBRichText": ("10 MB of rich text written", 500),
    "BM_Parse10MBRichText": ("10 MB of rich text parsed only", 350),
    "BM_Parse10MBOfBraces": ("10 MB of open braces parsed", 700),
    "ReadingProse": ("prose cut into utterances", None),
    "ReadingDenseMarkup": ("dense markup cut into utterances", None),
    "FirstUtteranceOfABook": ("the first utterance of a book", 1000),
    "gain": ("a second of sound brought to a volume", None),
    "write_wave_file/4096": ("a wave file written in small pieces", None),
    "write_wave_file/1048576": ("a wave file written in large pieces", None),
    **{f"convert/{type}": (f"sound brought to {form}", None) for type, form in {
        39: "48 kHz 16 bit stereo", 38: "48 kHz 16 bit mono", 35: "44.1 kHz 16 bit stereo",
        26: "24 kHz 16 bit mono", 22: "22.05 kHz 16 bit mono", 18: "16 kHz 16 bit mono",
        4: "8 kHz 8 bit mono"}.items()},
}


def readable(name):
    """The name and the limit of a benchmark's row."""
    known = next((row for row in READABLE if name == row or name.startswith(row + "/iter")), None)
    return READABLE.get(known, (name.replace("_", " "), None))


def benchmark_program(table, path):
    with tempfile.NamedTemporaryFile() as report:
        subprocess.run([path, f"--benchmark_out={report.name}", "--benchmark_out_format=json"],
                       check=True, stdout=subprocess.DEVNULL)
        benchmarks = json.load(open(report.name))["benchmarks"]
    for one in benchmarks:
        if one.get("error_occurred"):
            raise AssertionError(f"{one['name']}: {one['error_message']}")
        label = one.get("label", "")
        figure, limit = readable(one["name"])
        table.add(figure, one["real_time"], one["time_unit"], one.get("limit", limit), label)
        for name, value in one.items():
            if name not in PLAIN_FIELDS and isinstance(value, (int, float)):
                table.add(f"{figure}, {name.replace('_', ' ')}", value, "")


def figures(table, command):
    """For programs that tell a figure a line, as "figure: ours, theirs, ratio r" or "figure: ours"."""
    output = subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE).stdout
    for line in output.splitlines():
        compared = re.fullmatch(r"(.+?): (.+?), (.+), ratio ([0-9.]+)", line)
        table.add_row(*(compared.groups() if compared else (*line.split(": ", 1), "", "")))


def main():
    build = os.path.abspath(sys.argv[1])
    folder = os.path.join(build, "bench")
    program = os.path.join(build, "tessavox")
    table = Table()
    start_of_program(table, program)
    bed.forget_settings()
    running_program(table, program)
    bed.forget_settings()
    driven(table, program)
    bed.forget_settings()
    web_page(table, program)
    bed.forget_settings()
    opening_of_documents(table, program)
    heard(table, folder)
    sources = os.path.dirname(__file__)
    figures(table, [os.path.join(folder, "bench_voice"),
                    "--helper", os.path.join(build, "tessavox-voice-helper"),
                    "--voices", os.path.join(sources, "..", "share", "voices"), *sys.argv[2:]])
    figures(table, [os.path.join(folder, "bench_alignment"),
                    os.path.join(sources, "sentences.txt"),
                    os.path.join(sources, "festival_truth.scm")])
    for name in ("bench_window", "bench_documents", "bench_find", "bench_rtf", "bench_plain_text",
                 "bench_text", "bench_engines", "bench_sound"):
        benchmark_program(table, os.path.join(folder, name))
    print()
    table.show()


if __name__ == "__main__":
    main()
