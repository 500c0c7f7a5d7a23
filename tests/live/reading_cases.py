#!/usr/bin/env python3
"""Text and tables of live programs by the command line: programs that nobody here wrote, and real common controls.

usage: reading_cases.py BUILD_FOLDER WINE_LOADER [PART OF A CASE'S NAME...]
Runs inside the environment that tests/live/wine.sh makes. Closes with "cases: N passed, N failed, N skipped".
"""
import os
import struct
import tempfile

from live_cases import check, controls, expect, finish, foreign, root, served, windows_path


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


def controls_case(target):
    """Every kind of control gives its text: boxes their items, a tree its levels, a list view its header line."""
    colours = ['Red', 'Green', 'Blue', 'Amber', 'Aqua', 'Black', 'White', 'Grey', 'Pink', 'Brown', 'Olive', 'Teal']
    # A column without width isn't shown, so it isn't read.
    cities = ['City\tPeople', 'Oslo\t709,037', 'Bergen\t291,940', 'Vigo\t293,652']
    expected = ['Name:', 'Name:', 'Colour:', *colours, 'Stripes:', *colours, 'Dots:', *colours, 'Size:', 'Small', 'Medium', 'Large',
                'Gift wrap', 'Insured', 'By post', 'By hand', 'Places:', 'World', '\tEurope', '\t\tNorway', '\t\tSpain', '\tAsia',
                'Cities:', *cities]
    got = lines_of(target)
    expect([line for line in got if line] == expected, f'the window\'s text is {got}')
    shown = lines_of(target, '--no-offscreen', 'ctrl[role=list name="Stripes:"]')
    expect(shown == ['Stripes:', *colours[:4]], f'without what is scrolled away the list shows {shown}')


def regedit_case():
    with foreign('regedit', 'registry editor') as target:
        got = lines_of(target)
        start = got.index('My Computer')
        expect(got[start + 1:start + 4] == ['\tHKEY_CLASSES_ROOT', '\tHKEY_CURRENT_USER', '\tHKEY_LOCAL_MACHINE'], f'the tree is {got}')
        expect('Name\tType\tData' in got, f'there is no header line in {got}')
        expect(got[:5] == ['Registry', 'Edit', 'View', 'Favorites', 'Help'], f'the menu is {got[:5]}')
        lines = target.json('text', '--lines', 'ctrl[role=outline]')['lines']
        tops = [line['rectangle']['top'] for line in lines]
        expect(len(tops) > 4 and tops == sorted(set(tops)), f'the lines of the tree lie at {tops}')


def winecfg_case():
    with foreign('winecfg', 'wine configuration') as target:
        got = lines_of(target, '--no-hidden')
        expect({'Applications', 'Graphics', 'OK', 'Cancel', 'Default Settings'} <= set(got), f'the text is {got}')


def taskmgr_case():
    with foreign('taskmgr', 'task manager') as target:
        got = lines_of(target, '--no-hidden')
        expect({'Task\tStatus', 'End Task', 'Processes'} <= set(got), f'the text is {got}')
        expect(any(line.startswith('CPU Usage: ') for line in got), f'there is no status bar in {got}')


def document_case():
    """A window of Internet Explorer is read through its document, in which fields show what they hold."""
    with served(os.path.join(root, 'tests', 'live', 'desktops', 'document.json')) as target:
        got = lines_of(target)
        expect(got == ['Name Ada Town'], f'the page reads {got}')
        expect(lines_of(target) == got, 'a second reading differs: something was left in the page')


if __name__ == '__main__':
    print('-- reading', flush=True)
    with controls() as window:
        check('text of all controls', controls_case, window)
    check('text of notepad', notepad_case)
    check('text of a document of Internet Explorer', document_case)
    check('text of regedit', regedit_case)
    check('text of winecfg', winecfg_case)
    check('text of taskmgr', taskmgr_case)
    finish()
