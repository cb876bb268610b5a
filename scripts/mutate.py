#!/usr/bin/env python3
"""Changes the library in small ways and tells which changes the tests notice.

usage: mutate.py [--seed N] [--count N] [--source DIR] [--tests DIR] [--rooms NAME,...] [--report FILE]

Places are picked by the seed in the sources of the rooms, so the same seed on the same sources picks the same ones; with
--tests, the tests of another tree are held against them. Each change is made on its own, in a copy of the tree under a
temporary folder; reedid_tests is built and run without REEDID_CORPUS, so that the tests stand on their own. A change is
killed when a test fails, crashes or takes far too long; one that does not compile says nothing. Changes:

  comparison  == and !=, < and <=, > and >= swapped      logical    && and || swapped
  arithmetic  + and - swapped                            condition  if (x) becomes if (!(x))
  constant    a number becomes its neighbour             shift      << n and >> n by one bit more or less
"""
import argparse
import os
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys
import tempfile
import time

ROOMS = "base timing edid vesa displayid cea inventory transform"
SWAPS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&", "+": "-", "-": "+"}
KINDS = {"&&": "logical", "||": "logical", "+": "arithmetic", "-": "arithmetic"}
# The formatter sets spaces around binary operators, and none within template brackets.
OPERATOR = re.compile(r"(?<= )(==|!=|<=|>=|<|>|&&|\|\||\+|-)(?= )")
NUMBER = re.compile(r"(?<![\w.'])(0x[0-9A-Fa-f]+|\d+)([uUlL]*)(?![\w.'])")
# What is no code: comments, texts, characters, directives, and what stops the compiler rather than a test.
NO_CODE = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'|^[ \t]*#[^\n]*(?:\\\n[^\n]*)*|'
                     r"\bstatic_assert\s*\([^;]*;|\btemplate <[^\n]*", re.S | re.M)


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

    def run(self, command, **options):
        return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              errors="replace", **options)

    def build(self):
        return self.run(["ninja", "-C", self.build_dir, "-j", "1", "reedid_tests"])

    def test(self):
        """The first test that fails, or what else went wrong; empty when all pass."""
        environment = {k: v for k, v in os.environ.items() if k != "REEDID_CORPUS"}
        started = time.monotonic()
        def bounded():
            resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        try:
            result = self.run([self.build_dir / "tests" / "reedid_tests", "--gtest_fail_fast", "--gtest_brief=1"],
                              cwd=self.build_dir / "tests", env=environment, timeout=self.limit, preexec_fn=bounded)
        except subprocess.TimeoutExpired:
            return "takes too long"
        self.took = time.monotonic() - started
        failed = re.search(r"^\[  FAILED  \] ([\w./]+)", result.stdout, re.M)
        return "" if result.returncode == 0 else failed.group(1) if failed else f"ends with {result.returncode}"


def main():
    here = pathlib.Path(__file__).resolve().parent.parent
    parser = argparse.ArgumentParser(usage=__doc__.split("\n")[2][7:])
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--source", type=pathlib.Path, default=here)
    parser.add_argument("--tests", type=pathlib.Path)
    parser.add_argument("--rooms", default=ROOMS.replace(" ", ","))
    parser.add_argument("--report", type=argparse.FileType("w"), default=sys.stdout)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="reedid-mutate-") as folder:
        tree = pathlib.Path(folder) / "tree"
        shutil.copytree(options.source, tree, ignore=shutil.ignore_patterns("build", ".git"))
        if options.tests:
            shutil.rmtree(tree / "tests")
            shutil.copytree(options.tests, tree / "tests")
        report = lambda line: print(line, file=options.report, flush=True)
        rooms = options.rooms.split(",")
        mutants = pick(tree, rooms, options.count, options.seed)
        program = Program(tree)
        built = program.build()
        failed = built.stdout if built.returncode != 0 else program.test()
        if failed:
            sys.exit(f"the tests fail without a change: {failed}")
        program.limit = 10 + 10 * program.took
        tally = {room: [0, 0, 0] for room in rooms}
        for path, start, end, replacement, kind in mutants:
            text = (tree / path).read_text()
            (tree / path).write_text(text[:start] + replacement + text[end:])
            failed = "does not compile" if program.build().returncode != 0 else program.test()
            (tree / path).write_text(text)
            outcome = 2 if failed == "does not compile" else 0 if failed else 1
            tally[path.parts[0]][outcome] += 1
            place = f"{path}:{text.count(chr(10), 0, start) + 1}:{start - text.rfind(chr(10), 0, start)}"
            old = " ".join(text[start:end].split())
            report(f"{('killed', 'ALIVE', 'void')[outcome]:7}{place} {kind}: {old} -> {' '.join(replacement.split())}"
                   f"{'  (' + failed + ')' if failed else ''}")
        report("\nroom        killed  alive  not compiled")
        for room, counts in [*tally.items(), ("all", [sum(c) for c in zip(*tally.values())])]:
            report(f"{room:12}{counts[0]:6}{counts[1]:7}{counts[2]:14}")


if __name__ == "__main__":
    main()
