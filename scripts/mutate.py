#!/usr/bin/env python3
"""Changes the library in small ways and tells which changes the tests notice.

usage: mutate.py [--seed N] [--count N] [--places FILE] [--source DIR] [--tests DIR] [--rooms NAME,...] [--work DIR] [--report FILE]

Places are picked by the seed in the sources of the rooms, so the same seed on the same sources picks the same ones; or
they are those that FILE says were missed, or lists: "edid/image.cpp:173: || -> &&" a line, a report's lines too. With
--tests, the tests of another tree are held against them. Each change is made on its own, in a copy of the tree under a
temporary folder, or under DIR, where the next run builds only what is new. The tests are built once without optimisation;
a change compiles what includes it and is linked in front of the library's own objects. The quick tests run first, none
with REEDID_CORPUS, so that the tests stand on their own. A change is killed when a test fails, crashes or takes far too
long; one that does not compile says nothing. Half a minute of processor time builds each hundred files, three seconds
try a change. Changes:

  comparison  == and !=, < and <=, > and >= swapped      logical    && and || swapped
  arithmetic  + and - swapped                            condition  if (x) becomes if (!(x))
  constant    a number becomes its neighbour             shift      << n and >> n by one bit more or less
"""
import argparse
import json
import os
import pathlib
import random
import re
import resource
import shlex
import shutil
import subprocess
import sys
import tempfile
import time

SWAPS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&", "+": "-", "-": "+"}
KINDS = {"&&": "logical", "||": "logical", "+": "arithmetic", "-": "arithmetic"}
# The formatter sets spaces around binary operators, and none within template brackets.
OPERATOR = re.compile(r"(?<= )(==|!=|<=|>=|<|>|&&|\|\||\+|-)(?= )")
NUMBER = re.compile(r"(?<![\w.'])(0x[0-9A-Fa-f]+|\d+)([uUlL]*)(?![\w.'])")
# What is no code: comments, texts, characters, directives, and what stops the compiler rather than a test.
NO_CODE = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'|^[ \t]*#[^\n]*(?:\\\n[^\n]*)*|'
                     r"\b(?:static_assert|PIN_\w+)\s*\([^;]*;|\btemplate <[^\n]*", re.S | re.M)


def end_of_parentheses(text, at):
    depth = 0
    for i in range(at, len(text)):
        depth += {"(": 1, ")": -1}.get(text[i], 0)
        if depth == 0:
            return i
    return None


def places(text):
    """(start, end, replacements, kind) of everything that can be changed."""
    code = NO_CODE.sub(lambda m: re.sub(r"[^\n]", " ", m.group()), text)
    found = []
    for m in OPERATOR.finditer(code):
        found.append((m.start(), m.end(), [SWAPS[m.group()]], KINDS.get(m.group(), "comparison")))
    for m in NUMBER.finditer(code):
        value, suffix = int(m.group(1), 0), m.group(2)
        shift = re.search(r"(<<|>>)\s*$", code[: m.start()]) is not None
        neighbours = [value + 1] + ([value - 1] if value > 0 else [])
        found.append((m.start(), m.end(), [f"{n}{suffix}" for n in neighbours], "shift" if shift else "constant"))
    for m in re.finditer(r"\bif \(", code):
        end = end_of_parentheses(code, m.end() - 1)
        if end is not None and ";" not in code[m.end() : end] and "=" not in re.sub("[=!<>]=", "", code[m.end() : end]):
            found.append((m.end(), end, [f"!({text[m.end():end]})"], "condition"))
    return sorted(found)


def listed(tree, lines):
    """The places of a list or of an earlier report, but for those that were killed there."""
    for line in lines:
        m = re.match(r"(?:ALIVE +)?([\w/.]+):(\d+):(?:(\d+))? (?:(\w+): )?(.+?) -> (.+?)(?:  \(.*\))?$", line.rstrip())
        if m is None:
            continue
        path, number, column, kind, old, new = m.groups()
        text = (tree / path).read_text()
        begin = sum(len(row) + 1 for row in text.split("\n")[: int(number) - 1]) + int(column or 1) - 1
        found = re.compile(r"\s+".join(map(re.escape, old.split()))).search(text, begin)
        if found is None or (text.count("\n", begin, found.start()) > 0):
            sys.exit(f"not there: {line}")
        yield pathlib.Path(path), found.start(), found.end(), new, kind or "listed"


