#!/usr/bin/python3
"""Walks the game from the main menu to a puzzle and back as a blind player
would (keys typed with xdotool), hearing the accessibility bus as Orca does.
Checks that:

- every list that takes the focus names its current entry: the main menu's
  "Play a Puzzle", the word list chooser's first list;
- the road main menu, chooser, options (Alt+O), puzzle is heard;
- the puzzle's grid takes the focus as one object named "Puzzle" with no
  children, and a first mark, eight steps of zoom (to 400 %, where the grid
  no longer fits the screen) and 100 quick moves over it, which scroll it,
  tell a screen reader nothing (no focus, name, description, value, text or
  selection change), while the grid's description, asked for afterwards,
  names the cell the moves reached; the game lives on;
- Escape and Yes leave the puzzle for the main menu, and Escape there ends
  the game with exit code 0.

Run inside a D-Bus session with its accessibility bus, on an X display with a
window manager (see with_atspi.sh). Usage: atspi_listen.py <lexicove executable>
Exit code 0 when every check holds, 1 otherwise (the reasons are printed).
"""

import os
import subprocess
import sys
import threading
import time

import pyatspi

STEP_TIMEOUT = 20.0  # seconds for a window to come and take the focus
MOVES = 100
SETTLE = 1.0         # seconds for events of the last moves to arrive

# What a screen reader would speak on: focus changes and changes of what the
# focused object says.
TOLD = ["object:state-changed:focused", "object:property-change:accessible-name",
        "object:property-change:accessible-description",
        "object:property-change:accessible-value", "object:text-changed",
        "object:text-caret-moved", "object:selection-changed",
        "object:active-descendant-changed", "object:state-changed:selected"]

# What was heard from the game: (time, event type, role, name), in order.
heard = []
errors = []
lock = threading.Condition()


class Failure(Exception):
    pass


def on_event(event):
    if event.type.startswith("object:state-changed") and event.detail1 != 1:
        return
    try:
        source = event.source
        if source.getApplication().name != "Lexicove":
            return
        entry = (time.monotonic(), event.type, source.getRoleName(), source.name)
    except Exception as error:  # a reader survives odd objects; so do we
        with lock:
            errors.append("an event could not be read: %r" % (error,))
        return
    with lock:
        heard.append(entry)
        lock.notify_all()


def focused(role, name=None):
    return lambda h: (h[1] == "object:state-changed:focused" and h[2] == role
                      and (name is None or h[3] == name))


def wait_for(what, test, start, timeout=STEP_TIMEOUT):
    """The index of the first event from start on that passes test."""
    deadline = time.monotonic() + timeout
    with lock:
        while True:
            found = next((i for i in range(start, len(heard)) if test(heard[i])), None)
            if found is not None:
                return found
            if time.monotonic() >= deadline:
                raise Failure("%s was never heard within %.1f s" % (what, timeout))
            lock.wait(deadline - time.monotonic())


def keys(*names, delay=60):
    subprocess.run(["xdotool", "key", "--delay", str(delay), *names], check=True)


def find_puzzle():
    """The game's grid, found in the accessibility tree as the player's
    screen reader would find it."""
    for app in pyatspi.Registry.getDesktop(0):
        if app and app.name == "Lexicove":
            found = pyatspi.findDescendant(app, lambda a: a.name == "Puzzle"
                                           and a.getRoleName() != "menu")
            if found:
                return found
    raise Failure("no object named Puzzle in the game's accessibility tree")


def play(program):
    env = dict(os.environ, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
    game = subprocess.Popen([program], env=env)
    problems = []
    try:
        # "Play a Puzzle" is chosen at start, then the first list; the
        # options' defaults make a 20 by 20 puzzle, and Alt+O is OK.
        at = wait_for("the main menu's entry", focused("list item", "Play a Puzzle"), 0)
        keys("Return")
        at = wait_for("the chooser's first list", lambda h: focused("list item")(h)
                      and h[3].endswith(" words"), at + 1)
        keys("Return")
        at = wait_for("the options window",
                      lambda h: focused("push button")(h) and h[3].startswith("Rows of letters"),
                      at + 1)
        keys("alt+o")
        at = wait_for("the puzzle grid", lambda h: focused(h[2], "Puzzle")(h), at + 1)
        puzzle = find_puzzle()
        if puzzle.childCount != 0:
            problems.append("the puzzle has %d children: a reader can walk into its cells"
                            % puzzle.childCount)

        # Quick moves snaking from the first cell: along the row, down one,
        # back along the next row, and so on.
        path, row, column, step = [], 0, 0, 1
        while len(path) < MOVES:
            if 0 <= column + step < 20:
                column += step
                path.append("Right" if step > 0 else "Left")
            else:
                row, step = row + 1, -step
                path.append("Down")
        time.sleep(0.5)  # the window's own first events settle
        with lock:
            at = len(heard)
        keys("space", *["ctrl+equal"] * 8)
        keys(*path, delay=12)
        time.sleep(SETTLE)
        with lock:
            told = heard[at:]
        problems += ["a move told a screen reader %s from %s %r" % t[1:] for t in told[:5]]
        where = puzzle.description
        if where != "row %d, column %d" % (row + 1, column + 1):
            problems.append("after the moves the puzzle says %r, not row %d, column %d"
                            % (where, row + 1, column + 1))
        if game.poll() is not None:
            raise Failure("the game ended during the walk (exit code %s)" % game.returncode)

        with lock:
            at = len(heard)
        keys("Escape")
        at = wait_for("the exit question's Yes button", focused("push button", "Yes"), at)
        keys("y")
        wait_for("the main menu, again", focused("list item", "Play a Puzzle"), at + 1)
        keys("Escape")
        try:
            if game.wait(timeout=10) != 0:
                problems.append("the game ended with exit code %d" % game.returncode)
        except subprocess.TimeoutExpired:
            raise Failure("the game did not end after Escape on the main menu")
        return problems
    finally:
        if game.poll() is None:
            game.kill()
            game.wait()


def main():
    if len(sys.argv) != 2:
        print(__doc__)
        return 2
    outcome = ["the check did not finish"]

    def drive():
        try:
            outcome[:] = play(sys.argv[1])
        except Failure as failure:
            outcome[:] = [str(failure)]
        except Exception as error:
            outcome[:] = ["the check itself failed: %r" % (error,)]
        finally:
            pyatspi.Registry.stop()

    pyatspi.Registry.registerEventListener(on_event, *TOLD)
    threading.Thread(target=drive, daemon=True).start()
    pyatspi.Registry.start()
    problems = outcome + errors
    if problems:
        print("Last events heard:")
        for _, kind, role, name in heard[-20:]:
            print("  ", kind, role, repr(name))
        print("FAILED:\n  - " + "\n  - ".join(problems))
        return 1
    print("PASSED: lists say their entry, the puzzle is one silent object, the game ended normally")
    return 0


if __name__ == "__main__":
    sys.exit(main())
