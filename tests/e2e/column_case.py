"""What tests of the column's window have in common."""
import os
import pathlib
import unittest

from display import Display
from machine import Machine, eventually


class ColumnCase(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)
        self.machine.run("connect")
        self.display = Display(self.machine)
        self.pictures = pathlib.Path(os.environ.get("ZELVANE_PICTURES", self.machine.folder))

    def start_column(self, *arguments):
        child = self.machine.start("zelvane-app", *arguments, DISPLAY=self.display.name)
        window, _ = eventually(lambda: self.display.output(
            "xdotool", "search", "--onlyvisible", "--class", "zelvane"), what="the window appears")
        return child, window.split()[0]

    def geometry(self, window):
        lines = self.display.output("xdotool", "getwindowgeometry", "--shell", window).split("\n")
        values = dict(line.split("=") for line in lines)
        return tuple(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def windows(self):
        return self.display.output("xdotool", "search", "--onlyvisible", "--class",
                                   "zelvane").split()

    def start_terminal(self):
        """A terminal that has the keys; its window, and the file that gets what is typed into it."""
        typed = self.machine.folder / "typed"
        self.machine.spawn("xterm", "-geometry", "60x20+20+20", "-e", "sh", "-c",
                           f"stty -icanon; cat > {typed}", DISPLAY=self.display.name)
        window, _ = eventually(lambda: self.display.output("xdotool", "search", "--onlyvisible",
                                                           "--class", "xterm"), what="a terminal")
        self.display.output("xdotool", "windowfocus", "--sync", window)
        eventually(typed.exists, what="it takes what is typed")
        return window, typed

    def await_keys(self, window, what):
        """Until the window has the keys, and the window manager knows."""
        eventually(lambda: self.display.output("xdotool", "getwindowfocus") == window ==
                   self.display.output("xdotool", "getactivewindow"), what=what)
