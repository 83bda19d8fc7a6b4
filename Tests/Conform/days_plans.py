"""Random plans; the same number always gives the same plan. They have nested groups with schedules of both forms,
overlapping time off and overtime, dates with and without an offset near clock changes, split tasks and materials."""
import datetime
import random
import zoneinfo
from xml.sax.saxutils import quoteattr

ZONES = ("Europe/Berlin", "America/New_York", "Asia/Kathmandu", "Australia/Lord_Howe", "America/Santiago")
DAYS = ("sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday")
UTC = datetime.timezone.utc


class Generator:
    def __init__(self, number, zone):
        self.random = random.Random(number)
        self.zone = zoneinfo.ZoneInfo(zone)
        self.number = number
        self.resources, self.tasks = [], []
        # A few weeks around a clock change in either hemisphere, or around the end of February.
        self.first = datetime.date.fromisoformat(self.random.choice((
            "2024-02-12", "2024-08-25", "2024-10-15", "2025-03-01", "2025-08-25", "2026-03-20", "2026-08-25")))
        days = [self.first + datetime.timedelta(days=step) for step in range(45)]
        noons = [datetime.datetime.combine(day, datetime.time(12), self.zone).utcoffset() for day in days]
        changes = [number for number in range(1, len(days)) if noons[number - 1] != noons[number]]
        self.days = days + 8 * [days[number + step] for number in changes for step in (-1, 0)]

    def chance(self, share):
        return self.random.random() < share

    def date(self):
        return self.random.choice(self.days)

    def second(self):
        if self.chance(0.2):
            return self.random.choice((5400, 7200, 9000))  # times that clock changes skip or repeat
        unit = self.random.choice((3600, 3600, 1800, 60, 1))
        return self.random.randrange(0, 86400, unit)

    def written(self, date, second, zoneless=True):
        """The clock reading as text: with the zone's offset, in UTC or, if allowed, without an offset."""
        reading = datetime.datetime.combine(date, datetime.time()) + datetime.timedelta(seconds=second)
        kind = self.random.randrange(3 if zoneless else 2)
        if kind == 2:
            return reading.isoformat()
        utc = reading.replace(tzinfo=self.zone).astimezone(UTC)
        if kind == 1:
            return utc.replace(tzinfo=None).isoformat() + "Z"
        return utc.astimezone(self.zone).isoformat()

    def seen(self, text):
        """The clock reading that the exporter gets from the text."""
        moment = datetime.datetime.fromisoformat(text)
        if moment.tzinfo is None:
            moment = moment.replace(tzinfo=self.zone)
        return moment.astimezone(UTC).astimezone(self.zone)

    def event(self):
        while True:
            date, length = self.date(), self.random.choice((0, 0, 0, 1, 2, 5, 20))
            if self.number % 50 == 7 and self.chance(0.1):
                length = 300 * 365  # a person who left
            begin = self.second()
            if self.chance(0.5):
                begin, end, length = 0, 0, length + 1
            else:
                end = self.random.choice((begin + 1800, begin + 14400, self.second(), 86399))
            start, finish = (self.written(*at) for at in
                             ((date, begin), (date + datetime.timedelta(days=length), end)))
            first, final = self.seen(start), self.seen(finish)
            # The exporter refuses events whose clock reading at the end is before that at the start.
            if first.time() < final.time() or first.time() == final.time() == datetime.time() and first < final:
                name = f' name="{self.random.choice("AB")}"' if self.chance(0.3) else ""
                return f'<event start="{start}" end="{finish}"{name}/>'

    def calendar(self):
        name = self.random.choice(("Vacation", "Holidays", "R&D, <late>", "line\nbreak", "", None))
        overtime = self.random.choice(("yes", "true", "no", "false", "", None))
        attributes = "".join(f" {key}={quoteattr(value)}" for key, value in (("name", name), ("overtime", overtime))
                             if value is not None)
        return f"<calendar{attributes}>{''.join(self.event() for _ in range(self.random.randrange(6)))}</calendar>"

    def spans(self):
        count = self.random.choice((0, 1, 1, 2, 2, 3, 9))
        spans = [sorted((self.second(), self.second())) for _ in range(count)]
        if count and self.chance(0.3):
            spans[0] = self.random.choice(([0, 86400], [72000, 86400], [28800, 43200], [-3600, 7200], [80000, 100000],
                                           [50000, 40000], [43200, 43200], [0, 3600]))
        return "".join(f'<time-span start-time="{a}" end-time="{b}"/>' for a, b in spans)

    def schedule(self):
        flattened = self.chance(0.4)
        tag = "flattened-schedule-day" if flattened else "schedule-day"
        week = [f'<{tag} day-of-week="{day}">{self.spans()}</{tag}>'
                for day in self.random.choices(DAYS, k=self.random.choice((0, 0, 1, 3, 8)))]
        dated = [f'<{tag} date="{self.written(self.date(), self.random.choice((0, 0, self.second())))}">'
                 f'{self.spans()}</{tag}>' for _ in range(self.random.choice((0, 3, 12)))] if flattened else []
        calendars = [self.calendar() for _ in range(self.random.randrange(4))]
        children = week + dated + calendars
        self.random.shuffle(children)
        return f"<schedule>{''.join(children)}</schedule>"

    def resource(self, depth):
        number = len(self.resources)
        identifier = "r-1" if number == 0 else f"r{number}"
        self.resources.append(None)
        kind, members = self.random.choice(("Staff", "Staff", "Equipment", "Material", "Group")), ""
        if number == 0 or kind == "Group" and depth < 5:
            kind = "Group"
            count = self.random.randrange(1, 5) if number == 0 else self.random.randrange(4)
            members = "".join(f'<child-resource idref="{self.resource(depth + 1)}"/>' for _ in range(count))
        schedule = self.schedule() if self.chance(0.6) else ""
        self.resources[number] = (f'<resource id="{identifier}"><type>{kind}</type><name>N{number}</name>'
                                  f"{schedule}{members}</resource>")
        return identifier

    def task(self, inside="", dates=None):
        identifier = f"t{len(self.tasks) + 1}"
        if dates is None:
            begin, end = sorted((self.date(), self.date()))
            dates = (begin, self.second()), (end + datetime.timedelta(days=self.random.randrange(2)), self.second())
        zoneless = inside == ""
        start, end = (self.written(*at, zoneless) for at in dates)
        effort = self.random.choice((0, 3600, 86400, self.random.randrange(1, 10**6)))
        done = self.random.choice((0, effort, self.random.randrange(effort + 1)))
        share = self.random.choice(("0", "1", "0.5", "0.145", "0.333333", f"{self.random.random():.3f}"))
        self.tasks.append(f'<task id="{identifier}"><type>task</type><start-date>{start}</start-date>'
                          f"<end-date>{end}</end-date><duration>3600</duration><effort>{effort}</effort>"
                          f"<effort-done>{done}</effort-done><completion-percentage>{share}</completion-percentage>"
                          f"{inside}</task>")
        return identifier

    def work(self):
        """A task with assignments; half of the tasks are split."""
        count = self.random.randrange(3)
        members = self.random.sample(range(1, len(self.resources)), min(count, len(self.resources) - 1))
        inside = "".join(f'<assignment idref="r{number}" units="{self.random.choice(("1", "0.5", "2.25", "20"))}"/>'
                         for number in members)
        if self.chance(0.5):
            pieces = [self.task() for _ in range(self.random.randrange(4))]
            inside += "".join(f'<child-task idref="{piece}"/>' for piece in pieces) + "<split/>"
        return self.task(inside or " ")

    def scenario(self):
        self.resource(0)
        children = "".join(f'<child-task idref="{self.work()}"/>' for _ in range(6))
        day = self.first.isoformat()
        top = (f'<task id="t-1"><type>group</type><start-date>{day}T08:00:00Z</start-date>'
               f"<end-date>{day}T09:00:00Z</end-date><duration>3600</duration>{children}</task>")
        return (f'<scenario><start-date>{day}T08:00:00Z</start-date><top-resource idref="r-1"/>'
                f"{''.join(self.resources)}<top-task idref=\"t-1\"/>{top}{''.join(self.tasks)}</scenario>")


def write(bundle, number, zone):
    bundle.mkdir()
    (bundle / "__TOC.xml").write_text('<toc><project><scenario id="s" filename="Plan.xml"/></project>'
                                      "<window><editing-scenario>s</editing-scenario></window></toc>")
    (bundle / "Plan.xml").write_text(Generator(number, zone).scenario())
