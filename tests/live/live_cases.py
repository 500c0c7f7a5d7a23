"""What the live cases share: the controller against windows under Wine, started programs, the count of results.

Runs inside the environment that tests/live/wine.sh makes.
"""
import contextlib
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


class CaseFailed(Exception):
    """What a case found wrong."""


def expect(holds, problem):
    if not holds:
        raise CaseFailed(problem)


def check(name, case, *arguments):
    """Runs a case and counts it; it has failed if it raises CaseFailed, or anything else."""
    if only and not any(part in name for part in only):
        return
    try:
        case(*arguments)
    except CaseFailed as problem:
        results['failed'] += 1
        print(f'FAILED {name}: {problem}', flush=True)
    except Exception as error:
        results['failed'] += 1
        print(f'FAILED {name}: {type(error).__name__}: {error}', flush=True)
    else:
        results['passed'] += 1
        print(f'passed {name}', flush=True)


def finish():
    print('cases: {passed} passed, {failed} failed, {skipped} skipped'.format(**results))
    sys.exit(results['failed'] != 0)


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
    raise CaseFailed(f'no window titled {title!r}')


class Target:
    """A window and how it is asked; the calls raise CaseFailed where the exit code isn't the expected one."""

    def __init__(self, window, *options):
        self.window = window
        self.options = ['--handle', str(window['handle']), *options]

    def run(self, *arguments, limit=60):
        return ctl(*self.options, *arguments, limit=limit)

    def text(self, *arguments, code=0, limit=60):
        """The standard output; any exit code will do if `code` is None."""
        got, out, err = self.run(*arguments, limit=limit)
        expect(code is None or got == code, f'{" ".join(arguments)}: exit code {got}: {err.strip() or out.strip()}')
        return out

    def json(self, *arguments, code=0, limit=60):
        return json.loads(self.text('--json', *arguments, code=code, limit=limit))

    def refused(self, *arguments, code=1):
        """The standard error of a command that has to fail."""
        got, out, err = self.run(*arguments)
        expect(got == code, f'{" ".join(arguments)}: exit code {got} where {code} was expected: {err.strip() or out.strip()}')
        return err


def start(command, *arguments):
    return subprocess.Popen([wine, command, *arguments], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL)


def end_program(command):
    subprocess.run([wine, 'taskkill', '/f', '/im', command.replace('\\', '/').split('/')[-1].removesuffix('.exe') + '.exe'],
                   capture_output=True)


@contextlib.contextmanager
def foreign(command, title, *arguments):
    """A running program that nobody here wrote, with the standard objects that Wine doesn't have."""
    process = start(command, *arguments)
    try:
        yield Target(wait_for_window(title), '--beside', windows_path(standard))
    finally:
        process.kill()
        process.wait()
        end_program(command)


@contextlib.contextmanager
def served(path):
    """The windows of a desktop file, served by a program of ours."""
    with open(path, encoding='utf-8') as file:
        title = json.load(file)['windows'][0].get('title', '')
    process = start(served_program, windows_path(path))
    try:
        line = process.stdout.readline().decode()
        expect(line.startswith('ready'), f'served_desktop said {line!r}')
        yield Target(wait_for_window(title))
    finally:
        process.kill()
        process.wait()


@contextlib.contextmanager
def controls(title='Controls'):
    """A window of ours that is full of the system's own controls."""
    process = start(find_file('control_window.exe'), title)
    try:
        yield Target(wait_for_window(title), '--beside', windows_path(standard))
    finally:
        process.kill()
        process.wait()
