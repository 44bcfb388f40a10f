#!/usr/bin/env python3
"""mutate.py [--count N] [--only TEXT]: mutation testing: checks that the tests notice wrong code.

Changes one place in Server or Base at a time, builds, and runs the tests. Prints each change that
survives, that is, that no test notices. Works on copies of the committed tree in build/mutation;
takes about ten seconds per change."""

import argparse
import concurrent.futures
import os
import pathlib
import queue
import random
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"
# The test programs in the order in which they run, with their arguments. Each is built only if
# those before it have noticed nothing. The tests of network faults are left out: they take long and
# notice nothing that the others miss.
PROGRAMS = {
    "Tests/LibraryTest": ["--gtest_fail_fast"],
    "Fuzz/AssemblyFuzzer": ["Fuzz/Seeds/AssemblyFuzzer", "Tests/Cases", "--mutations", "2000"],
    "Fuzz/FolderContentsFuzzer": ["Fuzz/Seeds/FolderContentsFuzzer", "Tests/Cases"],
    "Fuzz/StringsFuzzer": ["Fuzz/Seeds/StringsFuzzer", "--mutations", "5000"],
    "Fuzz/UriFuzzer": ["Fuzz/Seeds/UriFuzzer", "--mutations", "5000"],
    "Tests/AllocationTest": ["--gtest_fail_fast"],
    "Tests/ClientTest": ["--gtest_fail_fast", "--gtest_filter=-*NetworkTest*:Soak*"],
    "Tests/HostTest": ["--gtest_fail_fast"],
}

SWAPS = [
    ("try_emplace", "insert_or_assign"), ("&&", "||"), ("==", "!="), (" < ", " <= "), (" > ", " <= "), (" ? ", " ? !"),
    ("true", "false"), ("ACTIVE", "INACTIVE"), ("ARCHIVED", "DELETED"), ("FOLDER", "PROJECT"), ("DERIVED", "XREF"),
    ("AUXILIARY", "DEPENDENCY"), ("CLIENT_THREAD", "CALLING_THREAD"), ("Method::GET", "Method::POST"),
    ("BEARER", "NONE"), ("begin()", "end()"), ("fromUrn()", "toUrn()"), ("getTitle()", "getName()"),
    ("first", "second"), (" = 0;", " = 1;"), ("_V3", ""),
]

# Patterns of changes that make no difference to a caller, matched against "file: original line =>
# changed line", each with the reason.
NO_DIFFERENCE = [
    (r"\.reserve\(", "reserving memory only affects speed"),
    (r"JSONNode.cpp:.*(largePagesFrom|preferLargePages|needsCopy =|found_\.)", "only affects speed"),
    (r"LargePages.cpp:", "only affects speed"),
    (r"JSON(Place|Node).*(index|index_|root) = 0", "without a document, the index has no meaning"),
    (r"Uri.cpp:.*find\('\?'\) <= end", "no character is both '?' and '#'"),
    (r"report\.properties\.|(names|details)\.(try_emplace|insert_or_assign)\(id", "each key occurs only once"),
    (r"Texts.h:.*(isFalse|notAMember|moderatorInvited|pendingModeratorApproval)", "nothing is compared with these"),
    (r"isFlagEnabled.*=>.*(false, 0|true, 1)", "the flag manager ignores these arguments"),
    (r"/FullAssemblyData.cpp:.*[Ll]inks", "a document does not expose its own link"),
]


def mutants_of_line(line, is_header):
    """Yields all changed versions of a line, each with a description of the change."""
    code = line.split("//")[0]
    if not code.strip() or re.match(r"\s*(#|static_assert|using |template|namespace|class |struct |friend )", code):
        return
    condition = re.match(r"(\s*(?:\} else )?(?:if|while) \()(.*)(\)\s*\{?)$", code.rstrip("\n"))
    if condition and ";" not in condition[2] and "auto " not in condition[2]:
        yield "negated condition", f"{condition[1]}!({condition[2]}){condition[3]}\n"
    for one, other in SWAPS:
        for left, right in ((one, other), (other, one)):
            if not left.strip() or left == "":
                continue
            for found in re.finditer(re.escape(left), code):
                if left.isalpha() and re.search(r"\w", code[found.end():found.end() + 1] + code[max(found.start() - 1, 0):found.start()]):
                    continue
                yield f"{left.strip()} to {right.strip() or 'nothing'}", code[:found.start()] + right + code[found.end():]
    for found in re.finditer(r'"([^"\\]+)"', code):
        yield "changed text", code[:found.start(1)] + found[1] + "x" + code[found.end(1):]
    returned = re.match(r"(\s*return )([^;]*(?:==|!=|\.contains|\.exists|&&|\|\||is[A-Z]|empty\(\))[^;]*);$", code.rstrip("\n"))
    if returned:
        yield "negated result", f"{returned[1]}!({returned[2]});\n"
    if not is_header and re.match(r"\s+[A-Za-z_][\w:.>*\[\]-]*(\(.*\)|( [+&|]?= | [+]= ).*);$", code.rstrip("\n")) and not re.match(
            r"\s*(return|using|const |auto |static |std::\w+(<.*>)? \w+(\(|;| =)|Qx::\w+ \w|throw)", code):
        yield "removed statement", re.match(r"\s*", code)[0] + ";\n"


