"""first_reading.py PROGRAM FOLDER: has the program read its start document aloud, and keeps a
screenshot with a selected word and the sound in the folder. For use inside with_desktop."""

import os
import re
import sys

import bed


def main():
    program_path, folder = sys.argv[1], sys.argv[2]
    os.makedirs(folder, exist_ok=True)
    picture = os.path.join(folder, "first_reading.png")
    sound = os.path.join(folder, "first_reading.wav")
    with bed.Recorder(rate=22050) as recorder, bed.Program(path=program_path) as program:
        pane = program.text_pane()
        words = re.findall(r"\w+", pane.text)
        print(f"Reading {len(words)} words aloud ...", flush=True)
        program.read()
        bed.wait_for(lambda: pane.selected == words[min(12, len(words) - 1)], "a selected word")
        bed.screenshot(picture)
        program.wait_until_idle()
        recorder.wait_for_silence()
        recorder.stop()
        recorder.save(sound)
        peak, seconds, last = recorder.peak(), recorder.position() / recorder.rate, pane.selected
        code = program.close()

    for holds, fault in ((peak > bed.SILENCE_PEAK, "the recorded sound is silent"),
                         (last == words[-1], f"the last selected word is '{last}'"),
                         (code == 0, f"the program ended with {code}")):
        if not holds:
            sys.exit("first reading: " + fault)
    print("The voice spoke, and the selection went along to the last word.")
    print(f"Screenshot: {picture}")
    print(f"Sound:      {sound} ({seconds:.1f} s, peak {peak} of 32767)")


if __name__ == "__main__":
    main()