def pick(tree, rooms, count, seed):
    """As many in each room; tables of numbers would leave little for the code elsewhere."""
    chosen = []
    for room in rooms:
        sites = []
        for path in sorted(p for p in (tree / room).rglob("*") if p.suffix in (".cpp", ".h")):
            sites += [(path.relative_to(tree), *place) for place in places(path.read_text())]
        chooser = random.Random(f"{seed} {room}")
        for path, start, end, options, kind in sorted(chooser.sample(sites, min(count // len(rooms), len(sites)))):
            chosen.append((path, start, end, chooser.choice(options), kind))
    return chosen


class Program:
    def __init__(self, tree):
        self.tree, self.build_dir, self.limit = tree, tree / "build", 600
        flags = "-O0 -g0"
        self.run(["cmake", "-S", tree, "-B", self.build_dir, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None", f"-DCMAKE_CXX_FLAGS={flags}",
                  f"-DCMAKE_C_FLAGS={flags}", "-DREEDID_TOOL=OFF", "-DREEDID_TESTS=ON"]).check_returncode()
        built = self.ninja("-j", "1", "reedid_tests")
        if built.returncode != 0:
            sys.exit(f"the tests do not build:\n{built.stdout}")
        commands = json.loads((self.build_dir / "compile_commands.json").read_text())
        rooms = (tree / "cmake" / "rooms").read_text().split()
        self.compile = {str(pathlib.Path(c["file"]).relative_to(tree)): shlex.split(c["command"]) for c in commands
                        if pathlib.Path(c["file"]).relative_to(tree).parts[0] in rooms}
        self.users = self.includers()
        self.precompile(tree, rooms)
        link = next(part for part in self.ninja("-t", "commands", "reedid_tests").stdout.split("\n")[-2].split(" && ")
                    if "-o tests/reedid_tests" in part)
        self.link = shlex.split(link)
        if shutil.which("ld.lld"):
            self.link.append("-fuse-ld=lld")

    def run(self, command, **options):
        return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              errors="replace", **options)

    def ninja(self, *arguments):
        return self.run(["ninja", "-C", self.build_dir, *arguments])

    def includers(self):
        """From each header to the sources of the library that include it."""
        users = {}
        for block in self.ninja("-t", "deps").stdout.split("\n\n"):
            files = [os.path.relpath(os.path.join(self.build_dir, line.strip()), self.tree) for line in block.split("\n")[1:]]
            for file in files:
                users.setdefault(file, set()).update(f for f in files[:1] if f in self.compile)
        return users

    def precompile(self, tree, rooms):
        """What takes most of the time of a compiler: the headers, for a changed header those of the system only."""
        sources = [p for room in rooms for p in sorted((tree / room).rglob("*")) if p.suffix in (".cpp", ".h")]
        system = sorted({line for p in sources for line in p.read_text().split("\n") if line.startswith("#include <")})
        own = [f'#include "{p.relative_to(tree)}"' for p in sources if p.suffix == ".h"]
        for name, lines in (("system", system), ("all", system + own)):
            (self.build_dir / f"{name}.h").write_text("\n".join(lines))
            command = list(next(iter(self.compile.values())))
            command[command.index("-o") + 1] = f"{name}.h.gch"
            command[-2:] = ["-x", "c++-header", f"{name}.h"]
            self.run(command, cwd=self.build_dir).check_returncode()

    def build(self, path):
        """Whether the program with the changed file could be made: its objects stand in front of the library's."""
        objects = []
        for source in sorted(self.users.get(str(path), {str(path)})):
            objects.append(str(self.build_dir / f"changed{len(objects)}.o"))
            command = list(self.compile[source])
            command[command.index("-o") + 1] = objects[-1]
            command += ["-include", "system.h" if path.suffix == ".h" else "all.h"]
            if self.run(command, cwd=self.build_dir).returncode != 0:
                return False
        command = [*self.link[:1], *objects, *self.link[1:]]
        command[command.index("-o") + 1] = "tests/changed"
        return self.run(command, cwd=self.build_dir).returncode == 0

    def time_tests(self):
        """Runs all tests and sorts them: those that take no time, and each other on its own."""
        times = self.build_dir / "times.json"
        failed = self.test("reedid_tests", "*", f"--gtest_output=json:{times}")
        if failed:
            sys.exit(f"the tests fail without a change: {failed}")
        tests = [(float(test["time"][:-1]), f"{suite['name']}.{test['name']}")
                 for suite in json.loads(times.read_text())["testsuites"] for test in suite["testsuite"]]
        self.limit = 10 + 10 * sum(time for time, _ in tests)
        quick = [name for time, name in sorted(tests) if time < 0.1]
        self.order = [":".join(quick), *(name for time, name in sorted(tests) if time >= 0.1)]

    def notice(self):
        """The first test that notices a change; empty when none does."""
        return next(filter(None, (self.test("changed", names) for names in self.order)), "")

    def test(self, program, names, *options):
        environment = {k: v for k, v in os.environ.items() if k != "REEDID_CORPUS"}
        def bounded():
            resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        try:
            result = self.run([f"./{program}", "--gtest_fail_fast", "--gtest_brief=1", f"--gtest_filter={names}", *options],
                              cwd=self.build_dir / "tests", env=environment, timeout=self.limit, preexec_fn=bounded)
        except subprocess.TimeoutExpired:
            return "takes too long"
        failed = re.search(r"^\[  FAILED  \] ([\w./]+)", result.stdout, re.M)
        return "" if result.returncode == 0 else failed.group(1) if failed else f"ends with {result.returncode}"


def copy(source, tree):
    """Changed files only, so that what was built before is still good."""
    kept = set()
    for path in source.rglob("*"):
        name = path.relative_to(source)
        if path.is_file() and name.parts[0] not in ("build", ".git"):
            kept.add(name)
            target = tree / name
            if not target.exists() or target.read_bytes() != path.read_bytes():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(path, target)
    for path in list(tree.rglob("*")):
        name = path.relative_to(tree)
        if path.is_file() and name.parts[0] != "build" and name not in kept:
            path.unlink()


def main():
    here = pathlib.Path(__file__).resolve().parent.parent
    parser = argparse.ArgumentParser(usage=__doc__.split("\n")[2][7:])
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--places", type=argparse.FileType())
    parser.add_argument("--source", type=pathlib.Path, default=here)
    parser.add_argument("--tests", type=pathlib.Path)
    parser.add_argument("--rooms")
    parser.add_argument("--work", type=pathlib.Path)
    parser.add_argument("--report", type=argparse.FileType("w"), default=sys.stdout)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="reedid-mutate-") as folder:
        tree = ((options.work or pathlib.Path(folder)) / "tree").resolve()
        copy(options.source, tree)
        if options.tests:
            copy(options.tests, tree / "tests")
        report = lambda line: print(line, file=options.report, flush=True)
        rooms = options.rooms.split(",") if options.rooms else (tree / "cmake" / "rooms").read_text().split()
        mutants = list(listed(tree, options.places)) if options.places else pick(tree, rooms, options.count, options.seed)
        program = Program(tree)
        program.time_tests()
        tally = {}
        for path, start, end, replacement, kind in mutants:
            text = (tree / path).read_text()
            (tree / path).write_text(text[:start] + replacement + text[end:])
            failed = program.notice() if program.build(path) else "does not compile"
            (tree / path).write_text(text)
            outcome = 2 if failed == "does not compile" else 0 if failed else 1
            tally.setdefault(path.parts[0], [0, 0, 0])[outcome] += 1
            place = f"{path}:{text.count(chr(10), 0, start) + 1}:{start - text.rfind(chr(10), 0, start)}"
            old = " ".join(text[start:end].split())
            report(f"{('killed', 'ALIVE', 'void')[outcome]:7}{place} {kind}: {old} -> {' '.join(replacement.split())}"
                   f"{'  (' + failed + ')' if failed else ''}")
        report("\nroom        killed  alive  not compiled")
        for room, counts in [*tally.items(), ("all", [sum(c) for c in zip(*tally.values())])]:
            report(f"{room:12}{counts[0]:6}{counts[1]:7}{counts[2]:14}")


if __name__ == "__main__":
    main()
