#!/usr/bin/env python3
"""Tests the messages and files of mspdi-export: command.py PROGRAM EXAMPLES. A row has the arguments, the status, a
pattern that must be in standard error (after "!", must not be), and the new files."""
import contextlib
import json
import os
import pathlib
import pty
import re
import resource
import signal
import subprocess
import sys
import tempfile
import time
import zipfile

PROGRAM = os.path.abspath(sys.argv[1])
EXAMPLES = pathlib.Path(sys.argv[2]).resolve()
CONTENTS = "<t><project><scenario id='s' filename='P.xml'/></project><window><editing-scenario>s</editing-scenario></window></t>"
TASK = ("<task id='{0}'><title>A</title>{1}<start-date>2026-02-06T08:30:00-05:00</start-date>"
        "<end-date>{2}</end-date><duration>0</duration></task>")

LONGEST = "n" * 250  # too long for a file name once a number is appended


def plan(end="2026-07-06T08:30:00-04:00", title="A"):
    return ("<scenario><top-resource idref='r-1'/><resource id='r-1'><type>Group</type></resource><top-task idref='t-1'/>"
            + TASK.format("t-1", "<type>group</type><child-task idref='t1'/>", end) + TASK.format("t1", "", end)
            + "</scenario>").replace(">A<", f">{title}<")


def bundle(path, text=None, contents=CONTENTS):
    os.makedirs(path)
    pathlib.Path(path, "__TOC.xml").write_text(contents)
    pathlib.Path(path, "P.xml").write_text(text or plan())


def packed(path, members):
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, text in members.items():
            archive.writestr(name, text)


def prepare():
    for path in (f"Plan.kvdx -x.kvdx ~x.kvdx Paged.kvdx Full.kvdx Full.xml/Other.kvdx Beside.kvdx inner.kvdx/Plan.kvdx "
                 f"many/deep/A.kvdx many/deep/B.kvdx mixed/A.kvdx stored terminal/\x1b[2J.kvdx {LONGEST}.kvdx").split():
        bundle(path)
    link = "<title>\u009b2J</title><prerequisite-task idref='t9'/>"
    wordy = ("<child-resource idref='r1'/></resource><resource id='r1'><type>Staff</type>"
             f"<name>{'n' * 100_000}</name><schedule>{'<calendar/>' * 1000}</schedule></resource>")
    for name, text in {"Front": "<plan/>", "Raising": "<scenario/>", "Malformed": plan() + "<",
                       "Doubtful": plan("soon"), "Long": plan("soon", f"x{'é' * 150}"),
                       "Linking": plan().replace("<title>A</title>", link, 1),
                       # The log repeats its resource's name for each calendar.
                       "Wordy": plan().replace("</resource>", wordy, 1)}.items():
        bundle(f"{name}.kvdx", text)
    for path in ("Empty.kvdx", "many/Broken.kvdx"):
        bundle(path, contents="<t/>")
    for path in ("Beside.xml", "drawn.html", "there/below", "here", "out", "far"):
        os.makedirs(path)
    for path, target in {"nothing.xml": "nowhere", "many/again": ".", "here/link": "../there/below", "P.kvdx": "stored",
                         "here/Link.kvdx": "../there", "mixed/Link.kvdx": "A.kvdx"}.items():
        os.symlink(target, path)
    for path in ("Paged.html", "Full-1.xml", "mixed/Plain.kvdx", "Plain.kvdx", "taken.xml", LONGEST + ".xml"):
        pathlib.Path(path).write_text("kept")
    here = os.getcwd()
    os.chdir("far")
    for _ in range(20):  # together longer than a path may be
        os.mkdir("d" * 250)
        os.chdir("d" * 250)
    os.chdir(here)
    inside = {"__TOC.xml": CONTENTS, "P.xml": plan()}
    packed("Flat.kvdx.zip", inside)
    packed("Mailed.kvdx", {f"Other.kvdx/{name}": text for name, text in inside.items()})
    packed("Pair.kvdx.zip", {"__TOC.xml": "", "A.kvdx/P.xml": ""})
    packed("Climbing.kvdx.zip", {"../outside.xml": "x", **inside})
    packed("Bomb.kvdx.zip", {"Big.xml": " " * 200_000_000, **inside})
    packed("Deep.kvdx.zip", {f"{'d/' * 21}f": "x", **inside})
    packed("Folders.kvdx.zip", {f"{i}/{'d/' * 19}f": "" for i in range(60)})
    packed("Home.kvdx.zip", {f"~/{name}": text for name, text in inside.items()} | inside)
    packed("Mac.kvdx.zip", {f"B.kvdx/{name}": text for name, text in inside.items()} | {"__MACOSX/B.kvdx/._P.xml": "x"})
    packed("Accents.kvdx.zip", {f"Pl\u00e4n.kvdx/{name}": text for name, text in inside.items()})
    packed("Old.kvdx.zip", {"__TOC.xml": CONTENTS.replace("P.xml", "Pl\u00e4n.xml"), "Pl#n.xml": plan()})
    old = pathlib.Path("Old.kvdx.zip")
    pathlib.Path("Other.kvdx.zip").write_bytes(old.read_bytes().replace(b"Pl#n", b"Pl\xe4n"))  # Latin-1
    old.write_bytes(old.read_bytes().replace(b"Pl#n", b"Pl\x84n"))  # code page 437
    packed("Nested.kvdx.zip", {"P.kvdx": pathlib.Path("Flat.kvdx.zip").read_bytes()})
    packed("Twin.kvdx.zip", {"x": "x", "x/": "", **inside})
    pathlib.Path("Cut.kvdx.zip").write_bytes(pathlib.Path("Flat.kvdx.zip").read_bytes()[:-30])
    with zipfile.ZipFile("Sharing.kvdx.zip", "w") as archive:  # a member that lies within another one
        for name, text in {**inside, "x": pathlib.Path("Twin.kvdx.zip").read_bytes(), "y": "y"}.items():
            archive.writestr(name, text)
        archive.infolist()[-1].header_offset = archive.infolist()[-2].header_offset + len("x") + 30
    with zipfile.ZipFile("Linked.kvdx.zip", "w") as archive:
        link = zipfile.ZipInfo("P.xml")
        link.external_attr = 0o120777 << 16
        archive.writestr(link, "/etc/passwd")


