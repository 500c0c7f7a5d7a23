#!/usr/bin/env python3
"""Text and tables of live programs by the command line: programs that nobody here wrote, and real common controls.

usage: reading_cases.py BUILD_FOLDER WINE_LOADER [PART OF A CASE'S NAME...]
Runs inside the environment that tests/live/wine.sh makes. Closes with "cases: N passed, N failed, N skipped".
"""
import os
import struct
import tempfile

from live_cases import check, controls, expect, finish, foreign, windows_path


def lines_of(target, *arguments):
    return target.text('text', *arguments).splitlines()


def notepad_case():
    """A file in an editor comes out as it is, line by line, and a picture of it can be drawn."""
    letter = ['Dear Anna,', 'the parcel has arrived.', '', '\tYours, Max \u00e9']
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, 'letter.txt')
        with open(path, 'w', encoding='utf-16', newline='\r\n') as file:
            file.write('\n'.join(letter))
        with foreign('notepad', 'letter', windows_path(path)) as target:
            got = lines_of(target, 'ctrl[role="editable text"]')
            expect(got == letter, f'the text is {got}')
            whole = lines_of(target)
            expect(all(line in whole for line in letter), f'the window\'s text is {whole}')
            picture = os.path.join(folder, 'letter.png')
            target.text('text', '--picture', windows_path(picture))
            with open(picture, 'rb') as file:
                head = file.read(24)
            expect(head[:8] == b'\x89PNG\r\n\x1a\n' and all(side > 100 for side in struct.unpack('>II', head[16:24])), 'no picture')


if __name__ == '__main__':
    print('-- reading', flush=True)
    check('text of notepad', notepad_case)
    finish()
