#!/usr/bin/env python3
"""An export on a machine in UTC must give the same bytes as one on a machine in the plan's zone: zones.py PROGRAM
EXAMPLES. Uses the examples and random plans in thirteen zones; in those, each start must be the plan's clock reading."""
import datetime
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile
import zoneinfo

PROGRAM = os.path.abspath(sys.argv[1])
EXAMPLES = {"Product Launch": "America/New_York", "House Renovation": "Europe/London",
            "Autumn Conference": "Europe/Stockholm"}
ZONES = ["Europe/Madrid", "America/Chicago", "America/Sao_Paulo", "Asia/Kolkata", "Asia/Kathmandu", "Asia/Tokyo",
         "Australia/Lord_Howe", "Pacific/Auckland", "Africa/Nairobi", "America/Santiago",
         "America/St_Johns", "Pacific/Marquesas", "Africa/Cairo"]
CONTENTS = "<t><project><scenario id='s' filename='P.xml'/></project><window><editing-scenario>s</editing-scenario></window></t>"


def make(bundle, number, zone):
    """A plan of two years with dates in all seasons and around all clock changes, and time off from midnight to
    midnight."""
    chance, zone = random.Random(number), zoneinfo.ZoneInfo(zone)
    first = datetime.datetime(2025, 1, 1, tzinfo=datetime.timezone.utc)

    def date(day, hour):
        reading = datetime.datetime(2025, 1, 1, hour, 15, tzinfo=zone) + datetime.timedelta(days=day)
        return reading.astimezone(datetime.timezone.utc).astimezone(zone).isoformat()

    def moment(minutes):
        return (first + datetime.timedelta(minutes=minutes)).astimezone(zone)

    def is_change(day):
        return moment(day * 1440).utcoffset() != moment((day + 1) * 1440).utcoffset()

    spans = [(date(day, 8), date(day + chance.randrange(1, 20), 17)) for day in chance.sample(range(700), 60)]
    spans += [(moment(at).isoformat(), moment(at + 45).isoformat()) for day in filter(is_change, range(700))
              for at in range(day * 1440 - 900, day * 1440 + 2400, 45)]
    tasks = [f"<task id='t{i}'><title>T{i}</title><start-date>{start}</start-date><end-date>{end}</end-date>"
             "<duration>28800</duration></task>" for i, (start, end) in enumerate(spans, 1)]
    children = "".join(f"<child-task idref='t{i}'/>" for i in range(1, len(tasks) + 1))

    def midnight(day):
        return f"{date(day, 8)[:11]}00:00:00{date(day, 8)[19:]}"

    # In Cairo, the clocks skip the midnight at which the second one begins.
    event = f"<event start='{midnight(100)}' end='{midnight(103)}'/>"
    event += "<event start='2026-04-24T00:00:00' end='2026-04-25T00:00:00'/>"
    bundle.mkdir()
    (bundle / "__TOC.xml").write_text(CONTENTS)
    (bundle / "P.xml").write_text(
        "<scenario><top-resource idref='r-1'/><resource id='r-1'><type>Group</type><schedule><calendar name='Off'>"
        f"{event}</calendar></schedule></resource><top-task idref='t-1'/><task id='t-1'><type>group</type>"
        f"<start-date>{date(0, 8)}</start-date><end-date>{date(720, 17)}</end-date><duration>0</duration>{children}</task>"
        + "".join(tasks) + "</scenario>")


def export(bundle, zone, out):
    environment = {**os.environ, "TZ": zone, "SOURCE_DATE_EPOCH": "1777888800"}
    result = subprocess.run([PROGRAM, "-q", bundle, "-o", out], env=environment, capture_output=True, text=True)
    return pathlib.Path(out).read_bytes() if result.returncode == 0 else result.stderr


def starts(bundle, document):
    """The clock readings of the starts in the plan, and the starts in the document."""
    texts = re.findall("'t[0-9]+'><title>.*?<start-date>(.{19})", (bundle / "P.xml").read_text())
    tasks = document.decode().split("<Tasks>")[1].split("</Tasks>")[0]
    return texts, re.findall("<Name>T[0-9]+</Name>.*?<Start>(.*?)</Start>", tasks, re.S)


def main():
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        plans = [(pathlib.Path(sys.argv[2]) / f"{name}.kvdx", zone) for name, zone in EXAMPLES.items()]
        for number, zone in enumerate(ZONES):
            make(work / f"{number}.kvdx", number, zone)
            plans.append((work / f"{number}.kvdx", zone))
        for number, (bundle, zone) in enumerate(plans):
            there = export(bundle, zone, work / f"there{number}.xml")
            here = export(bundle, "UTC", work / f"here{number}.xml")
            if not isinstance(there, bytes) or there != here:
                faults.append(f"{bundle}: differs in UTC and {zone}: {there if isinstance(there, str) else ''}")
            elif number >= len(EXAMPLES) and len(set(map(tuple, starts(bundle, here)))) != 1:
                faults.append(f"{zone}: the starts differ from the plan's: {starts(bundle, here)}")
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
