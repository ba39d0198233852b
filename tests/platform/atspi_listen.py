#!/usr/bin/python3
"""Walks the game from the main menu to a puzzle and back as a blind player
would (keys typed with xdotool), hearing every focus change on the
accessibility bus as Orca does (object:state-changed:focused). Checks that:

- the road main menu, word list chooser, options (Alt+O), puzzle is heard;
- every cell the cursor lands on is heard as its letter, in the row and column
  it really is in, and its row and column headers carry those numbers;
- 100 quick moves are all heard within a few seconds and the game lives on;
- Escape and Yes leave the puzzle for the main menu, and Escape there ends
  the game with exit code 0.

Run inside a D-Bus session on an X display with a window manager (see
screenreader_test.sh). Usage: atspi_listen.py <lexicove executable>
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
MOVES_LIMIT = 8.0    # seconds for all the moves to be heard

# What was heard, one (time, role, name, cell) per focus change in the game;
# cell is (row, column, row header, column header, name in the table at that
# row and column, columns), 0-based, for a table cell, else None.
heard = []
errors = []
lock = threading.Condition()


class Failure(Exception):
    pass


def on_focus(event):
    if event.detail1 != 1:
        return
    try:
        source = event.source
        if source.getApplication().name != "Lexicove":
            return
        role, cell = source.getRoleName(), None
        if role == "table cell":
            # As Orca does on Qt: the position through the parent table, then
            # the headers, which carry the numbers the player hears.
            table = source.parent.queryTable()
            index = source.getIndexInParent()
            row, column = table.getRowAtIndex(index), table.getColumnAtIndex(index)
            named = (table.getRowHeader(row), table.getColumnHeader(column),
                     table.getAccessibleAt(row, column))
            cell = (row, column, *[a.name if a else None for a in named], table.nColumns)
        entry = (time.monotonic(), role, source.name, cell)
    except Exception as error:  # a reader survives odd objects; so do we
        with lock:
            errors.append("a focus event could not be read: %r" % (error,))
        return
    with lock:
        heard.append(entry)
        lock.notify_all()


def wait_for(what, test, start, timeout=STEP_TIMEOUT):
    """The index of the first focus change from start on that passes test."""
    deadline = time.monotonic() + timeout
    with lock:
        while True:
            found = next((i for i in range(start, len(heard)) if test(heard[i])), None)
            if found is not None:
                return found
            if time.monotonic() >= deadline:
                raise Failure("%s never took the focus within %.1f s" % (what, timeout))
            lock.wait(deadline - time.monotonic())


def keys(*names, delay=60):
    subprocess.run(["xdotool", "key", "--delay", str(delay), *names], check=True)


def check_cell(entry, row, column):
    """The problems with a focus change that should be the cell at row, column."""
    _, role, name, cell = entry
    if role != "table cell" or not cell:
        return ["expected row %d column %d, heard %s %r" % (row + 1, column + 1, role, name)]
    problems = []
    if cell[:4] != (row, column, str(row + 1), str(column + 1)):
        problems.append("expected row %d column %d, heard %r at (row, column, headers) %r"
                        % (row + 1, column + 1, name, cell[:4]))
    if len(name) != 1 or name.isspace() or cell[4] != name:
        problems.append("a cell must be heard as its letter: heard %r, the table holds %r"
                        % (name, cell[4]))
    return problems


def play(program):
    env = dict(os.environ, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
    game = subprocess.Popen([program], env=env)
    try:
        # "Play a Puzzle" is chosen at start, then the first list; the
        # options' defaults make a 20 by 20 puzzle, and Alt+O is OK.
        at = wait_for("the main menu", lambda h: h[1] == "list", 0)
        menu = heard[at]
        keys("Return")
        at = wait_for("the word list chooser",
                      lambda h: h[2] == "Word lists" or h[1] == "list item", at + 1)
        keys("Return")
        at = wait_for("the options window", lambda h: h[2].startswith("Rows of letters"), at + 1)
        keys("alt+o")
        at = wait_for("the puzzle grid", lambda h: h[1] == "table cell", at + 1)
        problems = check_cell(heard[at], 0, 0)
        columns = heard[at][3][5]

        # Quick moves snaking from the first cell: along the row, down one,
        # back along the next row, and so on.
        path, row, column, step = [], 0, 0, 1
        while len(path) < MOVES:
            if 0 <= column + step < columns:
                column += step
                path.append(("Right" if step > 0 else "Left", row, column))
            else:
                row, step = row + 1, -step
                path.append(("Down", row, column))
        time.sleep(0.5)  # the window's own first focus changes settle
        at, began = len(heard), time.monotonic()
        keys(*[key for key, _, _ in path], delay=12)
        for n, (_, row, column) in enumerate(path):
            left = max(MOVES_LIMIT - (time.monotonic() - began), 0.01)
            at = wait_for("move %d of the walk" % (n + 1), lambda h: h[1] == "table cell", at, left)
            problems += check_cell(heard[at], row, column)
            at += 1
        print("%d moves heard in %.2f s" % (MOVES, heard[at - 1][0] - began))
        if game.poll() is not None:
            raise Failure("the game ended during the walk (exit code %s)" % game.returncode)

        keys("Escape")
        at = wait_for("the exit question's Yes button",
                      lambda h: h[1] == "push button" and h[2] == "Yes", at)
        keys("y")
        wait_for("the main menu, again", lambda h: h[1:3] == menu[1:3], at + 1)
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

    pyatspi.Registry.registerEventListener(on_focus, "object:state-changed:focused")
    threading.Thread(target=drive, daemon=True).start()
    pyatspi.Registry.start()
    problems = outcome + errors
    if problems:
        print("Last focus changes heard:")
        for _, role, name, cell in heard[-20:]:
            print("  ", role, repr(name), cell or "")
        print("FAILED:\n  - " + "\n  - ".join(problems))
        return 1
    print("PASSED: cells heard as letter, row and column; the game lived and ended normally")
    return 0


if __name__ == "__main__":
    sys.exit(main())
