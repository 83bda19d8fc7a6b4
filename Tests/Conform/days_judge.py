#!/usr/bin/env python3
"""Compares the calendars and the work over time of exported files with the bundle.

    days_judge.py [--exact] EXACT PROGRAM ZONE BUNDLE...
    days_judge.py [--exact] EXACT PROGRAM golden FOLDER             the plans of the golden cases and examples
    days_judge.py [--exact] EXACT PROGRAM generated FIRST COUNT     plans of days_plans.py, with the numbers from FIRST

EXACT is MSPDIExport, PROGRAM mspdi-export. --exact only counts the days of resources on which the hours in each
program's file differ from those of the plan.
"""
import collections
import datetime
import functools
import os
import pathlib
import subprocess
import sys
import tempfile
from fractions import Fraction

sys.dont_write_bytecode = True
import days_plans
import days_rule
from days_rule import DAY, in_five, interned, last, mask, seconds, spans, text


def export(program, bundle, out, zone):
    arguments = [bundle, "-o", out] if pathlib.Path(program).name == "mspdi-export" else [bundle, out]
    subprocess.run([program, *arguments], check=True, stderr=subprocess.DEVNULL,
                   env={**os.environ, "TZ": zone, "SOURCE_DATE_EPOCH": "1777888800"})


def second_of(time):
    hours, minutes, rest = (int(part) for part in time.split(":"))
    return hours * 3600 + minutes * 60 + rest


def moment_of(date):
    day, _, time = date.partition("T")
    return datetime.date.fromisoformat(day).toordinal() * DAY + second_of(time)


def hours_of(element):
    """The hours as a reader sees them: working times in order; an end at midnight is the end of the day."""
    hours = 0
    for time in element.iterfind("WorkingTimes/WorkingTime"):
        hours |= mask(second_of(text(time, "FromTime")), second_of(text(time, "ToTime")) or DAY)
    return interned(hours) if text(element, "DayWorking") == "1" else 0


