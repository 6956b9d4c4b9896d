"""The column's window on a display, driven by real events."""
import pathlib

from machine import eventually

# Colours of the light minimal theme.
BACKGROUND, WAIT, TEXT = (251, 251, 249), (212, 86, 31), (29, 29, 27)


class Column:
    def __init__(self, machine, display, *arguments):
        self.display = display
        self.child = machine.start("zelvane-app", *arguments, DISPLAY=display.name)
        try:
            self.window = eventually(self.windows, what="the window appears")[0][0]
        except AssertionError as error:
            raise AssertionError(f"{error}; {self.how_it_stands()}") from None

    def how_it_stands(self):
        """The system call in which each of the program's threads waits, or how the program ended."""
        if self.child.poll() is not None:
            return f"it ended with {self.child.returncode}: {self.child.stderr.read()}"
        tasks = pathlib.Path(f"/proc/{self.child.pid}/task").iterdir()
        return "; ".join(f"{(task / 'comm').read_text().strip()} in {(task / 'syscall').read_text().strip()}"
                         for task in tasks)

    def windows(self):
        """The column's own, its menus and questions."""
        return self.display.output("xdotool", "search", "--onlyvisible", "--class",
                                   "zelvane").split()

    def geometry(self):
        lines = self.display.output("xdotool", "getwindowgeometry", "--shell", self.window)
        values = dict(line.split("=") for line in lines.split("\n"))
        return tuple(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def keys(self, *keys):
        self.display.output("xdotool", "key", *keys)

    def press_button(self):
        """Presses the first filled button of a card, once there is one."""
        (x, y), _ = eventually(lambda: self.display.find(TEXT, run=20), what="a button shows")
        self.display.click(x + 5, y + 5)

    def open_menu(self):
        x, y, width, _ = self.geometry()
        self.display.click(x + width - 24, y + 18)
        eventually(lambda: len(self.windows()) > 1, what="the menu opens")

    def choose(self, *keys):
        """Picks a line of the menu by the keys that lead to it."""
        self.open_menu()
        self.keys(*keys, "Return")
