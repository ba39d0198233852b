#!/usr/bin/python3
"""Plays the road from the main menu to a puzzle and back, as a blind player
would, and listens on the accessibility bus the way a screen reader does.

Run inside a D-Bus session on an X display with a window manager (see
screenreader_test.sh). Starts the game, types keys into it with xdotool, and
hears every focus change (object:state-changed:focused, Orca's cue to speak).
On each grid cell it asks what Orca asks: the cell's name, its row and column
through the table, the row and column headers. Checks that:

- every cell the cursor lands on is heard as its letter, in the row and column
  it really is in (the numbers of its headers agree);
- 100 quick moves are all heard, within a few seconds, and the game lives on;
- leaving the puzzle asks "Really exit this word search?", Yes brings back
  the main menu, and questions put to the gone puzzle's cells (a reader's
  cache) don't bring the game down;
- Escape on the main menu ends the game normally.

Usage: atspi_listen.py <lexicove executable>
Exit code 0 when every check holds, 1 otherwise (the reasons are printed).
"""

import os
import subprocess
import sys
import threading
import time

import pyatspi
from gi.repository import GLib

APP_NAME = "Lexicove"
STEP_TIMEOUT = 20.0     # seconds for a window to come and take the focus
WALK_MOVES = 100
WALK_LIMIT = 8.0        # seconds for all the moves to be heard
KEY_DELAY_MS = 12       # between two key presses of the walk


class Heard:
    """One focus change as a screen reader sees it."""

    def __init__(self, role, name, cell=None, source=None):
        self.time = time.monotonic()
        self.role = role
        self.name = name
        self.cell = cell        # (row, column, row header, column header, letter at) or None
        self.source = source

    def __str__(self):
        text = "%s %r" % (self.role, self.name)
        if self.cell:
            text += " row %d column %d (headers %r, %r)" % (
                self.cell[0] + 1, self.cell[1] + 1, self.cell[2], self.cell[3])
        return text


class Listener:
    def __init__(self):
        self.lock = threading.Condition()
        self.heard = []
        self.errors = []

    def on_focus(self, event):
        if event.detail1 != 1:
            return
        source = event.source
        try:
            if source.getApplication().name != APP_NAME:
                return
            role = source.getRoleName()
            name = source.name
            cell = None
            if role == "table cell":
                cell = self.describe_cell(source)
        except Exception as error:  # a reader survives odd objects; so do we
            with self.lock:
                self.errors.append("a focus event could not be read: %r" % (error,))
            return
        with self.lock:
            self.heard.append(Heard(role, name, cell, source))
            self.lock.notify_all()

    @staticmethod
    def describe_cell(cell):
        # As Orca does on Qt: the position through the parent table, then the
        # headers, which carry the numbers the player hears.
        table_object = cell.parent
        table = table_object.queryTable()
        index = cell.getIndexInParent()
        row = table.getRowAtIndex(index)
        column = table.getColumnAtIndex(index)
        row_header = table.getRowHeader(row)
        column_header = table.getColumnHeader(column)
        again = table.getAccessibleAt(row, column)
        cell.getState()
        return (row, column,
                row_header.name if row_header else None,
                column_header.name if column_header else None,
                again.name if again else None)

    def wait_for(self, what, test, start, timeout=STEP_TIMEOUT):
        """Waits for a focus change at or after index start that passes test;
        returns its index."""
        deadline = time.monotonic() + timeout
        with self.lock:
            while True:
                for i in range(start, len(self.heard)):
                    if test(self.heard[i]):
                        return i
                left = deadline - time.monotonic()
                if left <= 0:
                    raise Failure("%s never took the focus within %.0f s" % (what, timeout))
                self.lock.wait(left)

    def count(self):
        with self.lock:
            return len(self.heard)


class Failure(Exception):
    pass


def on_main(function, timeout=10.0):
    """Runs function in the listening thread, as a reader's own queries run,
    and returns what it returns (None on an error or a timeout)."""
    done = threading.Event()
    result = {}

    def run():
        try:
            result["value"] = function()
        except Exception as error:
            result["error"] = error
        done.set()
        return False

    GLib.idle_add(run)
    done.wait(timeout)
    return result.get("value")


def keys(*names, delay=60):
    subprocess.run(["xdotool", "key", "--delay", str(delay)] + list(names), check=True)


def snake(moves, columns):
    """Keys and the cells they lead to, from row 0 column 0: along the row,
    down one, back along the next row, and so on."""
    path = []
    row, column, step = 0, 0, 1
    while len(path) < moves:
        if 0 <= column + step < columns:
            column += step
            path.append(("Right" if step > 0 else "Left", row, column))
        else:
            row += 1
            step = -step
            path.append(("Down", row, column))
    return path


def check_cell(heard, row, column, problems):
    if heard.role != "table cell" or not heard.cell:
        problems.append("expected a grid cell, heard %s" % heard)
        return
    got_row, got_column, row_header, column_header, letter_at = heard.cell
    if (got_row, got_column) != (row, column):
        problems.append("expected row %d column %d, heard %s" % (row + 1, column + 1, heard))
    if len(heard.name) != 1 or heard.name.isspace():
        problems.append("a cell must be heard as its one letter, heard %s" % heard)
    if letter_at != heard.name:
        problems.append("the table holds %r where the cell says %r (%s)"
                        % (letter_at, heard.name, heard))
    if (row_header, column_header) != (str(got_row + 1), str(got_column + 1)):
        problems.append("headers %r, %r don't number row %d column %d"
                        % (row_header, column_header, got_row + 1, got_column + 1))


