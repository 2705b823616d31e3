#!/usr/bin/env python3
"""Counts the checks the test suite makes: every QtTest test function or data row that
passes, and every QCOMPARE/QVERIFY executed, as reported by the tests' own -v2 output.

Usage: tools/count-checks.py BUILD_DIR [--per-class]

Rows whose data tag begins with "ClassName/" count for that class's test name
(tst_classname); all others count for the test executable that ran them."""
import collections
import os
import json
import re
import subprocess
import sys

build = sys.argv[1]
per_class = "--per-class" in sys.argv
tests = json.loads(subprocess.run(["ctest", "--test-dir", build, "--show-only=json-v1"],
                                  capture_output=True, text=True, check=True).stdout)["tests"]
rows = collections.Counter()
verifications = collections.Counter()
pass_re = re.compile(r"^PASS\s*: \w+::(\w+)\((.*)\)$")
info_re = re.compile(r"^INFO\s*: \w+::\w+\((.*)\) (QCOMPARE|QVERIFY2?|QTRY_\w+)\(")


def owner_of(test_name, tag):
    # A family test's rows carry their class first: "ResultIntInterface/getValue/...".
    m = re.match(r"([A-Z]\w+)/", tag)
    return ("tst_" + m.group(1) if m else test_name).lower()


for test in tests:
    command = test.get("command")
    if not command or not re.search(r"tst_\w+$", command[-1]):
        continue
    environment = {}
    for prop in test.get("properties", []):
        if prop["name"] == "ENVIRONMENT":
            environment = dict(v.split("=", 1) for v in prop["value"])
    out = subprocess.run(command + ["-v2"], capture_output=True, text=True,
                         env=dict(os.environ, **environment)).stdout
    for line in out.splitlines():
        m = pass_re.match(line)
        if m and m.group(1) not in ("initTestCase", "cleanupTestCase"):
            rows[owner_of(test["name"], m.group(2))] += 1
        m = info_re.match(line)
        if m:
            verifications[owner_of(test["name"], m.group(1))] += 1

owners = sorted(set(rows) | set(verifications))
if per_class:
    for owner in owners:
        print(f"{owner:45} rows {rows[owner]:5}  verifications {verifications[owner]:6}")
print(f"total: {sum(rows.values())} passing test functions/data rows, "
      f"{sum(verifications.values())} verifications executed")