def all_mutants():
    files = subprocess.run(["git", "ls-files", "Server", "Base"], cwd=ROOT, capture_output=True, text=True, check=True)
    for name in files.stdout.split():
        if not name.endswith((".cpp", ".h")):
            continue
        lines = (ROOT / name).read_text().splitlines(keepends=True)
        for number, line in enumerate(lines):
            seen = {line}
            for what, changed in mutants_of_line(line, name.endswith(".h")):
                place = f"{name}: {line.strip()} => {changed.strip()}"
                if changed not in seen and not any(re.search(pattern, place) for pattern, _ in NO_DIFFERENCE):
                    seen.add(changed)
                    yield name, number, what, changed


def make_copy(number):
    """Creates a copy of the tree, and checks that it passes the tests unchanged."""
    folder = WORK / str(number)
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    archive = subprocess.run(["git", "archive", "HEAD"], cwd=ROOT, capture_output=True, check=True)
    subprocess.run(["tar", "-x", "-C", folder], input=archive.stdout, check=True)
    subprocess.run(["cmake", "-S", folder, "-B", folder / "build", "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                    "-DCMAKE_CXX_FLAGS=-O0 -g0"], stdout=subprocess.DEVNULL, check=True)
    if verdict(folder) != "survived":
        sys.exit("the tests fail without any change")
    return folder


def builds(folder, program):
    command = ["ninja", "-C", folder / "build", "-j1", program, *(["orvane"] if program == "Tests/HostTest" else [])]
    return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0


def passes(folder, program):
    try:
        run = subprocess.run([folder / "build" / program, *PROGRAMS[program]], timeout=120,
                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=folder)
    except subprocess.TimeoutExpired:
        return False
    return run.returncode == 0


def verdict(folder):
    """Returns what happens to a tree: "broken" (does not build), "killed" or "survived"."""
    for program in PROGRAMS:
        if not builds(folder, program):
            return "broken"
        if not passes(folder, program):
            return "killed"
    return "survived"


def judge(folder, mutant):
    """Returns what happens to the tree with a change applied."""
    name, number, _, changed = mutant
    path = folder / name
    original = path.read_text()
    lines = original.splitlines(keepends=True)
    lines[number] = changed
    path.write_text("".join(lines))
    try:
        return verdict(folder)
    finally:
        path.write_text(original)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--count", type=int, default=300)
    parser.add_argument("--only", default="", help="only files whose path contains this text")
    arguments = parser.parse_args()
    mutants = [mutant for mutant in all_mutants() if arguments.only in mutant[0]]
    chosen = sorted(random.Random(1).sample(mutants, min(arguments.count, len(mutants))))
    print(f"{len(chosen)} of {len(mutants)} changes")
    workers = os.cpu_count() or 1
    folders = queue.Queue()
    for number in range(workers):
        folders.put(make_copy(number))

    def judge_somewhere(mutant):
        folder = folders.get()
        try:
            return judge(folder, mutant)
        finally:
            folders.put(folder)

    count = {"broken": 0, "killed": 0, "survived": 0}
    with concurrent.futures.ThreadPoolExecutor(workers) as pool:
        for mutant, outcome in zip(chosen, pool.map(judge_somewhere, chosen)):
            count[outcome] += 1
            if outcome == "survived":
                name, number, what, changed = mutant
                print(f"survived: {name}:{number + 1}: {what}: {changed.strip()}", flush=True)
    tested = count["killed"] + count["survived"]
    print(f"{tested} changes that build, {count['killed']} noticed ({100 * count['killed'] / max(tested, 1):.1f} %), "
          f"{count['survived']} survived; {count['broken']} more did not build")
    return 0 if tested and count["killed"] >= 0.95 * tested else 1


if __name__ == "__main__":
    sys.exit(main())