SUMMARY = r"Plan.xml: 2 tasks, 0 links, 0 resources, 1 assignment, 1 calendar, 0 baselines; 0 warnings \(\d"
ROWS = [
    # arguments, status, pattern, new files
    (["Plan.kvdx"], 0, SUMMARY, ["Plan.xml"]),
    (["Plan.kvdx"], 0, "Dates are those of America/New_York, where the plan was made \\(this machine: UTC\\)", ["Plan.xml"]),
    (["-q", "Plan.kvdx"], 0, "^$", ["Plan.xml"]),
    (["-v", "Plan.kvdx"], 0, "Mapping Task id='t1'", ["Plan.xml"]),
    (["-v", "Plan.kvdx"], 0, "corrected: outline numbers: 2", ["Plan.xml"]),
    (["--check", "Plan.kvdx"], 0, "would be written", []),
    (["--zone=machine", "Plan.kvdx"], 0, "!Dates are those", ["Plan.xml"]),
    (["--zone", "Nowhere/Land", "Plan.kvdx"], 1, "no time zone 'Nowhere/Land'", []),
    (["--currency", "EURO", "Plan.kvdx"], 2, "no code of three letters", []),
    (["--", "-x.kvdx"], 0, "-x.xml: 2 tasks", ["-x.xml"]),
    (["Doubtful.kvdx"], 0, "task t1 'A': end-date 'soon' is no date, year 1 is written", ["Doubtful.xml"]),
    (["Long.kvdx"], 0, "task t1 'xé{99}\\.\\.\\.': end-date 'soon'", ["Long.xml"]),
    (["Wordy.kvdx"], 1, "The export grew too large", []),
    (["--strict", "Doubtful.kvdx"], 1, "there are warnings, so nothing is written", []),
    (["Empty.kvdx"], 1, "No 'project' element found in source document.*\n.*Open the plan in Korvella", []),
    (["Front.kvdx"], 1, "shows no plan", []),
    (["Raising.kvdx"], 1, "Invalid format of KVDX top Resource", []),
    (["Malformed.kvdx"], 0, "warning: Document '.*/Malformed.kvdx/P.xml' is malformed", ["Malformed.xml"]),
    (["Linking.kvdx"], 0, r"task t-?1 '\\u009b2J': its link to t9 is left out", ["Linking.xml"]),
    (["inner.kvdx/Plan.kvdx"], 1, "would lie inside of the bundle", []),
    (["Plan.kvdx", "-o", "nothing.xml"], 0, "nothing-1.xml: ", ["nothing-1.xml"]),
    (["Plan.kvdx", "-o", "Full.xml"], 0, "Plan.xml: ", ["Full.xml/Plan.xml"]),
    (["Plan.kvdx", "-o", "out"], 0, "Plan.xml: ", ["out/Plan.xml"]),
    (["Plan.kvdx", "-o", "taken.xml"], 0, "taken-1.xml: ", ["taken-1.xml"]),
    (["--overwrite", "Plan.kvdx", "-o", "taken.xml"], 0, "taken.xml: ", []),
    (["--overwrite", "Beside.kvdx"], 1, "'.*/Beside.xml' could not be written: A folder(.|\n)*Remove the folder", []),
    (["--overwrite", "--check", "Beside.kvdx"], 1, "A folder has this name", []),
    (["--check", "Plan.kvdx", "-o", "/proc/plan.xml"], 1, "could not be written", []),
    (["Full.kvdx"], 0, "Full-2.xml: ", ["Full-2.xml"]),
    (["--page", "Plan.kvdx"], 0, "Plan.html shows the plan", ["Plan.html", "Plan.xml"]),
    (["--page", "--check", "Plan.kvdx"], 0, "!shows the plan", []),
    (["--page", "Paged.kvdx"], 0, "Paged-1.html shows the plan", ["Paged-1.html", "Paged.xml"]),
    (["--page", "--overwrite", "Paged.kvdx"], 0, "Paged.html shows the plan", ["Paged.xml"]),
    (["--page", "--overwrite", "Plan.kvdx", "-o", "drawn.xml"], 1,
     "is written, but not its page: the file '.*/drawn.html' could not be written: A folder", ["drawn.xml"]),
    (["Plan.kvdx", "-o", "Doubtful.kvdx/P.xml"], 1, "inside of the bundle", []),
    (["P.kvdx", "--overwrite", "-o", "stored"], 1, "inside of the bundle", []),
    (["Plan.kvdx", "out/../Plan.kvdx", "-o", "out", "--overwrite"], 2, "two bundles would be written to '.*/out/Plan.xml'",
     []),
    (["Plan.kvdx", "-o", "absent/P.xml"], 1, "'.*absent' does not exist", []),
    (["Plan.kvdx", "-o", "n" * 300 + ".xml"], 1, "could not be written: File name too long", []),
    ([LONGEST + ".kvdx"], 1, "could not be written: File name too long", []),
    (["Plan.kvdx", "-o", "here/link/../out.xml"], 0, "out.xml: ", ["there/out.xml"]),
    (["Plan.kvdx", "-o", "here/Link.kvdx/out.xml"], 1, "inside of the bundle", []),
    (["~x.kvdx"], 0, "~x.xml: ", ["~x.xml"]),
    (["Plan.kvdx", "-o", ""], 2, "the output has no name", []),
    (["Plan.kvdx", "--zone", ""], 2, "the zone has no name", []),
    (["Plan.kvdx", "-o", "plan.txt"], 1, "neither an existing folder nor a name", []),
    (["Plan.kvdx", "--overwrit"], 2, "did you mean --overwrite", []),
    (["--quiet", "--verbose", "Plan.kvdx"], 2, "excludes", []),
    ([], 2, "required", []),
    (["absent.kvdx"], 1, "'absent.kvdx' does not exist", []),
    (["Plain.kvdx"], 1, "'Plain.kvdx' is a file, and no zip archive", []),
    (["out"], 1, "There is no bundle in the folder 'out'", []),
    (["mixed"], 0, "'mixed/Link.kvdx' is passed over: a link(.|\n)*'mixed/Plain.kvdx' is passed over: no folder and no zip",
     ["mixed/A.xml"]),
    (["far"], 1, "The folder 'far/d.*' could not be read: File name too long", []),
    (["many"], 1, "2 of 3 bundles exported", ["many/deep/A.xml", "many/deep/B.xml"]),
    (["Plan.kvdx", "Doubtful.kvdx"], 0, "2 of 2 bundles exported", ["Plan.xml", "Doubtful.xml"]),
    (["Plan.kvdx", "Doubtful.kvdx", "-o", "new.xml"], 2, "-o names an existing folder", []),
    (["Flat.kvdx.zip"], 0, "Flat.xml: 2 tasks", ["Flat.xml"]),
    (["Mailed.kvdx"], 0, "Mailed.xml: 2 tasks", ["Mailed.xml"]),
    (["Pair.kvdx.zip"], 1, "it holds 2 bundles; one is expected", []),
    (["Climbing.kvdx.zip"], 1, "'../outside.xml' leads out of it", []),
    (["Linked.kvdx.zip"], 1, "'P.xml' is neither file nor folder", []),
    (["Bomb.kvdx.zip"], 1, "unpacks to more than 200 times its size", []),
    (["Folders.kvdx.zip"], 1, "has more than 1000 folders", []),
    (["Deep.kvdx.zip"], 1, "a member lies more than 20 folders deep", []),
    (["Mac.kvdx.zip"], 0, "Mac.xml: 2 tasks", ["Mac.xml"]),
    (["Accents.kvdx.zip"], 0, "Accents.xml: 2 tasks", ["Accents.xml"]),
    (["Old.kvdx.zip"], 0, "Old.xml: 2 tasks", ["Old.xml"]),
    (["Other.kvdx.zip"], 1, "were read in code page 437", []),
    (["Nested.kvdx.zip"], 1, "it holds 0 bundles; one is expected", []),
    (["Twin.kvdx.zip"], 1, "member 'x/': File exists", []),
    (["Cut.kvdx.zip"], 1, "could not be unpacked", []),
    (["Sharing.kvdx.zip"], 1, "some of its members share bytes", []),
    (["Home.kvdx.zip"], 0, "Home.xml: 2 tasks", ["Home.xml"]),
]


