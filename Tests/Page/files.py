#!/usr/bin/env python3
"""Tests pages of exported, unusual and unusable files without a browser: files.py PROGRAM SOURCE_FOLDER"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
import plan
from plan import bad, expect, faults

program, source = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
START = '<Project xmlns="http://schemas.microsoft.com/project">'


def run(*arguments):
    return subprocess.run([program, *arguments], stderr=subprocess.PIPE, stdout=subprocess.PIPE, text=True, timeout=60,
                          env={**os.environ, "SOURCE_DATE_EPOCH": "1777888800", "TZ": "UTC"})


def check_golden(path):
    out = run(path, "page.html")
    expect(f"{path}: status", 0, out.returncode)
    page = plan.page_tree("page.html")
    rows = plan.page_rows(page)
    for expected, actual in zip(plan.expected_rows(path), rows, strict=True):
        expect(f"{path}: row", expected, actual[:8])
    for names, row in zip(plan.expected_resources(path), rows, strict=True):
        missing = [name for name in names if name not in row[8]]
        expect(f"{path}: resources that are missing in {row}", [], missing)
    expect(f"{path}: details", plan.expected_details(path), plan.page_details(page))
    if os.path.getsize("page.html") > 2 * max(os.path.getsize(path), 40000):
        bad(f"{path}: the page has {os.path.getsize('page.html')} bytes")
    os.remove("page.html")


def task(uid, level=1, more=""):
    return (f"<Task><UID>{uid}</UID><ID>{uid}</ID><Name>Task {uid}</Name><OutlineLevel>{level}</OutlineLevel>"
            f"<Start>2026-03-02T08:00:00</Start><Finish>2026-03-03T17:00:00</Finish>{more}</Task>")


def tasks(*elements):
    return START + "<Tasks>" + "".join(elements) + "</Tasks></Project>"


def link(uid):
    return f"<PredecessorLink><PredecessorUID>{uid}</PredecessorUID><Type>1</Type></PredecessorLink>"


def dates(start, finish):
    return f"<Task><UID>7</UID><Name>dated</Name><Start>{start}</Start><Finish>{finish}</Finish></Task>"


BASES = "".join(f"<Calendar><UID>{i}</UID><BaseCalendarUID>{1 - i}</BaseCalendarUID></Calendar>" for i in (0, 1))
LONG = ("<Calendar><UID>1</UID><Exceptions><Exception><DayWorking>0</DayWorking><TimePeriod><FromDate>0001-01-01T00:00:00"
        "</FromDate><ToDate>999999999-12-31T00:00:00</ToDate></TimePeriod></Exception></Exceptions></Calendar>")

# Files for which a page is made, and texts that it must contain.
ODD = {
    "nothing": (START + "</Project>", "<title>Plan</title>"),
    "no dates": (tasks(dates("", "soon")), "dated"),
    "the year 1": (tasks(dates("0001-01-01T00:00:00", "0001-01-02T00:00:00")), "0001-01-01"),
    "the year 999999999": (tasks(dates("999999999-01-01T00:00:00", "999999999-12-31T00:00:00")), "999999999-12-31"),
    "both": (tasks(dates("0001-01-01T00:00:00", "999999999-12-31T00:00:00")), "999999999-12-31"),
    "one wrong date": (tasks(task(1), dates("0001-01-01T00:00:00", "2026-03-04T00:00:00")), "1 dates are before 1900"),
    "finish before start": (tasks(dates("2026-03-04T00:00:00", "2026-03-01T00:00:00")), "2026-03-01"),
    "a flat plan": (tasks(*map(task, range(1, 1002))), '<tr data-l="0"><td>1001</td>'),
    "levels that jump": (tasks(task(1, 5), task(2, -3), task(3, 10**12), task(4, "x")), "Task 4"),
    "links in a circle": (tasks(task(1, 1, link(2)), task(2, 1, link(1)), task(3, 1, link(3))), "3 FS"),
    "a link to nothing": (tasks(task(1, 1, link(99))), "unknown UID 99 FS"),
    "5,000 links": (tasks(*map(task, range(1, 5001)), task(6000, 1, "".join(map(link, range(1, 5001))))), "5000 FS"),
    "tasks of one UID": (tasks(task(1), task(1)), "Task 1"),
    "10,000 levels": (tasks(*(task(i, i) for i in range(10000))), "Task 9999"),
    "bases in a circle": (START + f"<CalendarUID>0</CalendarUID><Calendars>{BASES}</Calendars></Project>", "Like"),
    "an endless exception": (START + f"<CalendarUID>1</CalendarUID><Calendars>{LONG}</Calendars></Project>",
                             "0001-01-01 to 999999999-12-31: off"),
    "an hour that is none": (tasks(dates("2026-03-04T77:00:00", "2026-03-04T24:00:00")), "2026-03-05"),
    "line breaks": (tasks("<Task><Name>a&#13;b&#13;&#10;c</Name></Task>"), ">a\nb\nc<"),
    "a rate": (START + "<CurrencySymbol>kr</CurrencySymbol><CurrencySymbolPosition>2</CurrencySymbolPosition><Resources>"
               "<Resource><Name>A</Name><StandardRate>5</StandardRate></Resource></Resources></Project>", "kr 5.00 per hour"),
    "a calendar that says nothing": (START + "<Calendars><Calendar><UID>1</UID></Calendar></Calendars></Project>", "Sun-Sat off"),
    "a repeated element": (START + "<Title>A</Title><Title>B</Title></Project>", "<title>A</title>"),
}
# Files and arguments that are refused: the file, the arguments, the status and the message.
REFUSED = {
    "no XML": ("plan", ["in.xml"], 1, "in.xml cannot be shown: line 1: text stands outside the root"),
    "another kind": (START.replace("Project ", "Plan ").replace(">", "/>"), ["in.xml"], 1, "no Microsoft Project XML"),
    "a document type": ("<!DOCTYPE Project>" + START + "</Project>", ["in.xml"], 1, "DOCTYPE"),
    "no such file": (START + "</Project>", ["absent.xml"], 1, "cannot read .*absent.xml: No such file"),
    "an existing page": (START + "</Project>", ["in.xml", "existing.html"], 1, "existing.html exists"),
    "no folder": (START + "</Project>", ["in.xml", "absent/out.html"], 1, "could not be written: The folder .* does not exist"),
    "a bundle": (START + "</Project>", ["in.xml", "P.kvdx/out.html"], 1, "inside of the bundle"),
    "no name": (START + "</Project>", ["in.xml", ""], 1, "the output has no name"),
    "no argument": (START + "</Project>", [], 2, "required"),
    "a name with an escape": (START + "</Project>", ["\x1b.xml"], 1, r"\\x1b\.xml"),
    "too many": (START + "</Project>", ["in.xml", "a", "b"], 2, "--help"),
}


def check_odd(what, contents, shown):
    pathlib.Path("in.xml").write_bytes(contents.encode())
    out = run("in.xml")
    expect(f"{what}: status and message", (0, "mspdi-page: " + os.path.realpath("in.html") + " written\n"),
           (out.returncode, out.stderr))
    page = pathlib.Path("in.html").read_text(encoding="utf-8")
    if shown not in page:
        bad(f"{what}: {shown} is not in the page")
    plan.page_tree("in.html")
    if len(page) > 3 * len(contents) + 60000:
        bad(f"{what}: {len(page)} characters for {len(contents)}")
    os.remove("in.html")


def check_refused(what, contents, arguments, status, message):
    pathlib.Path("in.xml").write_text(contents)
    pathlib.Path("existing.html").write_text("kept")
    before = sorted(os.listdir())
    out = run(*arguments)
    expect(f"{what}: status", status, out.returncode)
    if not re.search(message, out.stderr):
        bad(f"{what}: wrong message {out.stderr}")
    expect(f"{what}: files", (before, "kept"), (sorted(os.listdir()), pathlib.Path("existing.html").read_text()))


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    os.mkdir("P.kvdx")
    golden = sorted(map(str, source.glob("Tests/Golden/*/expected.xml")))
    expect("golden cases", True, bool(golden))
    for path in golden:
        check_golden(path)
    for what, (contents, shown) in ODD.items():
        check_odd(what, contents, shown)
    for what, row in REFUSED.items():
        check_refused(what, *row)
    # By default the page is beside the file and has the first free name.
    pathlib.Path("in.xml").write_text(START + "</Project>")
    for name in ("in.html", "in-1.html", "in-2.html"):
        run("in.xml")
        expect(f"{name} is written", True, os.path.exists(name))
    expect("a second page", pathlib.Path("in.html").read_bytes(), pathlib.Path("in-2.html").read_bytes())
    os.chdir("/")
sys.exit(bool(faults))
