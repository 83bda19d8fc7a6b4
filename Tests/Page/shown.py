#!/usr/bin/env python3
"""Tests how a browser shows pages: shown.py PROGRAM SOURCE_FOLDER. Exit status 77 means that there is no Chromium."""

import os
import pathlib
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
import browser
import plan
from plan import expect, faults

if not browser.find_program():
    print("needs the package chromium")
    sys.exit(77)
program, source = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()

HOSTILE = ["<script>alert(1)</script>", "\"onload=\"alert(1)", "'><img src=x onerror=alert(1)>", "</title></svg><b>",
           "</style><style>*{display:none}", "{{rows}} &lt;i&gt; &amp;amp;", "]]><!--", "http://127.0.0.1:9/ ${alert(1)}"]

# The visible bars with their row numbers and positions in the chart; the positions of months, today and shaded days.
BARS = """(() => {
  const head = document.querySelector(".head").getBoundingClientRect();
  const back = document.querySelector(".back");
  const ends = (path) => {
    const box = path ? path.getBoundingClientRect() : null;
    return box ? [box.left - head.left, box.right - head.left] : [];
  };
  const isShaded = (x) => back.querySelector(".w").isPointInFill(new DOMPoint(x, 0.5));
  const bars = Array.from(document.querySelectorAll("#plan tbody path.b")).map((bar) => {
    const box = bar.getBoundingClientRect();
    const done = bar.parentNode.querySelector(".p");
    return {number: bar.closest("tr").cells[0].textContent, left: box.left - head.left, right: box.right - head.left,
            base: ends(bar.parentNode.querySelector(".l")),
            done: done ? done.getBoundingClientRect().width / box.width : 0};
  });
  const months = Array.from(document.querySelectorAll(".head g.on text[y='15']")).map((label) =>
    [label.textContent, label.getBoundingClientRect().left - head.left - 3]);
  return {bars, months, today: ends(back.querySelector(".n"))[0],
    shaded: Array.from({length: DAYS}, (_, day) => isShaded((day + 0.5) / DAYS * back.viewBox.baseVal.width)), width: head.width};
})()"""
SHOWN = "Array.from(document.querySelectorAll('#plan tbody tr')).filter((row) => row.getClientRects().length > 0).length"


def make_page(path):
    subprocess.run([program, path, "page.html"], check=True, stderr=subprocess.DEVNULL,
                   env={**os.environ, "SOURCE_DATE_EPOCH": "1777888800", "TZ": "UTC"})
    return "page.html"


def open_page(window, path):
    if os.path.exists("page.html"):
        os.remove("page.html")
    window.open(make_page(path))
    expect(f"{path}: complaints and requests", ([], []), (window.complaints(), window.requests()))


def check_bars(window, path):
    """Compares the positions of bars with the dates in the file, and the positions of months with their names."""
    _, tasks = plan.tasks(path)
    by_number = {plan.text(task, "ID"): task for task in tasks}
    title = window.value("document.querySelector('.head title').textContent")
    first, last = map(plan.moment, title.removeprefix("Timeline from ").split(" to "))
    days = (last - first).days + 1
    shown = window.value(BARS.replace("DAYS", str(days)))
    day = shown["width"] / days

    def place(moment):
        return (moment - first).total_seconds() / 86400 * day

    bars = [bar for bar in shown["bars"] if bar["right"] - bar["left"] > 4][:25]
    expect("bars that are wide enough", True, len(bars) >= 10)
    for bar in bars:
        task = by_number[bar["number"]]
        ends = [place(plan.moment(plan.text(task, name))) for name in ("Start", "Finish")]
        wrong = [end for end, seen in zip(ends, (bar["left"], bar["right"])) if abs(end - seen) > 1.2]
        expect(f"ends of bar {bar}", [], wrong)
        baseline = task.find(plan.NAMESPACE + "Baseline")
        ends = [] if baseline is None else [place(plan.moment(plan.text(baseline, name))) for name in ("Start", "Finish")]
        wrong = [end for end, seen in zip(ends, bar["base"], strict=True) if abs(end - seen) > 2.2]
        expect(f"baseline of {bar}", [], wrong)
        done = int(plan.text(task, "PercentComplete") or 0) / 100
        expect(f"progress {done} of {bar}", True, abs(bar["done"] - done) < 0.12)
    shaded = {(first + plan.datetime.timedelta(i)).isoformat()[:10] for i, off in enumerate(shown["shaded"]) if off}
    expect(f"{path}: shaded days", plan.days_off(path, first, last), shaded)
    expect(f"{path}: today", True, abs(shown["today"] - place(plan.datetime.datetime(2026, 5, 4, 10))) < 1.2)
    for label, left in shown["months"][1:]:
        moment = plan.datetime.datetime.strptime(label, "%b %Y")
        expect(f"place of {label}: {left}", True, abs(place(moment) - left) < 2.5)