def files():
    return {os.path.normpath(os.path.join(folder, name)) for folder, _, names in os.walk(".") for name in names
            if name.endswith((".xml", ".html"))}


def options(zone="UTC"):
    return {"env": {**os.environ, "TZ": zone, "TMPDIR": os.path.abspath("tmp"), "LC_ALL": "C",
                    "HOME": os.path.abspath("out")}, "text": True}


def start(arguments, **more):
    return subprocess.Popen([PROGRAM, *arguments], **options(), **more)


def run(arguments, stdout=subprocess.PIPE, zone="UTC", **more):
    return subprocess.run([PROGRAM, *arguments], stdout=stdout, stderr=subprocess.PIPE, timeout=60, **options(zone),
                          **more)


def judge_json(faults):
    bundles = ["Plan.kvdx", "Doubtful.kvdx", "Empty.kvdx", "absent.kvdx", "terminal", "mixed"]
    lines = run(["--json", "--check", *bundles]).stdout.splitlines()
    objects = sorted((json.loads(line) for line in lines), key=lambda object: "PDEatm".index(object["bundle"][0]))
    statuses = ["checked", "checked", "failed", "failed", "checked", "skipped", "skipped", "checked"]
    if [object["status"] for object in objects] != statuses:
        faults.append(f"--json: wrong statuses: {lines}")
    elif objects[0]["counts"]["tasks"] != 2 or len(objects[1]["warnings"]) < 2 or objects[2]["output"] is not None:
        faults.append(f"--json: wrong counts, warnings or output: {lines}")
    paged = json.loads(run(["--json", "--page", "Plan.kvdx"]).stdout)
    if pathlib.Path(paged["page"]) != pathlib.Path("Plan.html").resolve():
        faults.append(f"--json --page: wrong page: {paged}")


