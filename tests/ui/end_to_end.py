#!/usr/bin/env python3
"""Drives the real program with real keys on a display of its own.

    end_to_end.py ROWVANE RVB TEST

Needs Xvfb and xdotool. What the program saved is read back with rvb. Programs for Windows (.exe) run under Wine, whose
windows need a prefix that was started on the same display.
"""
import contextlib
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

PATIENCE = 30  # seconds; the machines that test are slow at times
LEAKS = f"print_suppressions=0:suppressions={Path(__file__).with_name('leaks.supp')}"
WINE = Path(__file__).resolve().parents[2] / "packaging" / "windows" / "wine"
TOWNS = "Town,Country,People\nPorto,PT,232\nLuleå,SE,49\nBraga,PT,193\nGraz,AT,292\n"


def wait_for(what, condition):
    """Waits until CONDITION answers something true, and gives it back."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.05)
    raise AssertionError(f"waited in vain for {what}")


def command(program, *arguments):
    wine = [str(WINE)] if str(program).endswith(".exe") else []
    return [*wine, str(program), *map(str, arguments)]


class Display:
    """An X server without a screen that ends with the test."""

    def __init__(self, stack):
        reading, writing = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x800x24", "-nolisten", "tcp"],
            pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        stack.callback(server.wait)
        stack.callback(server.terminate)
        with os.fdopen(reading) as answer:
            self.name = ":" + answer.readline().strip()

    def xdotool(self, *arguments, check=True):
        return subprocess.run(["xdotool", *map(str, arguments)], env=os.environ | {"DISPLAY": self.name}, check=check,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout


class Window:
    """The running program."""

    def __init__(self, stack, display, program, home, *arguments):
        self.display = display
        environment = {**os.environ, "DISPLAY": display.name, "ROWVANE_WINE_DISPLAY": display.name}
        if not program.endswith(".exe"):
            environment |= {"HOME": str(home), "XDG_CONFIG_HOME": str(home / "config"), "XDG_RUNTIME_DIR": str(home),
                            "QT_QPA_PLATFORM": "xcb", "LANG": "C.UTF-8", "LSAN_OPTIONS": LEAKS}
        self.process = subprocess.Popen(command(program, *arguments), env=environment)
        stack.callback(self.kill)

    def focus(self, title, count=1):
        """Gives the keys to the newest of at least COUNT windows with this title, once they are there."""
        def newest():
            found = self.display.xdotool("search", "--onlyvisible", "--pid", self.process.pid, "--name", title,
                                         check=False).split()
            return max(found, key=int) if len(found) >= count else None

        # A box that is about to go takes the focus away once more.
        def has_focus():
            window = newest()
            if window is None:
                return False
            self.display.xdotool("windowfocus", window, check=False)
            time.sleep(0.3)
            return self.display.xdotool("getwindowfocus", check=False).strip() == window

        wait_for(f"window {title}", has_focus)

    def keys(self, *keys):
        self.display.xdotool("key", "--delay", 40, *keys)

    def type(self, text):
        self.display.xdotool("type", "--delay", 20, text)

    def kill(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
            self.process.wait()

    def wait_for_end(self):
        wait_for("the end of the program", lambda: self.process.poll() is not None)
        assert self.process.returncode == 0, self.process.returncode


class Test:
    def __init__(self, stack, rowvane, rvb):
        self.stack = stack
        self.rowvane = rowvane
        self.rvb = rvb
        self.home = Path(stack.enter_context(tempfile.TemporaryDirectory(prefix="rowvane-test-")))
        self.display = Display(stack)
        if rowvane.endswith(".exe"):
            self.use_prefix_of_its_own()
            return
        # A profile of the user's own; without one a program that is not installed keeps it beside itself.
        settings = self.home / "config" / "Rowvane" / "settings.xml"
        settings.parent.mkdir(parents=True)
        settings.write_text('<?xml version="1.0" encoding="utf-8"?>\n<Profile/>\n', encoding="utf-8")

    def use_prefix_of_its_own(self):
        """Wine's server stays with the display that it was started on, and the profile is beside the program."""
        os.environ["ROWVANE_WINE_PREFIX"] = str(self.home / "wine")
        self.stack.callback(subprocess.run, [WINE, "--stop"], check=False)
        self.rowvane = shutil.copy(self.rowvane, self.home)

    def start(self, *arguments):
        return Window(self.stack, self.display, self.rowvane, self.home, *arguments)

    def export(self, database):
        """All records of DATABASE as text; nothing while it can't be opened."""
        if not database.exists():
            return None
        shown = subprocess.run(command(self.rvb, "show", database, "--format", "csv"), stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, text=True, check=False)
        return shown.stdout.splitlines() if shown.returncode == 0 else None

    def import_text(self, text, database):
        subprocess.run(command(self.rvb, "import", database, text), check=True, stdout=subprocess.DEVNULL)

    def edit_sort_filter_save_and_reopen(self):
        """A text file becomes a database; what was typed is in it, and comes back."""
        towns = self.home / "towns.csv"
        towns.write_text(TOWNS, encoding="utf-8")
        window = self.start(towns)
        window.focus("towns.csv")
        window.keys("Down", "Right", "Right")
        window.type("50")
        window.keys("Return")
        window.keys("ctrl+s")
        wait_for("the saved text", lambda: "Luleå,SE,50" in towns.read_text(encoding="utf-8"))
        # Of the two towns in Portugal, sorted by people, the first is Braga.
        window.keys("ctrl+Home", "Right", "ctrl+shift+f", "Right", "F7", "ctrl+Home")
        window.type("Braga (PT)")
        window.keys("Return", "ctrl+shift+s")
        database = self.home / "towns.rvb"
        window.focus("Save As")
        window.keys("ctrl+a")
        window.type(str(database))
        window.keys("Return")
        saved = ["Town,Country,People", "Porto,PT,232", "Luleå,SE,50", "Braga (PT),PT,193", "Graz,AT,292"]
        wait_for("the saved database", lambda: self.export(database) == saved)
        window.focus("towns.rvb")
        window.keys("ctrl+q")
        window.wait_for_end()

        window = self.start(database)
        window.focus("towns.rvb")
        window.keys("ctrl+Home", "Delete", "ctrl+s")
        saved[1] = ",PT,232"
        wait_for("the second save", lambda: self.export(database) == saved)
        window.keys("ctrl+q")
        window.wait_for_end()

    def open_type_and_save(self):
        """The window opens with a database, takes keys, saves and ends."""
        database = self.home / "towns.rvb"
        towns = self.home / "towns.csv"
        towns.write_text(TOWNS, encoding="utf-8")
        self.import_text(towns, database)
        window = self.start(database)
        window.focus("towns.rvb")
        window.keys("ctrl+Home", "Down", "Right", "Right")
        window.type("50")
        window.keys("Return", "ctrl+s")
        wait_for("the saved database", lambda: "Luleå,SE,50" in (self.export(database) or []))
        window.keys("ctrl+q")
        window.wait_for_end()

    def recover_after_a_kill(self):
        """What was typed before the kill is offered at the next start."""
        database = self.home / "towns.rvb"
        towns = self.home / "towns.csv"
        towns.write_text(TOWNS, encoding="utf-8")
        self.import_text(towns, database)
        window = self.start(database)
        window.focus("towns.rvb")
        window.type("Lisboa")
        window.keys("Return")
        recovery = self.home / "config" / "Rowvane" / "recovery"
        wait_for("a recovery copy", lambda: list(recovery.glob("*.ini")))
        window.kill()
        assert "Porto,PT,232" in self.export(database)

        # The file that is asked for is the one that comes back: it is open once.
        window = self.start(database)
        window.focus("Rowvane [0-9.]+", count=2)
        window.keys("alt+r")
        window.focus("towns.rvb")
        window.keys("ctrl+s")
        wait_for("the recovered record", lambda: "Lisboa,PT,232" in (self.export(database) or []))
        wait_for("an empty recovery folder", lambda: not list(recovery.glob("*.rvb")))
        window.keys("ctrl+q")
        window.wait_for_end()


def main():
    rowvane, rvb, name = sys.argv[1:]
    with contextlib.ExitStack() as stack:
        getattr(Test(stack, rowvane, rvb), name)()


main()
