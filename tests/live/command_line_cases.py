#!/usr/bin/env python3
"""The command line against live programs: the served desktops, whose answers must be those of the native build, and
programs that nobody here wrote.

usage: command_line_cases.py BUILD_FOLDER WINE_LOADER [CASE...]
Runs inside the environment that tests/live/wine.sh makes. Closes with "cases: N passed, N failed, N skipped".
"""
import fnmatch
import glob
import json
import os
import subprocess
import sys
import time

build, wine, only = sys.argv[1], sys.argv[2], sys.argv[3:]
root = os.path.realpath(os.path.join(os.path.dirname(__file__), '..', '..'))
results = {'passed': 0, 'failed': 0, 'skipped': 0}


def find_file(name):
    found = glob.glob(os.path.join(build, '**', name), recursive=True)
    return found[0] if found else None


ctl_path = find_file('vantrel-ctl.exe')
server = find_file('vantrel_x64.dll')
standard = find_file('standard_objects.dll')
served_program = find_file('served_desktop.exe')


def windows_path(path):
    return 'Z:' + path.replace('/', '\\')


def ctl(*arguments, limit=60):
    """Runs the controller; answers exit code, standard output and standard error."""
    try:
        done = subprocess.run([wine, ctl_path, '--server', windows_path(server), *arguments], capture_output=True, timeout=limit)
    except subprocess.TimeoutExpired:
        return 124, '', 'the controller did not end'
    text = lambda data: data.decode('utf-8', 'replace').replace('\r\n', '\n')
    return done.returncode, text(done.stdout), text(done.stderr)


def check(name, problem):
    if problem:
        results['failed'] += 1
        print(f'FAILED {name}: {problem}', flush=True)
    else:
        results['passed'] += 1
        print(f'passed {name}', flush=True)


def start(command, *arguments):
    return subprocess.Popen([wine, command, *arguments], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL)


def wait_for_window(title, seconds=30):
    """The window whose title holds the text, as the controller lists it."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        code, out, _ = ctl('--json', 'windows')
        if code == 0:
            for window in json.loads(out).get('windows', []):
                if title.lower() in window.get('title', '').lower():
                    return window
        time.sleep(0.5)
    return None


def explained(miss, known):
    """Whether the list of known misses has one of this role, name and problem."""
    return any(miss['role'] == entry['role'] and fnmatch.fnmatch(miss['name'], entry['name']) and entry['problem'] in miss['problem']
               for entry in known)


def round_trip(name, target):
    """Every element's selector leads back to it: at least 99 of 100, and each miss is explained in the expected file."""
    code, out, err = ctl(*target, '--json', '--timeout', '30000', 'selector', '--all', '--max', '1500', limit=400)
    if code not in (0, 1):
        return f'selector --all: exit code {code}: {err.strip()}'
    survey = json.loads(out)
    print(f'   {name}: {survey["foundAgain"]} of {survey["elements"]} elements are found again, {survey["indexed"]} by an index', flush=True)
    with open(os.path.join(root, 'tests', 'expected', 'live', 'selector_misses.json'), encoding='utf-8') as file:
        known = json.load(file).get(name, [])
    for miss in survey['misses']:
        if not explained(miss, known):
            return f'{miss["role"]} {miss["name"]!r} isn\'t found again: {miss["problem"]} ({miss["selector"]})'
    if survey['foundAgain'] < 0.99 * survey['elements']:
        return f'only {survey["foundAgain"]} of {survey["elements"]} elements are found again'
    return None


def served_case(path):
    """One desktop file through real windows: the tree must be the one that the native build prints."""
    name = os.path.splitext(os.path.basename(path))[0]
    with open(path, encoding='utf-8') as file:
        title = json.load(file)['windows'][0].get('title', '')
    expected_path = os.path.join(root, 'tests', 'expected', 'live', name + '.tree.txt')
    process = start(served_program, windows_path(path))
    try:
        line = process.stdout.readline().decode()
        if not line.startswith('ready'):
            return f'served_desktop said {line!r}'
        window = wait_for_window(title)
        if not window:
            return f'no window titled {title!r}'
        code, out, err = ctl('--handle', str(window['handle']), 'tree')
        if code != 0:
            return f'tree: exit code {code}: {err.strip()}'
        if os.environ.get('VANTREL_REWRITE_EXPECTED'):
            os.makedirs(os.path.dirname(expected_path), exist_ok=True)
            with open(expected_path, 'w', encoding='utf-8') as file:
                file.write(out)
            return None
        if not os.path.exists(expected_path):
            return f'{expected_path} is missing'
        with open(expected_path, encoding='utf-8') as file:
            expected = file.read()
        if out != expected:
            got, want = out.splitlines(), expected.splitlines()
            place = next((i for i, (a, b) in enumerate(zip(got, want)) if a != b), min(len(got), len(want)))
            return (f'line {place + 1} is {got[place] if place < len(got) else "missing"!r}, '
                    f'expected {want[place] if place < len(want) else "nothing"!r}')
        return round_trip(name, ['--handle', str(window['handle'])])
    finally:
        process.kill()
        process.wait()


