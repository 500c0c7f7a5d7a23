#!/usr/bin/env python3
"""Checks that no source names a floor above its own, and that only Platform/ asks which system it is on.

usage: check-floors.py ROOT
The rules and their reasons stand in cmake/floors.txt. Prints each violation with its reason and exits with 1.
"""
import os
import re
import sys

root = sys.argv[1]
rules = []
for line in open(os.path.join(root, 'cmake', 'floors.txt'), encoding='utf-8'):
    line = line.rstrip('\n')
    if not line or line.startswith('#'):
        continue
    columns = [c.strip() for c in re.split(r'\s{2,}', line)]
    folder, reason = columns[0], columns[-1]
    allowed = columns[1].split() if len(columns) > 2 else []
    rules.append((folder, allowed, reason))
rules.sort(key=lambda r: -len(r[0]))


def floor_of(path):
    return next((rule for rule in rules if path.startswith(rule[0] + '/')), None)


problems = []
for top in ('Platform', 'Common', 'RuntimeCore', 'InProc', 'Controller'):
    for folder, _, files in os.walk(os.path.join(root, top)):
        for name in files:
            if not name.endswith(('.h', '.cpp')):
                continue
            path = os.path.relpath(os.path.join(folder, name), root)
            rule = floor_of(path)
            is_test = '.test.' in name
            for number, line in enumerate(open(os.path.join(root, path), encoding='utf-8'), 1):
                if top != 'Platform' and not is_test and re.match(r'\s*#\s*(if|ifdef|ifndef|elif).*_WIN32', line):
                    problems.append(f'{path}:{number}: asks for the system; only Platform/ may, so that the logic is the same everywhere')
                match = re.match(r'\s*#\s*include "([^"]+)"', line)
                if not match or '/' not in match.group(1) or is_test:
                    continue
                target = match.group(1)
                target_rule = floor_of(target)
                if target_rule is None or target_rule is rule:
                    continue
                # A folder named as a whole allows its subfolders that have no rule of their own.
                if target_rule[0] not in rule[1]:
                    problems.append(f'{path}:{number}: names {target}, but {rule[0]} may name only '
                                    f'{", ".join(rule[1]) or "itself"}: {rule[2]}')
for problem in problems:
    print(problem)
sys.exit(1 if problems else 0)