def judge_lack_of_memory(faults):
    """Runs with more and more memory, until one run succeeds. Until then, no run may crash or leave a file."""
    if "/build/asan/" in PROGRAM:
        return  # the address sanitizer reserves terabytes of addresses
    bundle("Large.kvdx", plan(title="A" * 5_000_000))
    said = ""
    for kilobytes in range(40_000, 200_000, 5_000):
        result = run(["Large.kvdx"], preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (kilobytes * 1000,) * 2))
        if result.returncode not in (0, 1, 127) or pathlib.Path("Large.xml").exists() != (result.returncode == 0):
            faults.append(f"{kilobytes} KB: status {result.returncode} {result.stderr}")
        said += result.stderr
        if result.returncode == 0:
            break
    if "there is not enough memory for this plan" not in said or result.returncode != 0:
        faults.append(f"lack of memory: {said}")


def unpacked_folders():
    return list(pathlib.Path("tmp").glob("*/Bundle.kvdx/P.xml"))


def judge_ends(faults):
    """The folder of a packed bundle is removed, whether a signal ends the parent or the child. A full pipe blocks the
    child, so that the signal arrives during the export."""
    for victim, number, status in (("parent", signal.SIGTERM, -signal.SIGTERM), ("parent", signal.SIGHUP, -signal.SIGHUP),
                                   ("parent", signal.SIGXCPU, -signal.SIGXCPU), ("child", signal.SIGKILL, 1)):
        readable, writable = os.pipe()
        os.set_blocking(writable, False)
        with contextlib.suppress(BlockingIOError):
            while True:
                os.write(writable, b" ")
        os.set_blocking(writable, True)
        process = start(["-v", "Flat.kvdx.zip"], stderr=writable)
        os.close(writable)
        while process.poll() is None and not unpacked_folders():
            time.sleep(0.01)
        child = pathlib.Path(f"/proc/{process.pid}/task/{process.pid}/children").read_text()
        os.kill(process.pid if victim == "parent" else int(child), number)
        with open(readable, "rb") as messages:
            messages.read()
        if process.wait(60) != status or os.listdir("tmp"):
            faults.append(f"{victim} ended by {number}: status {process.returncode}, left {os.listdir('tmp')}")


