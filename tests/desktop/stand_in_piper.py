#!/usr/bin/python3
"""Behaves as the Piper program does: reads lines and writes a wave file for each into a folder.

    piper --model MODEL --output_dir FOLDER [--speaker NUMBER]

It speaks each word by itself, so that each begins after a silence and is found in a recording."""

import argparse
import json
import os
import subprocess
import sys
import time
import wave

parser = argparse.ArgumentParser()
parser.add_argument("--model", required=True)
parser.add_argument("--output_dir", required=True)
parser.add_argument("--speaker", type=int, default=0)
options = parser.parse_args()
with open(options.model, "rb") as model, open(options.model + ".json") as config:
    model.read()
    rate = json.load(config)["audio"]["sample_rate"]

for line in map(str.strip, sys.stdin):
    if not line:
        continue  # a blank line yields nothing
    sound = b""
    for word in line.split():
        subprocess.run(["flite", "-voice", "rms", "-t", word, "-o", "word.wav"], check=True)
        with wave.open("word.wav") as part:
            assert part.getframerate() == rate
            sound += part.readframes(part.getnframes())
    path = os.path.join(options.output_dir, f"{time.time_ns()}.wav")
    with wave.open(path, "wb") as file:
        file.setparams((1, 2, rate, 0, "NONE", ""))
        file.writeframes(sound)
    print(path, flush=True)