def ancestor_texts(accessible):
    """The names and texts of the accessible and its ancestors, up to the
    window (a message box is an alert holding its text)."""
    texts = []
    node = accessible
    for _ in range(8):
        if node is None:
            break
        texts.append(node.name or "")
        for i in range(node.childCount):
            child = node.getChildAtIndex(i)
            if child is not None:
                texts.append(child.name or "")
        if node.getRoleName() in ("alert", "dialog", "frame", "window"):
            break
        node = node.parent
    return texts


def play(program, listener):
    env = dict(os.environ, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
    game = subprocess.Popen([program], env=env)
    problems = []
    try:
        # Main menu: "Play a Puzzle" is chosen at start; Enter takes it.
        at = listener.wait_for("the main menu", lambda h: h.role == "list", 0)
        menu = listener.heard[at]
        print("main menu:", menu)
        keys("Return")
        # Chooser: the first list is chosen; Enter takes it.
        at = listener.wait_for("the word list chooser",
                               lambda h: h.name == "Word lists" or h.role == "list item", at + 1)
        print("chooser:", listener.heard[at])
        keys("Return")
        # Options window: the defaults make a 20 by 20 puzzle; Alt+O is OK.
        at = listener.wait_for("the options window",
                               lambda h: h.name.startswith("Rows of letters"), at + 1)
        print("options:", listener.heard[at])
        keys("alt+o")
        # Puzzle window: the cursor starts on the first letter.
        at = listener.wait_for("the puzzle grid", lambda h: h.role == "table cell", at + 1)
        first = listener.heard[at]
        print("puzzle starts on:", first)
        check_cell(first, 0, 0, problems)
        cells_seen = [first.source]
        table = on_main(lambda: first.source.parent)
        columns = on_main(lambda: table.queryTable().nColumns)
        if not columns:
            raise Failure("the puzzle grid does not tell its number of columns")

        # The walk: quick moves, each heard as its letter, row and column.
        time.sleep(0.5)  # the window's own first focus changes settle
        start = listener.count()
        path = snake(WALK_MOVES, columns)
        began = time.monotonic()
        keys(*[key for key, _, _ in path], delay=KEY_DELAY_MS)
        moves = []
        index = start
        for n in range(WALK_MOVES):
            left = WALK_LIMIT - (time.monotonic() - began)
            index = listener.wait_for("move %d of the walk" % (n + 1),
                                      lambda h: h.role == "table cell", index, max(left, 0.01))
            moves.append(listener.heard[index])
            index += 1
        took = moves[-1].time - began
        print("%d moves heard in %.2f s" % (WALK_MOVES, took))
        for heard, (_, row, column) in zip(moves, path):
            check_cell(heard, row, column, problems)
        cells_seen += [moves[0].source, moves[-1].source]
        print("last move:", moves[-1])
        if game.poll() is not None:
            raise Failure("the game ended during the walk (exit code %s)" % game.returncode)

        # Leaving: the question, then Yes.
        keys("Escape")
        at = listener.wait_for("the exit question's Yes button",
                               lambda h: h.role == "push button" and h.name == "Yes", index)
        yes = listener.heard[at].source
        texts = on_main(lambda: ancestor_texts(yes)) or []
        if "Really exit this word search?" not in texts:
            problems.append("the exit question does not say 'Really exit this word search?' "
                            "(heard %r)" % texts)
        keys("y")
        at = listener.wait_for("the main menu, again",
                               lambda h: h.role == menu.role and h.name == menu.name, at + 1)
        print("back on:", listener.heard[at])

        # A reader may still ask about objects it has cached: the puzzle's
        # cells and table are gone, and the game must answer or refuse, not die.
        def ask_gone():
            for stale in cells_seen + [table]:
                for ask in (lambda a: a.name, lambda a: a.getRoleName(), lambda a: a.getState(),
                            lambda a: a.getIndexInParent(), lambda a: a.parent,
                            lambda a: a.queryTable().nRows):
                    try:
                        ask(stale)
                    except Exception:
                        pass  # refused: a gone object may say so
        on_main(ask_gone)
        time.sleep(0.5)
        if game.poll() is not None:
            raise Failure("the game ended when its gone puzzle was asked about (exit code %s)"
                          % game.returncode)

        # Escape on the main menu ends the game.
        keys("Escape")
        try:
            code = game.wait(timeout=10)
        except subprocess.TimeoutExpired:
            raise Failure("the game did not end after Escape on the main menu")
        if code != 0:
            problems.append("the game ended with exit code %d" % code)
    finally:
        if game.poll() is None:
            game.kill()
            game.wait()
    return problems


def main():
    if len(sys.argv) != 2:
        print(__doc__)
        return 2
    listener = Listener()
    pyatspi.Registry.registerEventListener(listener.on_focus, "object:state-changed:focused")
    outcome = {}

    def drive():
        try:
            outcome["problems"] = play(sys.argv[1], listener)
        except Failure as failure:
            outcome["problems"] = [str(failure)]
        except Exception as error:
            outcome["problems"] = ["the check itself failed: %r" % (error,)]
        finally:
            pyatspi.Registry.stop()

    threading.Thread(target=drive, daemon=True).start()
    pyatspi.Registry.start()

    problems = outcome.get("problems", ["the check did not finish"]) + listener.errors
    if problems:
        print("\nFocus changes heard:")
        for heard in listener.heard[-30:]:
            print("  ", heard)
        print("\nFAILED:")
        for problem in problems:
            print("  -", problem)
        return 1
    print("PASSED: cells heard as letter, row and column; the game lived and ended normally")
    return 0


if __name__ == "__main__":
    sys.exit(main())
