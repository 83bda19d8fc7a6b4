#!/usr/bin/env python3
"""What mspdi-export says and leaves behind: command.py PROGRAM EXAMPLES. A row: arguments, status, a pattern that standard
error holds, the files that are new. "!" before a pattern: it must not be there."""
import json
import os
import pathlib
import re
import resource
import shutil
import subprocess
import sys
import tempfile
import zipfile

PROGRAM = os.path.abspath(sys.argv[1])
EXAMPLES = pathlib.Path(sys.argv[2]).resolve()
CONTENTS = "<t><project><scenario id='s' filename='P.xml'/></project><window><editing-scenario>s</editing-scenario></window></t>"
TASK = ("<task id='{0}'><title>A</title>{1}<start-date>2026-02-06T08:30:00-05:00</start-date>"
        "<end-date>{2}</end-date><duration>0</duration></task>")


def plan(end="2026-07-06T08:30:00-04:00", title="A"):
    return ("<scenario><top-resource idref='r-1'/><resource id='r-1'><type>Group</type></resource><top-task idref='t-1'/>"
            + TASK.format("t-1", "<type>group</type><child-task idref='t1'/>", end) + TASK.format("t1", "", end)
            + "</scenario>").replace(">A<", f">{title}<")


def bundle(path, **plans):
    path.mkdir(parents=True)
    (path / "__TOC.xml").write_text(CONTENTS)
    (path / "P.xml").write_text(plan(**plans))


def packed(path, members):
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, text in members.items():
            archive.writestr(name, text)


def prepare():
    bundle(pathlib.Path("Plan.kvdx"))
    bundle(pathlib.Path("-x.kvdx"))
    bundle(pathlib.Path("Paged.kvdx"))
    pathlib.Path("Paged.html").write_text("kept")
    bundle(pathlib.Path("Doubtful.kvdx"), end="soon")
    bundle(pathlib.Path("Empty.kvdx"))
    (pathlib.Path("Empty.kvdx") / "__TOC.xml").write_text("<t/>")
    for name in "AB":
        bundle(pathlib.Path("many/deep") / f"{name}.kvdx")
    shutil.copytree("Empty.kvdx", "many/Broken.kvdx")
    pathlib.Path("out").mkdir()
    pathlib.Path("Plain.kvdx").write_text("no archive")
    pathlib.Path("taken.xml").write_text("kept")
    inside = {"__TOC.xml": CONTENTS, "P.xml": plan()}
    packed("Flat.kvdx.zip", inside)
    packed("Mailed.kvdx", {f"Other.kvdx/{name}": text for name, text in inside.items()})
    packed("Climbing.kvdx.zip", {"../outside.xml": "x", **inside})
    packed("Bomb.kvdx.zip", {"Big.xml": " " * 200_000_000, **inside})
    with zipfile.ZipFile("Linked.kvdx.zip", "w") as archive:
        link = zipfile.ZipInfo("P.xml")
        link.external_attr = 0o120777 << 16
        archive.writestr(link, "/etc/passwd")


