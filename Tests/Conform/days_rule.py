"""The hours of a plan's resources on every date, computed from the bundle by the rule in Conform/PlanHours.h.

The hours of a day are a number with one bit for each second, and dates are computed one by one. The exporter computes
with spans of time and ranges of dates instead, so the two are unlikely to have the same fault.
"""
import datetime
import re
import xml.etree.ElementTree as ElementTree
import zoneinfo
from fractions import Fraction
from functools import lru_cache

DAY = 86400
WHOLE = (1 << DAY) - 1
NAMES = ("monday", "tuesday", "wednesday", "thursday", "friday", "saturday", "sunday")  # in the order of datetime
DATE = re.compile(r"(\d+)-(\d+)-(\d+)(?:T(\d+):(\d+):(\d+)(?:(Z)|([+-]\d\d):(\d\d))?)?$")


POOL = {}


def interned(hours):
    """Returns the same object for equal hours, which saves memory: each takes ten kilobytes."""
    return POOL.setdefault(hours, hours)


@lru_cache(maxsize=None)
def mask(start, end):
    """The seconds from start to end that are in the day, one bit for each."""
    start, end = max(start, 0), min(end, DAY)
    return (1 << end) - (1 << start) if start < end else 0


@lru_cache(maxsize=512)
def spans(hours):
    found, at = [], 0
    while hours:
        skip = (hours & -hours).bit_length() - 1
        hours >>= skip
        length = (~hours & (hours + 1)).bit_length() - 1
        found.append((at + skip, at + skip + length))
        hours >>= length
        at += skip + length
    return tuple(found)


@lru_cache(maxsize=512)
def in_five(hours):
    """The hours with the smallest gaps filled, so that at most five spans are left."""
    found = spans(hours)
    gaps = sorted((b[0] - a[1], a[1], b[0]) for a, b in zip(found, found[1:]))
    for _, start, end in gaps[:max(len(gaps) - 4, 0)]:
        hours |= mask(start, end)
    return hours


def load(path):
    root = ElementTree.parse(path).getroot()
    for element in root.iter():
        if isinstance(element.tag, str):
            element.tag = element.tag.rpartition("}")[2]
    return root


def last(parent, tag):
    found = parent.findall(tag)
    return found[-1] if found else None


def text(parent, tag, default=""):
    found = last(parent, tag)
    return default if found is None else "".join(found.itertext())


def seconds(duration):
    """The seconds of "PT12H30M0S"; the parts of a negative duration are negative."""
    hours, minutes, rest = (int(part) for part in re.fullmatch(r"PT(-?\d+)H(-?\d+)M(-?\d+)S", duration).groups())
    return hours * 3600 + minutes * 60 + rest


class Level:
    """One resource's own schedule."""

    def __init__(self, resource, clock):
        self.week, self.dates = {}, {}  # by weekday; by ordinal: replaced by (or None), added, taken, names
        schedule = last(resource, "schedule")
        if schedule is None:
            return
        flattened = schedule.findall("flattened-schedule-day")
        for day in flattened or schedule.findall("schedule-day"):
            if day.get("day-of-week") in NAMES:
                self.week[NAMES.index(day.get("day-of-week"))] = self.hours(day)
        for day in flattened:
            if day.get("date") is not None:
                name = "Time Off" if day.find("time-span") is None else "Overtime"
                self.dates[clock(day.get("date"))[0]] = (self.hours(day), 0, 0, [(0 if name == "Overtime" else 1, name)])
        if not self.dates:
            for number, calendar in enumerate(schedule.findall("calendar")):
                for event in calendar.findall("event"):
                    self.add(number, calendar, clock(event.get("start")), clock(event.get("end")))

    @staticmethod
    def hours(day):
        hours = 0
        for span in day.findall("time-span"):
            hours |= mask(int(span.get("start-time")), int(span.get("end-time")))
        return hours

    def add(self, number, calendar, start, end):
        overtime = (calendar.get("overtime") or "no").lower() in ("yes", "true", "1")
        name = " ".join((calendar.get("name") or "").split("\n")) or ("Overtime" if overtime else "Time Off")
        first, last_day, begin, stop = start[0], end[0], start[1], end[1]
        if begin == stop == 0:
            last_day, stop = last_day - 1, DAY
        for date in range(max(first, 1), min(last_day, datetime.date.max.toordinal()) + 1):
            _, added, taken, names = self.dates.get(date, (None, 0, 0, []))
            if overtime:
                added = interned(added | mask(begin, stop))
            else:
                taken = interned(taken | mask(begin, stop))
            self.dates[date] = (None, added, taken, sorted({*names, (number, name)}))


