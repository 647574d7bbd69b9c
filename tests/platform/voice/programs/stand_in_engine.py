#!/usr/bin/python3
"""stand_in_engine.py BEHAVIOUR [FOLDER]: an engine that does one thing wrong, or none.

Reads lines and answers each with a wave file in FOLDER, or without one with frames."""

import os
import struct
import sys
import time

RATE = 16000


def wave(samples=b"\0\x20\0\xe0" * 4000, channels=1, rate=RATE, bits=16, length=None):
    size = len(samples) if length is None else length
    block = channels * bits // 8
    return (b"RIFF" + struct.pack("<I", 36 + size) + b"WAVEfmt "
            + struct.pack("<IHHIIHH", 16, 1, channels, rate, rate * block, block, bits)
            + b"data" + struct.pack("<I", size) + samples)


def start_child():
    if os.fork() == 0:
        for leave in (os.setsid, lambda: os.setpgid(0, 0)):
            try:
                leave()
            except OSError:
                pass
        time.sleep(600)
    return wave()


def say_at_length():
    sys.stderr.write("no such phoneme\n" * 400_000)
    return wave()


def end():
    sys.exit("the model has no such layer")


ANSWERS = {
    "good": wave,
    "crash": end,
    "hang": lambda: time.sleep(600),
    "broken": lambda: wave(length=1_000_000),
    "no wave": lambda: b"<html>404</html>",
    "stereo": lambda: wave(channels=2),
    "errors": say_at_length,
    "memory": lambda: wave(bytes(8 << 30)),
    "child": start_child,
    "network": lambda: __import__("socket").socket() and wave(),
    "home": lambda: open(os.environ["HOME"] + "/diary").read() and wave(),
    "frames": lambda: b"frames 16000 8 0 4\n" + bytes(16),
    "told": lambda: b"frames 16000 16000 4000 - 12000\n" + b"\0\x20\0\xe0" * 8000,
    "no frames": lambda: b"Loading the model...\n",
    "words in no order": lambda: b"frames 16000 8 4 0\n" + bytes(16),
}


def write(folder, name, data):
    with open(os.path.join(folder, name), "wb") as file:
        for _ in range(40 if data is None else 1):
            file.write(bytes(1 << 20) if data is None else data)


def main():
    behaviour, folder = sys.argv[1], (sys.argv[2:] or [None])[0]
    for number, _ in enumerate(sys.stdin):
        if behaviour in ("twice", "endless"):
            for part in range(2 if behaviour == "twice" else 1):
                write(folder, f"{number}-{part}.wav", wave() if behaviour == "twice" else None)
        elif folder:
            write(folder, f"{number}.wav", ANSWERS[behaviour]())
        else:
            sys.stdout.buffer.write(ANSWERS[behaviour]())
            sys.stdout.buffer.flush()


main()