SUMMARY = r"Plan.xml: 2 tasks, 0 links, 0 resources, 1 assignment, 1 calendar, 0 baselines; 0 warnings \(\d"
ROWS = [
    # arguments, status, what is said, what is new
    (["Plan.kvdx"], 0, SUMMARY, ["Plan.xml"]),
    (["Plan.kvdx"], 0, "Dates are those of America/New_York, where the plan was made \\(this machine: UTC\\)", ["Plan.xml"]),
    (["-q", "Plan.kvdx"], 0, "^$", ["Plan.xml"]),
    (["-v", "Plan.kvdx"], 0, "Mapping Task id='t1'", ["Plan.xml"]),
    (["--check", "Plan.kvdx"], 0, "would be written", []),
    (["--zone=machine", "Plan.kvdx"], 0, "!Dates are those", ["Plan.xml"]),
    (["--zone", "Nowhere/Land", "Plan.kvdx"], 1, "no time zone 'Nowhere/Land'", []),
    (["--currency", "EURO", "Plan.kvdx"], 2, "no code of three letters", []),
    (["--", "-x.kvdx"], 0, "-x.xml: 2 tasks", ["-x.xml"]),
    (["Doubtful.kvdx"], 0, "task t1 'A': end-date 'soon' is no date, year 1 is written", ["Doubtful.xml"]),
    (["--strict", "Doubtful.kvdx"], 1, "there are warnings, so nothing is written", []),
    (["Empty.kvdx"], 1, "No 'project' element found in source document.*\n.*Open the plan in Korvella", []),
    (["Plan.kvdx", "-o", "out"], 0, "Plan.xml: ", ["out/Plan.xml"]),
    (["Plan.kvdx", "-o", "taken.xml"], 0, "taken-1.xml: ", ["taken-1.xml"]),
    (["--overwrite", "Plan.kvdx", "-o", "taken.xml"], 0, "taken.xml: ", []),
    (["--page", "Plan.kvdx"], 0, "Plan.html shows it", ["Plan.html", "Plan.xml"]),
    (["--page", "--check", "Plan.kvdx"], 0, "!shows it", []),
    (["--page", "Paged.kvdx"], 0, "Paged-1.html shows it", ["Paged-1.html", "Paged.xml"]),
    (["--page", "--overwrite", "Paged.kvdx"], 0, "Paged.html shows it", ["Paged.xml"]),
    (["Plan.kvdx", "-o", "Doubtful.kvdx/P.xml"], 1, "inside of the bundle", []),
    (["Plan.kvdx", "-o", "absent/P.xml"], 1, "'.*absent' does not exist", []),
    (["Plan.kvdx", "-o", "plan.txt"], 1, "neither an existing folder nor a name", []),
    (["Plan.kvdx", "--overwrit"], 2, "did you mean --overwrite", []),
    (["--quiet", "--verbose", "Plan.kvdx"], 2, "excludes", []),
    ([], 2, "required", []),
    (["absent.kvdx"], 1, "'absent.kvdx' does not exist", []),
    (["Plain.kvdx"], 1, "'Plain.kvdx' is a file, and no zip archive", []),
    (["out"], 1, "There is no bundle in the folder 'out'", []),
    (["many"], 1, "2 of 3 bundles exported", ["many/deep/A.xml", "many/deep/B.xml"]),
    (["Plan.kvdx", "Doubtful.kvdx"], 0, "2 of 2 bundles exported", ["Plan.xml", "Doubtful.xml"]),
    (["Plan.kvdx", "Doubtful.kvdx", "-o", "new.xml"], 2, "-o names an existing folder", []),
    (["Flat.kvdx.zip"], 0, "Flat.xml: 2 tasks", ["Flat.xml"]),
    (["Mailed.kvdx"], 0, "Mailed.xml: 2 tasks", ["Mailed.xml"]),
    (["Climbing.kvdx.zip"], 1, "'../outside.xml' leads out of it", []),
    (["Linked.kvdx.zip"], 1, "'P.xml' is neither file nor folder", []),
    (["Bomb.kvdx.zip"], 1, "unpacks to more than 200 times its size", []),
]


def files():
    return {str(path) for path in pathlib.Path().rglob("*") if path.suffix in (".xml", ".html")}


def run(arguments, **more):
    environment = {**os.environ, "TZ": "UTC", "TMPDIR": os.path.abspath("tmp"), "LC_ALL": "C"}
    return subprocess.run([PROGRAM, *arguments], capture_output=True, text=True, env=environment, timeout=60, **more)


def judge_json(faults):
    lines = run(["--json", "--check", "Plan.kvdx", "Doubtful.kvdx", "Empty.kvdx", "absent.kvdx"]).stdout.splitlines()
    objects = sorted((json.loads(line) for line in lines), key=lambda object: ["P", "D", "E", "a"].index(object["bundle"][0]))
    if [object["status"] for object in objects] != ["checked", "checked", "failed", "failed"]:
        faults.append(f"--json: {lines}")
    elif objects[0]["counts"]["tasks"] != 2 or len(objects[1]["warnings"]) < 2 or objects[2]["output"] is not None:
        faults.append(f"--json says other things: {lines}")
    paged = json.loads(run(["--json", "--page", "Plan.kvdx"]).stdout)
    if pathlib.Path(paged["page"]) != pathlib.Path("Plan.html").resolve():
        faults.append(f"--json --page: {paged}")


def judge_lack_of_memory(faults):
    """Some megabytes are too few even for the start of the process; one step more, and the file is whole."""
    if "/build/asan/" in PROGRAM:
        return  # the sanitizer reserves terabytes
    bundle(pathlib.Path("Large.kvdx"), title="A" * 5_000_000)
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
        judge_json(faults)
        judge_lack_of_memory(faults)
        os.chdir("/")
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
