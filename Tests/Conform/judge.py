#!/usr/bin/env python3
"""Compares a corrected file with the exact one, without the project's code:
    judge.py EXACT.xml CORRECTED.xml [BUNDLE]
Children must be in the published order (orders.txt), and identifiers, references and fields (fields.txt) valid. The
corrections must not lose or change anything else of the exact file. With the bundle, as for files of mspdi-export,
progress and priorities must be those of the plan. days_judge.py checks calendars and TimephasedData."""
import collections
import contextlib
import datetime
import fractions
import pathlib
import re
import sys
import xml.etree.ElementTree as ET
import zoneinfo

sys.dont_write_bytecode = True
from days_rule import load, seconds

HERE = pathlib.Path(__file__).parent
READINGS = set()  # dates that the plan means; empty without a bundle
faults = []


def check(holds, *what):
    if not holds:
        faults.append(" ".join(str(word) for word in what))


def text(element, name):
    return element.findtext(name) or ""


def objects(root, kind):
    return root.findall(f"{kind}s/{kind}")


# --- The corrected file alone ---

ORDERS = {}
for line in (HERE / "orders.txt").read_text().splitlines():
    if not line.startswith("#"):
        path, names = line.split(": ")
        parents, _, last = path.rpartition("/")
        for parent in parents.split("|"):
            ORDERS[f"/{parent}/{last}" if parent else f"/{last}"] = names.split(", ")
FIELDS = {}
for line in (HERE / "fields.txt").read_text().splitlines():
    if not line.startswith("#"):
        kind, *ranges = line.split()
        spans = [(part.split("-") * 2)[:2] for part in ranges]
        numbers = [number for first, last in spans for number in range(int(first), int(last) + 1)]
        FIELDS.update({str(number): f"Text{place}" for place, number in enumerate(numbers, 1)})
DATES = "Start Finish StartDate FinishDate FromDate ToDate ActualStart ActualFinish ConstraintDate".split()


def judge_order(element, path):
    names = next((ORDERS[key] for key in sorted(ORDERS, key=len, reverse=True) if path.endswith(key)), None)
    if names:
        places = [names.index(child.tag) if child.tag in names else len(names) for child in element]
        check(places == sorted(places), "wrong order:", path, [child.tag for child in element])
    for child in element:
        check(child.tag not in DATES or text(element, child.tag).strip(), "empty date:", path, child.tag)
        if len(child):
            judge_order(child, f"{path}/{child.tag}")


def judge_uids(root, kind):
    uids = [text(thing, "UID") for thing in objects(root, kind)]
    check(all(uid.isdigit() and int(uid) <= 2097151 for uid in uids), kind, "UIDs out of range:", uids)
    values = [int(uid) for uid in uids if uid.isdigit()]
    check(len(set(values)) == len(values), kind, "UIDs are repeated:", sorted(values))
    return set(uids)


def outline_numbers(root):
    counts = []
    for task in objects(root, "Task"):
        level = int(text(task, "OutlineLevel") or 0)
        if level < 1:
            yield task, "0"
            continue
        counts[level - 1:] = [counts[level - 1] + 1] if len(counts) >= level else [1] * (level - len(counts))
        yield task, ".".join(str(count) for count in counts)


