"""What the Orca measuring scripts share: the session's start, the lines of
Orca's debug log on a timeline from that start, and printing the timeline.

A session's folder holds "start" (seconds since the epoch, written as the
session began) and "orca.log" (Orca's debug log, each line opening with the
time of day)."""
import datetime


def session_start(work):
    return float(open(work + "/start").read())


def orca_events(work, start, marker, said=str.strip):
    """(seconds from start, "orca    " + said(rest)) for each log line holding
    marker, where rest is what follows it."""
    day = datetime.datetime.fromtimestamp(start)
    midnight = start - (day.hour * 3600 + day.minute * 60 + day.second + day.microsecond / 1e6)
    events = []
    for line in open(work + "/orca.log", errors="replace"):
        if marker in line:
            h, m, s = line[:15].split(":")
            rest = line.split(marker, 1)[1]
            events.append((int(h) * 3600 + int(m) * 60 + float(s) - (start - midnight),
                           "orca    " + said(rest)))
    return events


def print_timeline(events):
    for when, what in sorted(events):
        print("%8.3f  %s" % (when, what))