class Plan:
    """The exported resources and tasks, in the order of the export."""

    def __init__(self, bundle, zone):
        self.zone = zoneinfo.ZoneInfo(zone)
        contents = load(bundle / "__TOC.xml")
        edited = text(contents.find("window"), "editing-scenario")
        name = [s.get("filename") for s in contents.iter("scenario") if s.get("id") == edited][-1]
        self.scenario = load(bundle / name)
        self.by_id = {kind: {e.get("id"): e for e in self.scenario.findall(kind)} for kind in ("resource", "task")}
        self.resources, self.parents, self.levels, self.rules = [], [], [], {}
        POOL.clear()
        mask.cache_clear()
        self.walk("resource", "Group", lambda e, parent: self.add_resource(e, parent))
        self.tasks = []
        self.walk("task", "group", lambda e, _: self.tasks.append(e) or len(self.tasks) - 1)
        self.assignments = [(task, assignment) for task in self.tasks for assignment in
                            (task.findall("assignment") or ([None] if text(task, "type") != "group" else []))]

    def walk(self, kind, group, visit):
        stack = [(last(self.scenario, "top-" + kind).get("idref"), None)]
        while stack:
            reference, parent = stack.pop()
            element = self.by_id[kind].get(reference)
            if element is None:
                continue
            number = visit(element, parent)
            if text(element, "type") == group:
                stack += [(child.get("idref"), number) for child in reversed(element.findall("child-" + kind))]

    def add_resource(self, element, parent):
        self.resources.append(element)
        self.parents.append(parent)
        self.levels.append(Level(element, self.clock))
        return len(self.resources) - 1

    def clock(self, written):
        """Ordinal of the date and second of the day in the zone; the first moment of a day counts as midnight."""
        parts = DATE.match(written)
        year, month, day, *time = (int(part or 0) for part in parts.groups()[:6])
        moment = datetime.datetime(year, month, day, *time)
        if parts[7] or parts[8]:
            utc = moment - datetime.timedelta(hours=int(parts[8] or 0), minutes=int(parts[9] or 0))
            moment = self.local(utc)
            if self.local(utc - datetime.timedelta(seconds=1)).date() < moment.date():
                return moment.date().toordinal(), 0
        return moment.date().toordinal(), moment.hour * 3600 + moment.minute * 60 + moment.second

    def local(self, utc):
        return utc.replace(tzinfo=datetime.timezone.utc).astimezone(self.zone).replace(tzinfo=None)

    def chain(self, resource):
        """The resources whose schedules count: from the top resource down to this one."""
        chain = []
        while resource is not None:
            chain.insert(0, resource)
            resource = self.parents[resource]
        return chain

    def week_day(self, resource, weekday):
        for number in reversed(self.chain(resource)):
            if weekday in self.levels[number].week:
                return self.levels[number].week[weekday]
        return mask(8 * 3600, 12 * 3600) | mask(13 * 3600, 17 * 3600) if weekday < 5 else 0

    def rule(self, resource):
        """Two functions: one returns the hours of a date, one the names of the event sets that cover the dates."""
        if resource not in self.rules:
            self.rules[resource] = self.make_rule(resource)
        return self.rules[resource]

    def make_rule(self, resource):
        levels = [self.levels[number] for number in self.chain(resource)]
        week = [self.week_day(resource, weekday) for weekday in range(7)]
        changed = set().union(*(level.dates for level in levels))

        def hours(date):
            result = week[(date - 1) % 7]
            if date in changed:
                for level in levels:
                    if date in level.dates:
                        replaced, added, taken, _ = level.dates[date]
                        result = ((result if replaced is None else replaced) | added) & ~taken
            return result

        def names(dates):
            return list(dict.fromkeys(name for level in levels for _, name in sorted(
                {entry for date in dates if date in level.dates for entry in level.dates[date][3]})))
        return hours, names

    def stretch(self, element):
        start, end = (self.clock(text(element, tag)) for tag in ("start-date", "end-date"))
        return start[0] * DAY + start[1], end[0] * DAY + end[1]

    def pieces(self, task):
        """Start, end and effort of the pieces of a split task, without pieces of no length."""
        found = []
        for reference in task.findall("child-task") if task.find("split") is not None else []:
            piece = self.by_id["task"].get(reference.get("idref"))
            if piece is not None and self.stretch(piece)[0] < self.stretch(piece)[1]:
                found.append((*self.stretch(piece), Fraction(text(piece, "effort", "0"))))
        return found

    @staticmethod
    def completion(task):
        effort, done = int(text(task, "effort", "0")), int(text(task, "effort-done", "0"))
        return Fraction(done, effort) if effort > 0 and done > 0 else Fraction(text(task, "completion-percentage", "0"))

    def number_of(self, assignment):
        resource = None if assignment is None else self.by_id["resource"].get(assignment.get("idref"))
        return self.resources.index(resource) if resource in self.resources else 0