def judge_alone(root):
    judge_order(root, "/Project")
    tasks, resources, assignments, _ = (judge_uids(root, kind) for kind in
                                        ("Task", "Resource", "Assignment", "Calendar"))
    for name in ("Name", "CurrencyCode"):
        check(text(root, name).strip(), "the project has no", name)
    definitions = objects(root, "ExtendedAttribute")
    fields = [text(definition, "FieldID") for definition in definitions]
    check(len(set(fields)) == len(fields), "fields defined twice:", fields)
    for definition in definitions:
        check(FIELDS.get(text(definition, "FieldID")) == text(definition, "FieldName"),
              "wrong field", ET.tostring(definition))
    for thing in objects(root, "Task") + objects(root, "Resource"):
        used = [text(value, "FieldID") for value in thing.findall("ExtendedAttribute")]
        check(len(set(used)) == len(used) and set(used) <= set(fields),
              text(thing, "UID"), "has undefined or repeated fields among", used)
    held = {is_held(task) for task in objects(root, "Task") if text(task, "Summary") == "0"}
    check(len(held) < 2, "some tasks are held on their dates and others are not")
    for task, number in outline_numbers(root):
        check(text(task, "WBS") == text(task, "OutlineNumber") == number,
              "wrong outline number of task", text(task, "UID"), number)
        check((text(task, "CalendarUID"), text(task, "IgnoreResourceCalendar")) == ("-1", "0"), "wrong task calendar")
        for link in task.findall("PredecessorLink"):
            check(text(link, "PredecessorUID") in tasks and text(link, "LinkLag"),
                  "wrong link of task", text(task, "UID"))
    for assignment in objects(root, "Assignment"):
        check(text(assignment, "TaskUID") in tasks, "assignment of a missing task", text(assignment, "TaskUID"))
        check(text(assignment, "ResourceUID") in resources | {"-65535"},
              "assignment to a missing resource", text(assignment, "ResourceUID"))
    for exceptions in root.findall("Calendars/Calendar/Exceptions"):
        days = [text(exception, "TimePeriod/FromDate") for exception in exceptions]
        check(days == sorted(days), "unordered exceptions:", days)
    for week in root.findall("Calendars/Calendar/WorkWeeks/WorkWeek"):
        days = [text(day, "DayType") for day in week.findall("WeekDays/WeekDay") if "1" <= text(day, "DayType") <= "7"]
        check(len(set(days)) == len(days), "repeated weekdays in a work week:", days)


# --- Compared with the exact file ---

CHANGED = {  # elements that may differ; those that follow from the plan are checked below
    "Project": {"Name", "CurrencyCode"},
    "Task": {"UID", "Name", "Priority", "PercentComplete", "PercentWorkComplete", "IgnoreResourceCalendar"},
    "Resource": {"UID", "Name", "StandardRateFormat"},
    "Assignment": {"TaskUID", "ResourceUID", "PercentWorkComplete", "RemainingWork"},
    "Calendar": {"UID", "Name"},
}
ONLY_WITH_BUNDLE = {"Priority", "PercentComplete", "PercentWorkComplete", "RemainingWork"}


def leaves(element, left_out):
    return collections.Counter((child.tag, child.text or "") for child in element
                               if not len(child) and child.tag not in left_out
                               and (child.tag not in DATES or (child.text or "").strip()))


def is_held(task):
    """Whether the task is scheduled by hand on its dates, as with --keep-dates."""
    return all(text(task, name) == text(task, "Manual" + name) for name in ("Start", "Finish", "Duration"))


