"""The desktop for tests hands on the exit code and leaves nothing behind, however it ends."""

import os
import signal
import subprocess
import unittest

from servers import wait_until

script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "with_desktop")
# A process that has left its parent and its session, as a daemon does; it tells its number first.
DAEMON = "setsid sh -c 'echo $$ $TMPDIR; exec sleep 100' & sleep 100"


def children_of(pid):
    with open(f"/proc/{pid}/task/{pid}/children") as file:
        return file.read().split()


def gone(pid):
    return not os.path.exists(f"/proc/{pid}")


class WithDesktop(unittest.TestCase):
    def test_the_exit_code_is_that_of_the_command(self):
        self.assertEqual(subprocess.call([script, "sh", "-c", "exit 7"]), 7)
        self.assertEqual(subprocess.call([script, "sh", "-c", "kill -SEGV $$"]),
                         128 + signal.SIGSEGV)

    def check_nothing_is_left(self, end):
        desktop = subprocess.Popen([script, "sh", "-c", DAEMON], stdout=subprocess.PIPE, text=True)
        self.addCleanup(desktop.wait)
        self.addCleanup(desktop.terminate)
        with desktop.stdout:
            daemon, folder = desktop.stdout.readline().split()
            children = children_of(desktop.pid)
            servers = children_of(children[0])
            self.assertGreater(len(servers), 4)
            end(desktop.pid, int(children[0]))
            desktop.wait(30)
            for pid in (daemon, *children, *servers):
                wait_until(lambda: gone(pid), 30, f"the end of {pid}")
            wait_until(lambda: not os.path.exists(folder), 30, "the end of its folder")

    def test_an_interrupted_desktop_leaves_nothing_behind(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number.name):
                self.check_nothing_is_left(lambda outer, _: os.kill(outer, number))

    def test_a_killed_desktop_leaves_nothing_behind(self):
        with self.subTest("the outer process"):
            self.check_nothing_is_left(lambda outer, _: os.kill(outer, signal.SIGKILL))
        with self.subTest("the one that started the servers"):
            self.check_nothing_is_left(lambda _, inner: os.kill(inner, signal.SIGKILL))


if __name__ == "__main__":
    unittest.main()