def check_kinds(window, path):
    _, tasks = plan.tasks(path)
    milestones = sum(plan.text(task, "Milestone") == "1" for task in tasks)
    groups = sum(plan.text(task, "Summary") == "1" for task in tasks)
    counts = [window.value(f"document.querySelectorAll('#plan tbody path.{kind}').length") for kind in "bms"]
    expect(f"{path}: bars, milestones, groups", [len(tasks) - milestones - groups, milestones, groups], counts)
    expect(f"{path}: rows", len(tasks), window.value(SHOWN))


def check_folding(window, path):
    _, tasks = plan.tasks(path)
    levels = [int(plan.text(task, "OutlineLevel")) for task in tasks]
    group = next(i for i, level in enumerate(levels) if level == 1 and levels[i + 1] == 2)
    inside = next(i for i in range(group + 1, len(levels)) if levels[i] <= 1) - group - 1
    fold = f"document.querySelectorAll('#plan tbody tr')[{group}].querySelector('.fold').click()"
    window.value(fold)
    expect("rows when a group is folded", len(tasks) - inside, window.value(SHOWN))
    window.value(fold)
    expect("rows when it is unfolded", len(tasks), window.value(SHOWN))
    window.value("document.querySelector('[data-zoom=\"2\"]').click()")
    check_bars(window, path)
    window.value("document.querySelector('[data-zoom=\"0\"]').click()")


def check_alignment(window):
    """Rows are aligned with the table's head and all have the same height, with bars in the middle."""
    boxes = window.value("""Array.from(document.querySelectorAll("#plan tr")).slice(0, 30).map((row) =>
      [Math.round(row.cells[9].getBoundingClientRect().left), Math.round(row.getBoundingClientRect().height)])""")
    expect("left edges of the chart", 1, len({left for left, _ in boxes}))
    expect("heights of rows", 1, len({height for _, height in boxes[1:]}))


def check_note(window, path):
    """A click on a task's sign shows its notes and fields."""
    window.value("document.querySelector('#plan a').click()")
    shown = window.value("['p', 'dt', 'dd'].map((kind) => Array.from(document.querySelectorAll('dialog[open] ' + kind))"
                         ".map((one) => one.textContent))")
    notes, fields = plan.expected_details(path)[0]
    expect("the note that is shown", [[notes] if notes else [], [name for name, _ in fields], [value for _, value in fields]],
           shown)
    window.value("document.querySelector('dialog button').click()")


