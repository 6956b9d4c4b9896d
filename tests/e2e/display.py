"""A real X server with a window manager, and pictures of what it shows."""
import os
import subprocess

from machine import eventually


class Display:
    def __init__(self, machine, width=1600, height=900):
        self.size = (width, height)
        self._machine = machine
        read, write = os.pipe()
        # A server that resets when its last client leaves takes the next one, just arriving, with it.
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{width}x{height}x24", "-nolisten",
             "tcp", "-noreset"], pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        machine._children.append(server)
        os.close(write)
        with os.fdopen(read) as number:
            self.name = f":{number.readline().strip()}"
        self.env = {**os.environ, "DISPLAY": self.name}
        machine.spawn("openbox", DISPLAY=self.name)
        eventually(lambda: "_NET_SUPPORTING_WM_CHECK(WINDOW)" in
                   self.output("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"),
                   what="a window manager runs")

    def output(self, *command):
        return subprocess.run(command, env=self.env, capture_output=True, text=True,
                              check=False).stdout.strip()

    def picture(self, path=None):
        """What the screen shows, as bytes of red, green, blue; also as a PNG at the path."""
        png = subprocess.run(["import", "-window", "root", "png:-"], env=self.env, check=True,
                             capture_output=True).stdout
        if path:
            with open(path, "wb") as file:
                file.write(png)
        return subprocess.run(["convert", "png:-", "-depth", "8", "rgb:-"], input=png, check=True,
                              capture_output=True).stdout

    def find(self, colour, run):
        """Where `run` pixels of exactly the colour begin side by side; nothing when nowhere."""
        pixels, wanted = self.picture(), bytes(colour) * run
        at = pixels.find(wanted)
        while at % 3 and at >= 0:
            at = pixels.find(wanted, at + 1)
        return None if at < 0 else (at // 3 % self.size[0], at // 3 // self.size[0])

    def give_keys(self, text):
        """Puts the characters on keys. Otherwise xdotool borrows a key for each, in passing, and a
        slow program takes it for another one."""
        keys = "".join(f"key <FK{13 + i}> {{ [ U{ord(letter):04X} ] }};"
                       for i, letter in enumerate(text))
        keymap = f"""xkb_keymap {{ xkb_keycodes {{ include "evdev+aliases(qwerty)" }};
            xkb_types {{ include "complete" }}; xkb_compat {{ include "complete" }};
            xkb_symbols {{ include "pc+us" {keys} }}; }};"""
        subprocess.run(["xkbcomp", "-w", "0", "-", self.name], input=keymap, env=self.env, text=True,
                       check=True)

    def click(self, x, y):
        self.output("xdotool", "mousemove", str(x), str(y), "click", "1")

    def count(self, colour):
        """How many pixels of the screen have exactly the colour."""
        pixels, wanted = self.picture(), bytes(colour)
        count, at = 0, pixels.find(wanted)
        while at >= 0:
            count += at % 3 == 0
            at = pixels.find(wanted, at + 1)
        return count
