"""The real window on a real X server with a window manager."""
import json
import os
import pathlib
import socket
import time
import unittest

from column import BACKGROUND, TEXT, WAIT, Column
from display import Display
from machine import Machine, eventually

CAT = (232, 145, 74)  # the body of the first character


class ColumnTest(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)
        self.machine.run("connect")
        self.display = Display(self.machine)
        self.pictures = pathlib.Path(os.environ.get("ZELVANE_PICTURES", self.machine.folder))

    def start_column(self, *arguments):
        return Column(self.machine, self.display, *arguments)

    def ask_to_disconnect(self, column, answer):
        column.choose("Up", "Up", "Up")  # the third line from the end
        (question,), _ = eventually(
            lambda: [found for found in column.windows() if found != column.window and
                     self.display.output("xdotool", "getactivewindow") == found],
            what="the question is in front")
        self.display.picture(self.pictures / "column-question.png")
        self.display.output("xdotool", "key", "--window", question, answer)
        eventually(lambda: column.windows() == [column.window], what="the question is gone")

    def test_connects_and_disconnects(self):
        self.machine.run("disconnect")
        connected = lambda: self.machine.run("status", check=False).returncode == 0
        column = self.start_column()
        self.display.picture(self.pictures / "column-card.png")
        column.press_button()
        eventually(connected, what="connected")
        entry = self.machine.home / ".config/autostart/com.tarnwick.zelvane.desktop"
        eventually(entry.exists, what="it opens at login")
        column.press_button()  # the result has been read
        eventually(lambda: not self.display.find(TEXT, run=20), what="the card is gone")
        self.ask_to_disconnect(column, "Escape")
        self.assertTrue(connected())
        self.ask_to_disconnect(column, "Return")
        eventually(lambda: not connected(), what="disconnected")

    def test_the_corner_of_a_row_leads_to_its_terminal(self):
        self.machine.give_characters(a=0)
        pid = self.machine.start_claude()
        self.machine.write_session(pid, "a", status="idle")
        self.start_column()
        (x, y), _ = eventually(lambda: self.display.find(CAT, run=8), what="the character shows")
        # The cat's head begins 19 points from the row's edge and 23 below it.
        self.display.click(x - 11, y - 15)
        eventually(lambda: json.loads(self.machine.settings.read_text()).get("terminalButtonLearned"),
                   what="that the button was used is saved")

    def test_live_sessions_and_a_change_in_place(self):
        machine, display = self.machine, self.display
        machine.give_characters(a=0, b=1, c=2)
        pids = [machine.start_claude() for _ in range(3)]
        for pid, session in zip(pids, "abc"):
            machine.write_session(pid, session, status="busy")
        column = self.start_column()
        eventually(lambda: column.geometry()[3] > 150, what="three rows")
        x, y, width, _ = column.geometry()
        self.assertEqual((x + width, y), (1590, 10))
        self.assertEqual(width, 310)
        self.assertGreater(display.count(BACKGROUND), 10_000)
        self.assertEqual(display.count(WAIT), 0)
        before = column.geometry()[3]
        machine.write_session(pids[1], "b", status="waiting")
        _, elapsed = eventually(lambda: column.geometry()[3] > before, what="the row opens")
        self.assertLess(elapsed, 1.5)
        eventually(lambda: display.count(WAIT), what="and has the colour of waiting")
        display.picture(self.pictures / "column-live.png")
        before = column.geometry()[3]
        machine.tmux("kill-session", "-t", "1")
        # A process that ends without touching its file shows with the next tick.
        eventually(lambda: column.geometry()[3] < before, seconds=13, what="its row is gone")

    def test_a_click_never_takes_the_focus(self):
        display = self.display
        self.machine.spawn("xterm", DISPLAY=display.name)
        xterm, _ = eventually(lambda: display.output("xdotool", "search", "--onlyvisible", "--class",
                                                     "xterm"), what="a terminal")
        display.output("xdotool", "windowfocus", "--sync", xterm)
        column = self.start_column("--demo", "3")
        eventually(lambda: column.geometry()[3] > 100, what="the sample rows")
        focused = display.output("xdotool", "getwindowfocus")
        height = column.geometry()[3]
        x, y, width, _ = column.geometry()
        display.output("xdotool", "mousemove", str(x + width // 2), str(y + 80), "click", "1")
        eventually(lambda: column.geometry()[3] > height, what="the clicked row opens")
        self.assertEqual(display.output("xdotool", "getwindowfocus"), focused)
        self.assertEqual(display.output("xdotool", "getactivewindow"), xterm)
        column.child.terminate()
        self.assertEqual(column.child.wait(10), 0)
        self.assertEqual(column.child.stderr.read(), "")

    def test_ends_when_asked_at_any_moment_of_its_start(self):
        for moment in (0.0, 0.05, 0.1, 0.15, 0.2, 0.3):
            child = self.machine.start("zelvane-app", "--demo", "1", DISPLAY=self.display.name)
            time.sleep(moment)  # the moment is what varies, not something waited for
            child.terminate()
            self.assertIn(child.wait(10), (0, -15))

    def test_opens_beside_a_bus_that_never_answers(self):
        place = str(self.machine.folder / "bus")
        bus = socket.socket(socket.AF_UNIX)
        self.addCleanup(bus.close)
        bus.bind(place)
        bus.listen()
        self.machine.env["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={place}"
        self.start_column()

    def test_a_second_copy_goes_away(self):
        first = self.start_column().child
        start = time.monotonic()
        second = self.machine.start("zelvane-app", DISPLAY=self.display.name)
        self.assertEqual(second.wait(10), 0)
        self.assertLess(time.monotonic() - start, 5)
        self.assertIsNone(first.poll())


class WithoutDisplayTest(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)

    def test_says_so_and_ends(self):
        for environment in ({}, {"DISPLAY": ":4242"}):
            result = self.machine.run(program="zelvane-app", check=False, **environment)
            self.assertEqual((result.returncode, len(result.stderr.strip().split("\n"))), (1, 1))

    def test_renders_pictures(self):
        self.machine.write_session(self.machine.start_claude(), "a", status="waiting")
        for arguments, width in (((), 284), (("--width", "100"), 280), (("--width", "999"), 480),
                                 (("--width", "wide", "--theme", "a", "--showcase"), 284)):
            picture = self.machine.folder / "column.png"
            self.machine.run("--render", str(picture), *arguments, program="zelvane-app")
            header = picture.read_bytes()[:24]
            self.assertEqual(header[1:4], b"PNG")
            self.assertEqual(int.from_bytes(header[16:20], "big"), 2 * (width + 16))
        self.assertFalse(self.machine.records.exists(), "rendering writes nothing")


if __name__ == "__main__":
    unittest.main()