def foreign_case(command, title, selector, arguments=()):
    """A program that is not ours: a tree, an element by a selector, the same element under its middle, its attributes."""
    process = start(command, *arguments)
    try:
        window = wait_for_window(title)
        if not window:
            return f'no window titled {title!r}'
        target = ['--handle', str(window['handle']), '--beside', windows_path(standard)]
        code, out, err = ctl(*target, '--json', 'tree')
        if code != 0:
            return f'tree: exit code {code}: {err.strip()}'
        if out.count('"role"') < 5:
            return f'the tree has {out.count(chr(34) + "role" + chr(34))} elements'
        code, out, err = ctl(*target, '--json', 'find', selector)
        if code != 0:
            return f'find {selector}: exit code {code}: {err.strip()}'
        found = json.loads(out)['results'][0]
        rectangle = found['rectangle']
        x = (rectangle['left'] + rectangle['right']) // 2
        y = (rectangle['top'] + rectangle['bottom']) // 2
        code, out, err = ctl(*target, '--json', 'at', str(x), str(y))
        if code != 0:
            return f'at {x} {y}: exit code {code}: {err.strip()}'
        under = json.loads(out)
        if under['rectangle'] != rectangle:
            return f'at {x} {y}: {under["rectangle"]} where {rectangle} was expected'
        code, out, err = ctl(*target, '--json', 'attrs', 'at', f'{x},{y}')
        if code != 0:
            return f'attrs: exit code {code}: {err.strip()}'
        code, out, err = ctl(*target, 'find', 'ctrl[name="no such element anywhere"]')
        if code != 1:
            return f'a search for nothing: exit code {code}: {err.strip()}'
        return round_trip(os.path.splitext(command.replace('\\', '/').split('/')[-1])[0], target)
    finally:
        process.kill()
        process.wait()
        subprocess.run([wine, 'taskkill', '/f', '/im', os.path.basename(command).replace('\\', '/').split('/')[-1]],
                       capture_output=True)


def dying_target_case():
    """A target that ends between two requests is an error, and not a hang."""
    process = start('notepad')
    window = wait_for_window('notepad')
    if not window:
        return 'no window of notepad'
    subprocess.run([wine, 'taskkill', '/f', '/im', 'notepad.exe'], capture_output=True)
    process.wait()
    started = time.monotonic()
    code, _, err = ctl('--handle', str(window['handle']), 'tree')
    if code != 3:
        return f'exit code {code}: {err.strip()}'
    return None if time.monotonic() - started < 30 else 'it took longer than the time-out'


if not ctl_path or not server:
    print('vantrel-ctl.exe or vantrel_x64.dll is missing below', build)
    results['failed'] += 1
else:
    print('-- served desktops', flush=True)
    for path in sorted(glob.glob(os.path.join(root, 'tests', 'desktops', '*.json'))):
        if only and os.path.basename(path) not in only:
            continue
        check('served ' + os.path.basename(path), served_case(path))
    if only:
        print('cases: {passed} passed, {failed} failed, {skipped} skipped'.format(**results))
        sys.exit(results['failed'] != 0)
    print('-- programs that are not ours', flush=True)
    check('notepad', foreign_case('notepad', 'notepad', 'ctrl[role="editable text"]'))
    check('wordpad', foreign_case('C:\\Program Files\\Windows NT\\Accessories\\wordpad.exe', 'wordpad',
                                  'ctrl[role="editable text"]'))
    check('regedit', foreign_case('regedit', 'registry editor', 'ctrl[role=outline] ctrl[name="HKEY_CURRENT_USER"]'))
    check('winecfg', foreign_case('winecfg', 'wine configuration', 'ctrl[role="push button" name="OK"]'))
    check('taskmgr', foreign_case('taskmgr', 'task manager', 'ctrl[role="page tab" name="Processes"]'))
    check('a target that has gone', dying_target_case())
print('cases: {passed} passed, {failed} failed, {skipped} skipped'.format(**results))
