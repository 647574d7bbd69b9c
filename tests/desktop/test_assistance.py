"""What screen readers are told, by the events that reach them."""

import unittest

from bed import Atspi, GLib, Program, forget_settings, keys, wait_for


class Assistance(unittest.TestCase):
    def setUp(self):
        forget_settings()
        self.program = self.enterContext(Program())
        self.events = []
        self.listener = Atspi.EventListener.new(self.events.append)
        for kind in ("object", "window", "focus"):
            self.listener.register(kind)
            self.addCleanup(self.listener.deregister, kind)

    def seen(self, act, condition, what):
        """The events that come until the condition holds and no more follow."""
        self.take()
        act()
        wait_for(lambda: self.take() and condition(), what)
        quiet = 0
        while quiet < 20:
            count = len(self.events)
            self.take()
            quiet = quiet + 1 if len(self.events) == count else 0
        return [event.type for event in self.events]

    def take(self):
        self.program.main_window().name  # a round trip brings what was sent before
        while GLib.MainContext.default().iteration(False):
            pass
        return True

    def test_a_new_document_is_told_in_few_events(self):
        types = self.seen(lambda: keys("ctrl+n"),
                          lambda: "Document 2" in self.program.main_window().name
                          and len(self.program.find_all("push button", "Read")) == 2,
                          "a second document")
        self.assertLess(len(types), 60, sorted(types))
        self.assertIn("object:children-changed:add", types)
        focused = [event.source for event in self.events if event.type == "focus:"]
        self.assertEqual(focused[-1].get_role_name(), "text")
        self.assertEqual(
            [button.showing for button in self.program.find_all("push button", "Read")],
            [False, True])


if __name__ == "__main__":
    unittest.main()
