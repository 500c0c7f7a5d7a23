#!/usr/bin/env python3
"""The command line against live programs: the served desktops, whose answers must be those of the native build, and
programs that nobody here wrote.

usage: command_line_cases.py BUILD_FOLDER WINE_LOADER [PART OF A CASE'S NAME...]
Runs inside the environment that tests/live/wine.sh makes. Closes with "cases: N passed, N failed, N skipped".
"""
import fnmatch
import glob
import json
import os
import time

from live_cases import CaseFailed, Target, check, ctl, end_program, expect, finish, foreign, root, served, start, wait_for_window


def explained(miss, known):
    """Whether the list of known misses has one of this role, name and problem."""
    return any(miss['role'] == entry['role'] and fnmatch.fnmatch(miss['name'], entry['name']) and
               any(problem in miss['problem'] for problem in entry['problems']) for entry in known)


def round_trip(name, target):
    """Every element's selector leads back to it: at least 99 of 100, and each miss is explained in the expected file."""
    code, out, err = target.run('--json', '--timeout', '30000', 'selector', '--all', '--max', '1500', limit=400)
    expect(code in (0, 1), f'selector --all: exit code {code}: {err.strip()}')
    survey = json.loads(out)
    print(f'   {name}: {survey["foundAgain"]} of {survey["elements"]} elements are found again, {survey["indexed"]} by an index', flush=True)
    with open(os.path.join(root, 'tests', 'expected', 'live', 'selector_misses.json'), encoding='utf-8') as file:
        known = json.load(file).get(name, [])
    for miss in survey['misses']:
        expect(explained(miss, known), f'{miss["role"]} {miss["name"]!r} isn\'t found again: {miss["problem"]} ({miss["selector"]})')
    expect(survey['foundAgain'] >= 0.99 * survey['elements'],
           f'only {survey["foundAgain"]} of {survey["elements"]} elements are found again')


def served_case(path):
    """One desktop file through real windows: the tree must be the one that the native build prints."""
    name = os.path.splitext(os.path.basename(path))[0]
    expected_path = os.path.join(root, 'tests', 'expected', 'live', name + '.tree.txt')
    with served(path) as target:
        out = target.text('tree')
        if os.environ.get('VANTREL_REWRITE_EXPECTED'):
            os.makedirs(os.path.dirname(expected_path), exist_ok=True)
            with open(expected_path, 'w', encoding='utf-8') as file:
                file.write(out)
        expect(os.path.exists(expected_path), f'{expected_path} is missing')
        with open(expected_path, encoding='utf-8') as file:
            expected = file.read()
        if out != expected:
            got, want = out.splitlines(), expected.splitlines()
            place = next((i for i, (a, b) in enumerate(zip(got, want)) if a != b), min(len(got), len(want)))
            raise CaseFailed(f'line {place + 1} is {got[place] if place < len(got) else "missing"!r}, '
                             f'expected {want[place] if place < len(want) else "nothing"!r}')
        round_trip(name, target)


def foreign_case(command, title, selector):
    """A program that is not ours: a tree, an element by a selector, the same element under its middle, its attributes."""
    with foreign(command, title) as target:
        elements = target.text('--json', 'tree').count('"role"')
        expect(elements >= 5, f'the tree has {elements} elements')
        rectangle = target.json('find', selector)['results'][0]['rectangle']
        x, y = (rectangle['left'] + rectangle['right']) // 2, (rectangle['top'] + rectangle['bottom']) // 2
        under = target.json('at', str(x), str(y))
        expect(under['rectangle'] == rectangle, f'at {x} {y}: {under["rectangle"]} where {rectangle} was expected')
        target.json('attrs', 'at', f'{x},{y}')
        target.text('find', 'ctrl[name="no such element anywhere"]', code=1)
        round_trip(os.path.splitext(command.replace('\\', '/').split('/')[-1])[0], target)


def dying_target_case():
    """A target that ends between two requests is an error, and not a hang."""
    process = start('notepad')
    target = Target(wait_for_window('notepad'))
    end_program('notepad')
    process.wait()
    started = time.monotonic()
    target.refused('tree', code=3)
    expect(time.monotonic() - started < 30, 'it took longer than the time-out')


print('-- served desktops', flush=True)
for desktop in sorted(glob.glob(os.path.join(root, 'tests', 'desktops', '*.json'))):
    check('served ' + os.path.basename(desktop), served_case, desktop)
print('-- programs that are not ours', flush=True)
check('notepad', foreign_case, 'notepad', 'notepad', 'ctrl[role="editable text"]')
check('wordpad', foreign_case, 'C:\\Program Files\\Windows NT\\Accessories\\wordpad.exe', 'wordpad', 'ctrl[role="editable text"]')
check('regedit', foreign_case, 'regedit', 'registry editor', 'ctrl[role=outline] ctrl[name="HKEY_CURRENT_USER"]')
check('winecfg', foreign_case, 'winecfg', 'wine configuration', 'ctrl[role="push button" name="OK"]')
check('taskmgr', foreign_case, 'taskmgr', 'task manager', 'ctrl[role="page tab" name="Processes"]')
check('a target that has gone', dying_target_case)
finish()
