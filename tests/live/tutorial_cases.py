#!/usr/bin/env python3
"""docs/tutorial.md, line by line: each of its commands is run, and has to print what the document shows.

usage: tutorial_cases.py BUILD_FOLDER WINE_LOADER [PART OF A CHAPTER'S NAME...]
Runs inside the environment that tests/live/wine.sh makes. With VANTREL_REWRITE_EXPECTED=1 in the environment the
document gets what the commands print. Closes with "cases: N passed, N failed, N skipped".
"""
import os
import re
import shlex

from live_cases import check, ctl, expect, finish, root, start, served_program, windows_path

path = os.path.join(root, 'docs', 'tutorial.md')
rewriting = bool(os.environ.get('VANTREL_REWRITE_EXPECTED'))


def run_line(line, programs):
    """What a command prints, both outputs one after the other, as a person sees them."""
    words = shlex.split(line)
    if words[0] == 'served_desktop' and words[-1] == '&':
        programs.append(start(served_program, windows_path(os.path.join(root, words[1]))))
        ready = programs[-1].stdout.readline().decode()
        expect(ready.startswith('ready'), f'{line}: {ready!r}')
        return ''
    expect(words[0] == 'vantrel-ctl', f'{words[0]} can\'t be run')
    _, out, err = ctl(*words[1:])
    return out + err


def commands_of(block):
    """The commands of a block, each with the lines that it prints."""
    commands = []
    for line in block.splitlines(keepends=True):
        if line.startswith('$ '):
            commands.append([line[2:].rstrip('\n'), ''])
        else:
            commands[-1][1] += line
    return commands


# Handles and the numbers of processes differ from run to run.
def settled(text):
    text = re.sub(r'0x[0-9a-f]+:(\d+):0:([01]):\d+:0x[0-9a-f]+', r'0x10000:\1:0:\2:1000:0x10000', text)
    return re.sub(r'\b0x[0-9a-f]{5,}\b', '0x10000', re.sub(r'pid \d+', 'pid 1000', text))


def run_chapter(text):
    """The chapter with the outputs as they are; in front of its first differing command it ends with CaseFailed."""
    programs = []

    def run_block(match):
        written = ''
        for line, shown in commands_of(match.group(1)):
            printed = settled(run_line(line, programs))
            expect(rewriting or printed == shown, f'{line} prints\n{printed}where the document shows\n{shown}')
            written += f'$ {line}\n{printed}'
        return f'```console\n{written}```'

    try:
        return re.sub(r'```console\n(.*?)```', run_block, text, flags=re.S)
    finally:
        for program in programs:
            program.kill()
            program.wait()


with open(path, encoding='utf-8') as file:
    chapters = re.split(r'(?m)^(?=## )', file.read())


def chapter_case(index):
    chapters[index] = run_chapter(chapters[index])


print('-- tutorial', flush=True)
for number in range(1, len(chapters)):
    check('tutorial: ' + chapters[number].splitlines()[0][3:], chapter_case, number)
if rewriting:
    with open(path, 'w', encoding='utf-8') as file:
        file.write(''.join(chapters))
finish()