class Calendar:
    """A calendar of the file, as readers interpret it."""

    def __init__(self, element, by_uid):
        self.element, self.by_uid = element, by_uid
        self.week = {(int(text(day, "DayType")) + 5) % 7: hours_of(day)
                     for day in element.iterfind("WeekDays/WeekDay") if text(day, "DayType") != "0"}
        self.exceptions = element.findall("Exceptions/Exception")
        self.dates = {}
        for exception in self.exceptions:
            first, final = self.period(exception)
            hours = hours_of(exception)
            for date in range(first, final + 1):
                self.dates.setdefault(date, hours)

    @staticmethod
    def period(element):
        return tuple(moment_of(text(last(element, "TimePeriod"), tag)) // DAY for tag in ("FromDate", "ToDate"))

    @functools.cached_property
    def chain(self):
        """The calendar, its base, the base of that and so on."""
        base = self.by_uid.get(text(self.element, "BaseCalendarUID"))
        return [self, *(base.chain if base else [])]

    def hours(self, date, chain):
        """The hours of a date: an exception of a calendar in "chain", otherwise the nearest week."""
        for calendar in chain:
            if date in calendar.dates:
                return calendar.dates[date]
        for calendar in self.chain:
            if (date - 1) % 7 in calendar.week:
                return calendar.week[(date - 1) % 7]
        return None


class File:
    def __init__(self, path):
        self.root = days_rule.load(path)
        self.calendars, by_uid = [], {}
        for element in self.root.iterfind("Calendars/Calendar"):
            self.calendars.append(Calendar(element, by_uid))
            by_uid[text(element, "UID")] = self.calendars[-1]
        self.assignments = self.root.findall("Assignments/Assignment")


class Judge:
    def __init__(self, plan, file, where):
        self.plan, self.file, self.where, self.faults = plan, file, where, []

    def expect(self, holds, what, *details):
        if not holds and len(self.faults) < 20:
            self.faults.append(f"{self.where}: {what} {' '.join(str(detail) for detail in details)}")

    def dates(self):
        """All dates of the plan and the year after; in a long plan only the days around changes and every 97th day."""
        changed = {date for level in self.plan.levels for date in level.dates}
        tasks = [moment // DAY for task in self.plan.tasks for moment in self.plan.stretch(task)]
        first, final = min(tasks + list(changed)), min(max(tasks + list(changed)) + 366, datetime.date.max.toordinal())
        if final - first < 4000:
            return range(first, final + 1)
        edges = {date for date in changed if not {date - 1, date + 1} <= changed}
        near = {date + step for date in edges | set(tasks) for step in range(-8, 9)}
        return sorted(date for date in near | set(range(first, final, 97)) if first <= date <= final)

    def differing_days(self):
        """The days on which the file's hours differ from the plan's: resource, date, expected hours, found hours."""
        dates = self.dates()
        for number, calendar in enumerate(self.file.calendars):
            hours, _ = self.plan.rule(number)
            for date in dates:
                expected, found = hours(date), calendar.hours(date, calendar.chain)
                if found != expected and found != in_five(expected):
                    yield number, date, expected, found

    def judge_hours(self):
        for number, date, expected, found in self.differing_days():
            self.expect(False, "wrong hours of resource", self.plan.resources[number].get("id"),
                        datetime.date.fromordinal(date), spans(expected), "in the file:", found and spans(found))

    def judge_calendar(self, number, calendar):
        name = self.plan.resources[number].get("id")
        own = self.plan.levels[number]
        is_base = text(calendar.element, "IsBaseCalendar") == "1"
        self.expect(is_base == (calendar.chain == [calendar]) == (number in self.plan.parents or number == 0),
                    "wrong bases of", name)
        self.expect(set(calendar.week) == (set(range(7)) if is_base else set(own.week)), "wrong week days of", name)
        self.expect(calendar.element.find("WorkWeeks") is None, "unexpected work weeks in", name)
        listed = [day for day in calendar.element.iterfind("WeekDays/WeekDay") if text(day, "DayType") == "0"]
        self.expect([(*calendar.period(day), text(day, "DayWorking"), hours_of(day)) for day in listed] ==
                    [(*calendar.period(day), text(day, "DayWorking"), hours_of(day)) for day in calendar.exceptions],
                    "entries of day type 0 differ from the exceptions of", name)
        for element in calendar.element.iter():
            if element.find("DayWorking") is not None:
                times = [second_of(time.text) for time in element.iter() if time.tag in ("FromTime", "ToTime")]
                times = times[:-1] + [times[-1] or DAY] if times else times
                self.expect(len(times) <= 10 and sorted(set(times)) == times, "wrong working times of", name, times)
                self.expect(bool(times) == (text(element, "DayWorking") == "1"), "wrong working days of", name)
        self.expect(not any((time.text or "").startswith("24:") for time in calendar.element.iter()),
                    "a time 24:00 in", name)
        self.judge_exceptions(name, number, calendar)

    def judge_exceptions(self, name, number, calendar):
        hours, names = self.plan.rule(number)
        before, before_hours = 0, None
        for exception in calendar.exceptions:
            first, final = calendar.period(exception)
            fixed = [text(exception, tag) for tag in ("EnteredByOccurrences", "Type", "Occurrences")]
            self.expect(fixed == ["0", "1", str(final - first + 1)], "wrong exception of", name, fixed)
            period = "".join(last(exception, "TimePeriod").itertext())
            self.expect("T00:00:00" in period and "T23:59:59" in period, "wrong period in", name, period)
            self.expect(first > before, "overlapping or unordered exceptions of", name, first)
            self.expect(first > before + 1 or hours_of(exception) != before_hours,
                        "adjacent equal exceptions of", name, first)
            before, before_hours = final, hours_of(exception)
            same = [date for date in range(first, final + 1)
                    if calendar.hours(date, calendar.chain[1:]) == in_five(hours(date))]
            self.expect(not same, "an exception changes nothing on some dates in", name, same[:3])
            expected = ", ".join(names(range(first, final + 1)))
            self.expect(text(exception, "Name") == expected, "wrong name in", name, text(exception, "Name"), expected)

    def working_days(self, resource, start, end):
        """First second, last second and working seconds of each working day from start to end."""
        days = []
        for date in range(start // DAY, (end - 1) // DAY + 1):
            part = spans(self.plan.rule(resource)[0](date) & mask(start - date * DAY, end - date * DAY))
            if part:
                days.append((date * DAY + part[0][0], date * DAY + part[-1][1], sum(b - a for a, b in part)))
        return days or [(start, end, 1)]

    def expected_work(self, assignment, task, source, work):
        """Start, finish and exact share of the work for each day."""
        resource = self.plan.number_of(source)
        start, finish = (moment_of(text(assignment, tag)) for tag in ("Start", "Finish"))
        pieces = self.plan.pieces(task) or ([(start, finish, 1)] if start < finish else [])
        days = [self.working_days(resource, start, end) for start, end, _ in pieces]
        weights = [effort for _, _, effort in pieces]
        if not any(weights):
            weights = [0 if day[0][2] == 1 and day[0][:2] == piece[:2] else sum(part[2] for part in day)
                       for day, piece in zip(days, pieces)]
        if not any(weights):
            weights = [end - start for start, end, _ in pieces]
        return [(part[0], part[1], work * Fraction(weight) / sum(weights) * part[2] / sum(p[2] for p in day))
                for weight, day in zip(weights, days) for part in day]

    def judge_work(self, exact):
        for before, after, (task, source) in zip(exact.assignments, self.file.assignments, self.plan.assignments):
            entries = after.findall("TimephasedData")
            if before.find("TimephasedData") is None:
                self.expect(not entries, "new timephased data in", text(after, "UID"))
                continue
            work = max(seconds(text(before, "Work")), 0)
            done = int(self.plan.completion(task) * work + Fraction(1, 2))
            sums, days, previous = collections.Counter(), collections.Counter(), (0, "2")
            for entry in entries:
                kind, start, finish = text(entry, "Type"), moment_of(text(entry, "Start")), moment_of(text(entry, "Finish"))
                value = seconds(text(entry, "Value"))
                sums[kind] += value
                days[start, finish] += value
                self.expect(value > 0 and text(entry, "Unit") == "2" and text(entry, "UID") == text(after, "UID") and
                            previous[0] <= start and previous[1] >= kind,
                            "wrong entry of", text(after, "UID"), start, kind, value)
                previous = (start, kind)
            self.expect(sums == collections.Counter({"2": done, "1": work - done}),
                        "wrong sums of", text(after, "UID"), sums)
            if after.find("ActualWork") is not None:
                self.expect([seconds(text(after, tag)) for tag in ("ActualWork", "RemainingWork")] ==
                            [done, work - done], "wrong work of", text(after, "UID"))
            expected, roundings = collections.Counter(), collections.Counter()
            for start, finish, share in self.expected_work(after, task, source, work):
                expected[start, finish] += share
                roundings[start, finish] += 2  # one for the piece's share, one for the day's
            for day in {*expected, *days}:
                self.expect(abs(expected[day] - days[day]) <= roundings[day],
                            "wrong work on", day, float(expected[day]), days[day])

    def judge_project(self):
        week = [self.plan.week_day(0, weekday) for weekday in range(7)]
        lengths = collections.Counter(hours.bit_count() for hours in week if hours)
        found = [text(self.file.root, tag, None) for tag in
                 ("MinutesPerDay", "MinutesPerWeek", "DefaultStartTime", "DefaultFinishTime")]
        expected = [None] * 4
        if lengths:
            length = max(lengths, key=lambda length: (lengths[length], length))
            day = spans(next(hours for hours in week if hours.bit_count() == length))
            times = [f"{s // 3600 % 24:02}:{s // 60 % 60:02}:{s % 60:02}" for s in (day[0][0], day[-1][1])]
            expected = [str(max((s + 30) // 60, 1)) for s in (length, sum(h.bit_count() for h in week))] + times
        self.expect(found == expected, "wrong week of the project:", found, expected)


def judge(programs, zone, bundle, counting):
    with tempfile.TemporaryDirectory() as folder:
        files = []
        for number, program in enumerate(programs):
            out = pathlib.Path(folder) / f"{number}.xml"
            export(program, bundle, out, zone)
            files.append(File(out))
    plan = days_rule.Plan(bundle, zone)
    if counting:
        exact, corrected = (len(list(Judge(plan, file, bundle).differing_days())) for file in files)
        print(f"{bundle.name}: {exact} days of a resource differ in the exact file, {corrected} in the corrected one")
        return []
    judged = Judge(plan, files[1], f"{bundle.name} in {zone}")
    judged.judge_hours()
    for number, calendar in enumerate(files[1].calendars):
        judged.judge_calendar(number, calendar)
    judged.judge_work(files[0])
    judged.judge_project()
    return judged.faults


def golden(folder):
    """Zone and bundle of each golden case that has an expected document."""
    for case in sorted(path.parent for path in folder.glob("*/expected.xml")):
        settings = dict(line.split("=", 1) for line in (case / "case").read_text().splitlines())
        elsewhere = folder.parent.parent / settings["bundle"] if "bundle" in settings else None
        yield settings["zone"], elsewhere or next(case.glob("*.kvdx"))


def generated(folder, first, count):
    for number in range(first, first + count):
        zone = days_plans.ZONES[number % len(days_plans.ZONES)]
        bundle = folder / f"{number}.kvdx"
        days_plans.write(bundle, number, zone)
        yield zone, bundle


def main(arguments):
    counting = arguments[0] == "--exact"
    exact, program, kind, *rest = arguments[counting:]
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        if kind == "golden":
            bundles = golden(pathlib.Path(rest[0]))
        elif kind == "generated":
            bundles = generated(pathlib.Path(folder), int(rest[0]), int(rest[1]))
        else:
            bundles = ((kind, pathlib.Path(bundle)) for bundle in rest)
        for zone, bundle in bundles:
            faults += judge((exact, program), zone, bundle, counting)
    print("\n".join(faults[:40]))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