def check_hostile(window):
    """Texts of the plan are shown as texts everywhere, never used as markup."""
    escaped = [text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;") for text in HOSTILE]
    texts = "".join(f"<Task><UID>{i}</UID><ID>{text}</ID><Name>{text}</Name><OutlineLevel>{i % 2}</OutlineLevel>"
                    f"<Start>2026-03-02T08:00:00</Start><Notes>{text}</Notes><ExtendedAttribute><FieldID>1</FieldID>"
                    f"<Value>{text}</Value></ExtendedAttribute></Task>" for i, text in enumerate(escaped))
    calendars = "".join(f"<Calendar><UID>{i}</UID><Name>{text}</Name><Exceptions><Exception><Name>{text}</Name><TimePeriod>"
                        "<FromDate>2026-03-02T00:00:00</FromDate><ToDate>2026-03-02T00:00:00</ToDate></TimePeriod>"
                        "</Exception></Exceptions></Calendar>" for i, text in enumerate(escaped))
    resources = "".join(f"<Resource><UID>{i}</UID><ID>{text}</ID><Name>{text}</Name><Group>{text}</Group><CalendarUID>"
                        f"{text}</CalendarUID><StandardRate>5</StandardRate></Resource>" for i, text in enumerate(escaped))
    assignments = "".join(f"<Assignment><TaskUID>{i}</TaskUID><ResourceUID>{i}</ResourceUID></Assignment>"
                          for i in range(len(HOSTILE)))
    pathlib.Path("hostile.xml").write_text(
        f'<Project xmlns="http://schemas.microsoft.com/project"><Title>{escaped[0]}</Title><CurrencySymbol>{escaped[2]}'
        f"</CurrencySymbol><ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID><Alias>{escaped[1]}</Alias>"
        f"</ExtendedAttribute></ExtendedAttributes><Calendars>{calendars}</Calendars><Tasks>{texts}</Tasks><Resources>"
        f"{resources}</Resources><Assignments>{assignments}</Assignments></Project>")
    open_page(window, "hostile.xml")
    expect("title", HOSTILE[0], window.value("document.title"))
    expect("heading", HOSTILE[0], window.value("document.querySelector('h1').textContent"))

    def texts_of(selector):
        return window.value(f"Array.from(document.querySelectorAll(`{selector}`)).map((one) => one.firstChild.textContent)")

    starts = window.value("Array.from(document.querySelectorAll('#plan tbody svg title')).map((one) => one.textContent)")
    expect("titles of bars", HOSTILE, [start.rsplit(": 2026", 1)[0] for start in starts])
    names = window.value("""Array.from(document.querySelectorAll("#plan tbody th")).map((cell) =>
      Array.from(cell.childNodes).filter((node) => node.nodeType === 3).map((node) => node.data).join("").trim())""")
    expect("names of tasks", HOSTILE, names)
    expect("assigned resources", HOSTILE, texts_of("#plan tbody td:nth-child(9)"))
    expect("groups", HOSTILE, texts_of(".plain tbody td:nth-child(7)"))
    expect("calendars", HOSTILE, texts_of(".calendar h3"))
    expect("notes", HOSTILE, texts_of(".details p"))
    expect("fields", HOSTILE, texts_of(".details dd"))
    made = window.value("[document.scripts.length, document.querySelectorAll('style').length, document.images.length,"
                        "document.querySelectorAll('[onload], [onerror], b').length]")
    expect("scripts, styles, images, others", [1, 1, 0, 0], made)


def check_large(window):
    """A page of more than a thousand rows is folded at first, and all rows can be unfolded."""
    rows = "".join(f"<Task><UID>{i}</UID><Name>Task {i}</Name><OutlineLevel>{0 if i % 40 == 0 else 1}</OutlineLevel>"
                   f"<Start>2026-03-02T08:00:00</Start></Task>" for i in range(2000))
    pathlib.Path("large.xml").write_text(
        f'<Project xmlns="http://schemas.microsoft.com/project"><Tasks>{rows}</Tasks></Project>')
    open_page(window, "large.xml")
    expect("rows that are shown at first", 50, window.value(SHOWN))
    window.value("document.querySelector('.fold').click()")
    expect("rows behind one click", 89, window.value(SHOWN))
    window.value("document.querySelector('[data-fold=\"1\"]').click()")
    expect("rows when all groups are folded", 50, window.value(SHOWN))
    window.value("document.querySelector('[data-fold=\"0\"]').click()")
    expect("rows that are not hidden", 2000, window.value("document.querySelectorAll('#plan tr[data-l]:not(.h)').length"))


with tempfile.TemporaryDirectory() as folder, browser.Browser() as window:
    os.chdir(folder)
    for case in ("product-launch", "house-renovation", "autumn-conference"):
        path = str(source / "Tests/Golden" / case / "expected.xml")
        open_page(window, path)
        check_kinds(window, path)
        check_bars(window, path)
        check_alignment(window)
        check_folding(window, path)
        check_note(window, path)
    check_hostile(window)
    check_large(window)
    os.chdir("/")
sys.exit(bool(faults))
