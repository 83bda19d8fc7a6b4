"""Reads a plan from a Microsoft Project XML file and from a page; collects faults. Uses only the standard library."""

import datetime
import re
import xml.etree.ElementTree as ElementTree

faults = []


def bad(what):
    faults.append(what)
    print(what)


def expect(what, expected, actual):
    if expected != actual:
        bad(f"{what}:\n  expected {expected}\n  actual   {actual}")


NAMESPACE = "{http://schemas.microsoft.com/project}"


def text(element, name):
    """The text of a child, with line feeds instead of carriage returns, as on a page."""
    return (element.findtext(NAMESPACE + name) or "").replace("\r\n", "\n").replace("\r", "\n")


def tasks(path):
    root = ElementTree.parse(path).getroot()
    return root, root.findall(f"{NAMESPACE}Tasks/{NAMESPACE}Task")


def hours(duration):
    """The hours of "PT12H30M0S"."""
    if not duration:
        return None
    found = re.fullmatch(r"PT(\d+)H(\d+)M(\d+)S", duration).groups()
    return int(found[0]) + int(found[1]) / 60 + int(found[2]) / 3600


def short(number, unit):
    return "" if number is None else f"{number:.2f}".rstrip("0").rstrip(".") + unit


def shown_moment(moment):
    return moment[:16].replace("T", " ")


def shown_link(link, numbers):
    kind = ("FF", "FS", "SF", "SS")[int(text(link, "Type"))]
    lag = int(text(link, "LinkLag") or 0)
    tenths, unit = {"19": (1, " %")}.get(text(link, "LagFormat"), (4800, " d"))
    if unit == " d" and abs(lag) < 2400:
        tenths, unit = (600, " h") if abs(lag) >= 600 else (10, " min")
    shown = f" {lag / tenths:+.2f}".rstrip("0").rstrip(".") + unit if lag else ""
    uid = text(link, "PredecessorUID")
    return f"{numbers.get(uid, 'unknown UID ' + uid)} {kind}{shown}"


def expected_rows(path):
    """The texts that a task's row must have, without resources and chart."""
    _, elements = tasks(path)
    numbers = {text(task, "UID"): text(task, "ID") for task in elements}
    rows = []
    for task in elements:
        duration = hours(text(task, "Duration"))
        links = task.findall(NAMESPACE + "PredecessorLink")
        rows.append([text(task, "ID"), text(task, "Name"), shown_moment(text(task, "Start")),
                     shown_moment(text(task, "Finish")), short(None if duration is None else duration / 8, " d"),
                     short(hours(text(task, "Work")), " h"), (text(task, "PercentComplete") or "0") + " %",
                     ", ".join(shown_link(link, numbers) for link in links)])
    return rows


def expected_resources(path):
    """The names of each task's resources."""
    root, elements = tasks(path)
    names = {text(resource, "UID"): text(resource, "Name")
             for resource in root.findall(f"{NAMESPACE}Resources/{NAMESPACE}Resource")}
    assigned = {}
    for assignment in root.findall(f"{NAMESPACE}Assignments/{NAMESPACE}Assignment"):
        name = names.get(text(assignment, "ResourceUID"))
        if name:
            assigned.setdefault(text(assignment, "TaskUID"), []).append(name)
    return [assigned.get(text(task, "UID"), []) for task in elements]


def days_off(path, first, last):
    """The dates without working time in the project's calendar, which has no base."""
    root, _ = tasks(path)
    calendar = next(calendar for calendar in root.iter(NAMESPACE + "Calendar")
                    if text(calendar, "UID") == text(root, "CalendarUID"))
    hours = {text(day, "DayType"): text(day, "DayWorking") for day in calendar.findall(f"{NAMESPACE}WeekDays/{NAMESPACE}WeekDay")}
    off = set()
    for day in (first + datetime.timedelta(days) for days in range((last - first).days + 1)):
        working = hours.get(str(day.isoweekday() % 7 + 1))
        for exception in calendar.iter(NAMESPACE + "Exception"):
            period = exception.find(NAMESPACE + "TimePeriod")
            if text(period, "FromDate")[:10] <= day.isoformat()[:10] <= text(period, "ToDate")[:10]:
                working = text(exception, "DayWorking")
        if working != "1":
            off.add(day.isoformat()[:10])
    return off


def page_tree(path):
    """Parses the page, which must be well-formed XML."""
    with open(path, encoding="utf-8") as file:
        return ElementTree.fromstring(file.read().removeprefix("<!DOCTYPE html>"))


def page_rows(page):
    """The table's rows: texts of the cells before the chart, without the signs that open notes."""
    rows = []
    for row in page.findall(".//table[@id='plan']/tbody/tr"):
        for cell in row:
            for link in cell.findall("a"):
                cell.remove(link)
        rows.append(["".join(cell.itertext()).rstrip(" ") for cell in list(row)[:-1]])
    return rows


def expected_details(path):
    """For each task with notes or custom fields: its notes, and the fields with their names."""
    root, elements = tasks(path)
    definitions = {}
    for definition in root.findall(f"{NAMESPACE}ExtendedAttributes/{NAMESPACE}ExtendedAttribute"):
        definitions.setdefault(text(definition, "FieldID"), []).append(text(definition, "Alias") or text(definition, "FieldName"))
    details = []
    for task in elements:
        fields = []
        for field in task.findall(NAMESPACE + "ExtendedAttribute"):
            names = definitions[text(field, "FieldID")]
            fields.append((names.pop(0) if len(names) > 1 else names[0], text(field, "Value")))
        if fields or text(task, "Notes"):
            details.append((text(task, "Notes"), fields))
    return details


def page_details(page):
    details = []
    for entry in page.findall(".//section[@class='details']/details/div"):
        if entry.get("id").startswith("t"):
            names = ["".join(name.itertext()) for name in entry.findall("dl/dt")]
            values = ["".join(value.itertext()) for value in entry.findall("dl/dd")]
            details.append((entry.findtext("p") or "", list(zip(names, values))))
    return details


def moment(shown):
    return datetime.datetime.fromisoformat(shown)
