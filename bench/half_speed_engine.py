#!/usr/bin/python3
"""half_speed_engine.py FOLDER: reads lines and writes a wave file for each into FOLDER, as fast as
the slowest engines that can be listened to: half as long as it sounds."""

import os
import subprocess
import sys
import time
import wave

for number, line in enumerate(sys.stdin):
    begin = time.monotonic()
    draft = f"draft-{number}.wav"  # in the current folder, which nobody watches
    subprocess.run(["espeak-ng", "-v", "en-us+f3", "-w", draft, line], check=True)
    with wave.open(draft) as file:
        seconds = file.getnframes() / file.getframerate()
    time.sleep(max(0.0, begin + seconds / 2 - time.monotonic()))
    os.rename(draft, os.path.join(sys.argv[1], f"{number}.wav"))
