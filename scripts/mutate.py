#!/usr/bin/env python3
"""Changes the program in small ways, one at a time, and tells which changes no test notices.

    scripts/mutate.py [--count N] [--seed S] [--jobs J] [PATH ...]

Takes N places (200 unless told) at random from the files below the paths (src and ctapi), the same
ones for the same seed. Works in a copy of the last commit in build/mutation, so that the tree stays as
it is. For each mutant it builds and runs the test programs of the folder of the same name, and where
these notice nothing all tests. A mutant that does not compile does not count. The result stands in
build/mutation/result.txt: the survivors, each with its file, line and change, and the share of those
that were noticed. A survivor either shows a missing test, or changes nothing that can be seen.
"""

import argparse
import pathlib
import random
import re
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPY = ROOT / "build" / "mutation" / "tree"
BUILD = ROOT / "build" / "mutation" / "build"
RESULT = ROOT / "build" / "mutation" / "result.txt"

# What is looked for, and what takes its place. Blanks around an operator tell it from brackets of
# templates, references and signs.
CHANGES = [
    (re.compile(r" < "), " <= "),
    (re.compile(r" <= "), " < "),
    (re.compile(r" > "), " >= "),
    (re.compile(r" >= "), " > "),
    (re.compile(r" == "), " != "),
    (re.compile(r" != "), " == "),
    (re.compile(r" && "), " || "),
    (re.compile(r" \|\| "), " && "),
    (re.compile(r" \+ "), " - "),
    (re.compile(r" - "), " + "),
    (re.compile(r"\btrue\b"), "false"),
    (re.compile(r"\bfalse\b"), "true"),
    (re.compile(r"(?<=[(=,\[ ])(\d+)(?=[;,)\]}])"), lambda match: str(int(match.group(1)) + 1)),
    (re.compile(r"(?<=if \()(?!constexpr)(\w+)(?=\))"), lambda match: "!" + match.group(1)),
    (re.compile(r"^(\s+)((?:\w+(?:\.|->|::))*\w+\([^;{}]*\);)$"), lambda match: match.group(1) + ";"),
]
# Lines that are no code of a function: comments, directives, assertions of the compiler, names.
SKIPPED = re.compile(r"^\s*(//|#|static_assert|using |namespace |template|\[\[nodiscard\]\]|class |struct )")
LONGEST_TEST = 300  # seconds


def run(command, timeout=None):
    try:
        done = subprocess.run(command, cwd=COPY, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=timeout, check=False)
    except subprocess.TimeoutExpired:
        return False
    return done.returncode == 0


def files(path):
    found = sorted((COPY / path).rglob("*")) if (COPY / path).is_dir() else [COPY / path]
    return [file for file in found
            if file.suffix in (".cpp", ".h") and "windows" not in file.parts]


def places(paths):
    """Every place that can be changed: file, line number, new line."""
    for path in paths:
        for file in files(path):
            for number, line in enumerate(file.read_text().split("\n")):
                if SKIPPED.match(line):
                    continue
                code = line.split("//")[0]
                for pattern, change in CHANGES:
                    for match in pattern.finditer(code):
                        # Texts stay: their own tests compare them whole.
                        if code[:match.start()].count('"') % 2 == 1:
                            continue
                        new = code[:match.start()] + (
                            change(match) if callable(change) else change) + code[match.end():]
                        yield file, number, new


def test_folder(file):
    """The folder of tests of the same name, or None."""
    folder = file.relative_to(COPY).parent
    names = [part for part in folder.parts if part not in ("src", "ctapi", "linux", "qt", "documents",
                                                           "simulated")]
    where = pathlib.Path("tests", *names)
    return where if names and (BUILD / where / "cmake_install.cmake").exists() else None


def build(jobs, target="all"):
    return run(["cmake", "--build", str(BUILD), "-j", str(jobs), "--target", target], 600)


def programs_pass(folder):
    """Whether the test programs below a folder pass, each run as a whole, which is quick."""
    programs = [path for path in sorted((BUILD / folder).rglob("*_test")) if path.is_file()]
    return all(run(["env", "QT_QPA_PLATFORM=offscreen", str(program), "--gtest_brief=1"],
                   LONGEST_TEST) for program in programs)


def is_noticed(file, jobs, quick_folders):
    """Whether a test notices the change of this file; None where it does not compile."""
    if (folder := test_folder(file)) in quick_folders:
        if not build(jobs, f"{folder}/all"):
            return None
        if not programs_pass(folder):
            return True
    if not build(jobs):
        return None
    return not passes(jobs)


def passes(jobs):
    """Whether all tests pass but those that take long by their nature."""
    return run(["ctest", "--test-dir", str(BUILD), "-j", str(jobs), "--stop-on-failure",
                    "--timeout", "60", "-E", "Killed|ReadsBeside"], 2 * LONGEST_TEST)


def prepare(jobs, paths):
    """Builds the copy; the folders of tests whose programs can be run by themselves."""
    if not (COPY / ".git").exists():
        subprocess.run(["git", "-C", ROOT, "worktree", "prune"], check=True)
        subprocess.run(["git", "-C", ROOT, "worktree", "add", "--force", "--detach", COPY, "HEAD"],
                       check=True)
    subprocess.run(["git", "-C", COPY, "checkout", "--force", "--detach",
                    subprocess.check_output(["git", "-C", ROOT, "rev-parse", "HEAD"],
                                            text=True).strip()], check=True)
    # A mutant is linked into every test program.
    linker = "-fuse-ld=lld" if shutil.which("ld.lld") else ""
    subprocess.run(["cmake", "-S", COPY, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                    "-DKARTOCHECK_BENCH=OFF", f"-DCMAKE_EXE_LINKER_FLAGS={linker}"],
                   check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", BUILD, "-j", str(jobs)], check=True)
    if not passes(jobs):
        sys.exit("The tests fail without a change.")
    folders = {test_folder(file) for path in paths for file in files(path)} - {None}
    return {folder for folder in folders if programs_pass(folder)}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("paths", nargs="*", default=["src", "ctapi"])
    options = parser.parse_args()

    quick_folders = prepare(options.jobs, options.paths)
    mutants = list(places(options.paths))
    random.Random(options.seed).shuffle(mutants)
    noticed, survivors, begin = 0, [], time.monotonic()
    for file, number, line in mutants:
        if noticed + len(survivors) >= options.count:
            break
        original = file.read_text()
        lines = original.split("\n")
        old, lines[number] = lines[number], line
        file.write_text("\n".join(lines))
        try:
            seen = is_noticed(file, options.jobs, quick_folders)
            if seen is None:
                continue
            name = f"{file.relative_to(COPY)}:{number + 1}: {old.strip()}  ->  {line.strip()}"
            if seen:
                noticed += 1
            else:
                survivors.append(name)
                print(f"survived: {name}", flush=True)
        finally:
            file.write_text(original)
        done = noticed + len(survivors)
        print(f"{done}/{options.count} after {time.monotonic() - begin:.0f} s", flush=True)

    done = noticed + len(survivors)
    summary = f"{noticed} of {done} noticed ({100 * noticed / max(done, 1):.1f} %), seed {options.seed}"
    RESULT.write_text("\n".join([summary, *survivors]) + "\n")
    print(summary)
    return 0


if __name__ == "__main__":
    sys.exit(main())