def judge_unknown_machine(faults):
    result = run(["--check", "--zone=machine", "Plan.kvdx"], zone="Nowhere/Land")
    if "this machine's time zone is not known, so dates are those of UTC" not in result.stderr:
        faults.append(f"--zone machine, which is not known: {result}")


def judge_ignored_children(faults):
    """Whoever starts the command may ignore SIGCHLD, and then the system does not keep how a child ended."""
    result = run(["--check", "many"], preexec_fn=lambda: signal.signal(signal.SIGCHLD, signal.SIG_IGN))
    if result.returncode != 1 or "2 of 3 bundles" not in result.stderr:
        faults.append(f"SIGCHLD ignored: {result}")


def judge_streams(faults):
    with open("/dev/full", "w") as full:
        told = run(["--json", "--check", "Plan.kvdx"], stdout=full)
    if told.returncode != 1 or "standard output could not be written" not in told.stderr:
        faults.append(f"a full standard output: {told}")
    told = run(["--json", "--check", "Plan.kvdx", "many"], preexec_fn=lambda: (os.close(0), os.close(1)))
    if told.returncode != 1:
        faults.append(f"standard input and output closed: {told}")
    terminal, its_end = pty.openpty()
    process = start(["--check", "many", "terminal"], stderr=its_end)
    os.close(its_end)
    shown = b""
    with contextlib.suppress(OSError):  # reading raises at the end of a terminal
        while piece := os.read(terminal, 4096):
            shown += piece
    process.wait(60)
    if b"[2J" in shown.replace(rb"\x1b[2J", b"") or b"50 %" not in shown:
        faults.append(f"the terminal gets the control characters of a name, or no progress: {shown}")


def main():
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        pathlib.Path("tmp").mkdir()
        prepare()
        for arguments, status, pattern, new in ROWS:
            before = files()
            result = run(arguments)
            found = re.search(pattern.lstrip("!"), result.stderr) is not None
            made = files() - before
            if result.returncode != status or found == pattern.startswith("!") or made != set(new):
                faults.append(f"{arguments}: status {result.returncode}, new {sorted(made)}\n{result.stderr}")
            for name in made:
                pathlib.Path(name).unlink()
        if os.listdir("tmp"):
            faults.append(f"left behind: {os.listdir('tmp')}")
        for judge in (judge_json, judge_ends, judge_unknown_machine, judge_ignored_children, judge_streams,
                      judge_lack_of_memory):
            judge(faults)
        os.chdir("/")
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