def readings(bundle):
    """What the clocks of Berlin showed at the dates of the plan and its baselines."""
    dates = {date for path in pathlib.Path(bundle).glob("*.xml")
             for date in re.findall(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(?:Z|[+-]\d\d:\d\d)", path.read_text(errors="replace"))}
    for date in dates:
        with contextlib.suppress(ValueError, OverflowError):  # dates that are in no calendar, or at its ends
            yield datetime.datetime.fromisoformat(date).astimezone(zoneinfo.ZoneInfo("Europe/Berlin")).isoformat()[:19]


def is_mended_date(name, exact, corrected):
    """Whether a date was an hour off, since the clocks changed near it, and is now what they showed."""
    difference = datetime.datetime.fromisoformat(corrected or "0001-01-01") - datetime.datetime.fromisoformat(exact)
    return name in DATES and abs(difference.total_seconds()) == 3600 and corrected in READINGS


def judge_kept(exact, corrected, has_bundle):
    kind = exact.tag
    changed = CHANGED.get(kind, set()) - (set() if has_bundle else ONLY_WITH_BUNDLE)
    if text(corrected, "Manual") == "1" and is_held(corrected):
        changed = changed | {"Manual"}
    lost = leaves(exact, changed) - leaves(corrected, set())
    for name, value in [leaf for leaf in lost if leaf[0] in DATES and READINGS]:
        if is_mended_date(name, value, text(corrected, name)):
            del lost[name, value]
    check(not lost, kind, text(exact, "UID"), "lost", dict(lost))


def values_by_alias(root, kind):
    """The values of each object as (alias, value). If a number has one definition, all objects that use the number have
    that alias; if it has several, they belong to those objects in order."""
    queues = collections.defaultdict(list)
    for definition in objects(root, "ExtendedAttribute"):
        queues[text(definition, "FieldID")].append(text(definition, "Alias"))
    for thing in objects(root, kind):
        aliases = {}
        for value in thing.findall("ExtendedAttribute"):
            field = text(value, "FieldID")
            if field not in aliases:
                queue = queues[field]
                aliases[field] = queue.pop(0) if len(queue) > 1 or not queue else queue[0]
        yield collections.Counter((aliases[text(value, "FieldID")], text(value, "Value"))
                                  for value in thing.findall("ExtendedAttribute"))


def judge_fields(exact, corrected, kind):
    known = {text(definition, "Alias") for definition in objects(exact, "ExtendedAttribute")}
    kept = {text(definition, "Alias") for definition in objects(corrected, "ExtendedAttribute")}
    for before, now in zip(values_by_alias(exact, kind), values_by_alias(corrected, kind)):
        now = collections.Counter((alias if alias in known else re.sub(r" \(\d+\)$", "", alias), value)
                                  for alias, value in now.elements())
        lost = {key for key in before - now if len(kept) < 30 or key[0] in kept}
        check(not lost and not now - before, kind, "fields are lost or new:", lost, now - before)


def links(root):
    places = {text(task, "UID"): place for place, task in enumerate(objects(root, "Task"))}
    return [(place, places[text(link, "PredecessorUID")], text(link, "Type"), text(link, "LinkLag") or "0",
             text(link, "LagFormat"))
            for place, task in enumerate(objects(root, "Task")) for link in task.findall("PredecessorLink")
            if text(link, "PredecessorUID") in places]


def is_same_link(old, new, has_bundle):
    """With the bundle, a percentage that was cut may be rounded up."""
    is_rounded = has_bundle and old[4] == "19" and abs(int(new[3])) == abs(int(old[3])) + 1
    return old == new or (is_rounded and (*old[:3], old[4]) == (*new[:3], new[4]))


def assigned(root):
    tasks = {text(task, "UID"): place for place, task in enumerate(objects(root, "Task"))}
    resources = {text(resource, "UID"): place for place, resource in enumerate(objects(root, "Resource"))
                 if text(resource, "Name") or text(resource, "MaxUnits")}
    return [(tasks.get(text(assignment, "TaskUID")), resources.get(text(assignment, "ResourceUID")))
            for assignment in objects(root, "Assignment")]


def judge_against(exact, corrected, has_bundle):
    judge_kept(exact, corrected, has_bundle)
    for kind in ("Task", "Resource", "Assignment", "Calendar"):
        before, now = objects(exact, kind), objects(corrected, kind)
        if kind == "Calendar":  # of two with the same UID, the second may be left out
            before = list({text(calendar, "UID"): calendar for calendar in before}.values())
        check(len(before) == len(now), len(before), kind, "are now", len(now))
        for old, new in zip(before, now):
            judge_kept(old, new, has_bundle)
            # With the bundle, the hours of calendars and assignments are replaced.
            for parts in ("Baseline",) if has_bundle else ("Baseline", "TimephasedData", "Exceptions/Exception"):
                old_parts, new_parts = (sorted(thing.findall(parts), key=lambda part: text(part, "TimePeriod/FromDate"))
                                        for thing in (old, new))
                check(len(old_parts) == len(new_parts), kind, text(old, "UID"), parts, len(new_parts))
                for old_part, new_part in zip(old_parts, new_parts):
                    judge_kept(old_part, new_part, has_bundle)
    before, now = links(exact), links(corrected)
    same = len(before) == len(now) and all(is_same_link(old, new, has_bundle) for old, new in zip(before, now))
    check(same, "links differ:", before, now)
    check(assigned(exact) == assigned(corrected), "assignments differ:", assigned(exact), assigned(corrected))
    for kind in ("Task", "Resource"):
        judge_fields(exact, corrected, kind)
    for old, new in zip(objects(exact, "Resource"), objects(corrected, "Resource")):
        check(text(new, "Name") == text(old, "Name").translate(str.maketrans(",[]", ";()")),
              "wrong name", text(new, "Name"))
        material = text(new, "Type") == "0" and text(new, "StandardRate")
        check(text(new, "StandardRateFormat") == ("8" if material else text(old, "StandardRateFormat")),
              "wrong unit of a rate")


# --- Compared with the bundle ---


def scenario(bundle):
    contents = load(pathlib.Path(bundle) / "__TOC.xml")
    shown = text(contents.find("window"), "editing-scenario")
    name = next(s.get("filename") for s in contents.findall("project/scenario") if s.get("id") == shown)
    return load(pathlib.Path(bundle) / name)


def ratio_of(task):
    effort, done = (int(re.match(r"\s*-?\d+", text(task, name) or "0")[0]) for name in ("effort", "effort-done"))
    if effort > 0 and done > 0:
        return fractions.Fraction(done, effort)
    return max(fractions.Fraction(text(task, "completion-percentage") or 0), 0)


def rounded(value):
    return int(value + fractions.Fraction(1, 2))


def judge_divided(thing, ratio, name):
    check(text(thing, "PercentWorkComplete") == (str(rounded(ratio * 100)) if rounded(ratio * 100) else ""), name,
          "wrong percentage")
    work, done = seconds(text(thing, "Work")), seconds(text(thing, "ActualWork"))
    if work >= 0:
        check(abs(done - work * ratio) <= 1 and done + seconds(text(thing, "RemainingWork")) == work,
              name, "wrong work")
    check(bool(text(thing, "ActualStart")) == (ratio > 0 and bool(text(thing, "Start"))), name, "wrong ActualStart")
    check(bool(text(thing, "ActualFinish")) == (ratio == 1 and bool(text(thing, "Finish"))), name, "wrong ActualFinish")


def judge_priorities(pairs):
    for priority, published in pairs:
        lowest, highest = (500, 500) if priority == 0 else (501, 999) if priority > 0 else (1, 499)
        check(lowest <= published <= highest, "priority", priority, "is wrongly written as", published)
    for (low, low_published), (high, high_published) in zip(pairs, pairs[1:]):
        check((low < high) == (low_published < high_published),
              "wrong order of priorities", low, high, low_published, high_published)


def judge_plan(exact, corrected, bundle):
    plan = scenario(bundle)
    sources = {task.get("id"): task for task in plan.findall("task")}
    top = plan.find("top-task").get("idref")
    ratios, priorities = {}, set()
    for old, new in zip(objects(exact, "Task"), objects(corrected, "Task")):
        uid = text(old, "UID")
        if uid == "":  # the id has no number, so the task cannot be found
            continue
        source = sources[top if uid == "0" else "t" + uid]
        ratio = ratios[text(new, "UID")] = ratio_of(source)
        judge_divided(new, ratio, source.get("id"))
        duration, remaining = seconds(text(new, "Duration")), seconds(text(new, "RemainingDuration"))
        check(abs(duration * (1 - ratio) - remaining) <= 1, source.get("id"), "wrong RemainingDuration", remaining)
        priorities.add((int(text(source, "priority") or 0), int(text(new, "Priority"))))
    judge_priorities(sorted(priorities))
    for assignment in objects(corrected, "Assignment"):
        if text(assignment, "TaskUID") in ratios:
            judge_divided(assignment, ratios[text(assignment, "TaskUID")], "assignment " + text(assignment, "UID"))


def main():
    exact, corrected = load(sys.argv[1]), load(sys.argv[2])
    judge_alone(corrected)
    if len(sys.argv) > 3:
        READINGS.update(readings(sys.argv[3]))
    judge_against(exact, corrected, len(sys.argv) > 3)
    if len(sys.argv) > 3:
        judge_plan(exact, corrected, sys.argv[3])
    for fault in faults[:40]:
        print(fault[:400])
    sys.exit(bool(faults))


main()
