#!/usr/bin/env python3
"""Actions on live programs by the command line, each read back: real controls, and programs that nobody here wrote.

usage: acting_cases.py BUILD_FOLDER WINE_LOADER [PART OF A CASE'S NAME...]
Runs inside the environment that tests/live/wine.sh makes. Closes with "cases: N passed, N failed, N skipped".
"""
import time

from live_cases import check, controls, expect, finish, foreign

COLOURS = ['Red', 'Green', 'Blue', 'Amber', 'Aqua', 'Black', 'White', 'Grey', 'Pink', 'Brown', 'Olive', 'Teal']


def named(name, role):
    return f'ctrl[role="{role}" name="{name}"]'


def names(target, command, element):
    """What items or selected list, as a list."""
    return [line.strip('"') for line in target.text(command, element).splitlines()]


def wait_until(holds, problem, seconds=10):
    end = time.monotonic() + seconds
    while not holds():
        expect(time.monotonic() < end, problem)
        time.sleep(0.2)


def single_list_case(target):
    """By accessibility: a pattern selects the first that fits, and a second selection takes the first one's place."""
    box = named('Colour:', 'list')
    expect(names(target, 'items', box) == COLOURS, f'the items are {names(target, "items", box)}')
    target.text('select', box, 'A*', '--verify')
    expect(names(target, 'selected', box) == ['Amber'], 'A* isn\'t Amber')
    target.text('select', box, 'Teal', '--verify')
    expect(names(target, 'selected', box) == ['Teal'], 'Teal doesn\'t replace Amber')
    expect('there is no such item' in target.refused('select', box, 'Klingon'), 'an unknown item is no reason')


def multiple_list_case(target, box):
    """A pattern selects all that fit; what is added is added, what is cleared is gone."""
    target.text('select', box, 'A*', 'Red')
    expect(sorted(names(target, 'selected', box)) == ['Amber', 'Aqua', 'Red'], f'selected are {names(target, "selected", box)}')
    target.text('select', '--first', box, 'B*')
    expect(names(target, 'selected', box) == ['Blue'], f'--first selects {names(target, "selected", box)}')
    target.text('select', '--keep-selection', box, 'Olive')
    expect(sorted(names(target, 'selected', box)) == ['Blue', 'Olive'], f'--keep-selection leaves {names(target, "selected", box)}')
    target.text('clear-selection', box)
    expect(target.text('selected', box, code=None).count('"') == 0, 'something is still selected')


def combo_case(target):
    box = named('Size:', 'combo box')
    expect(names(target, 'items', box) == ['Small', 'Medium', 'Large'], f'the items are {names(target, "items", box)}')
    expect(names(target, 'selected', box) == ['Medium'], 'Medium isn\'t selected at first')
    target.text('select', box, 'Large', '--verify')
    expect(names(target, 'selected', box) == ['Large'], 'Large isn\'t selected')


def check_boxes_case(target):
    gift = named('Gift wrap', 'check box')
    expect(target.text('is-checked', gift).strip() == 'not checked', 'the box is checked at first')
    target.text('check', gift, '--verify')
    expect(target.text('is-checked', gift).strip() == 'checked', 'the box isn\'t checked')
    target.text('check', gift)
    target.text('uncheck', gift, '--verify')
    expect(target.text('is-checked', gift).strip() == 'not checked', 'the box is still checked')
    target.text('check', named('By hand', 'radio button'), '--verify')
    target.refused('uncheck', named('By hand', 'radio button'))


def edit_case(target):
    field = named('Name:', 'editable text')
    target.text('write', field, 'Anna "the" \u00c5se', '--verify')
    expect(target.text('text', field).rstrip('\n') == 'Anna "the" \u00c5se', f'the field holds {target.text("text", field)!r}')
    target.text('focus', field)
    wait_until(lambda: 'Name:' in target.text('focused'), 'the field hasn\'t the focus')


def tree_case(target):
    tree = named('Places:', 'outline')
    europe = 'ctrl[role="outline item" name=Europe]'
    before = target.text('text', tree).splitlines()
    target.text('click', europe, '--verify')
    expect(target.text('text', tree).splitlines() == ['World', '\tEurope', '\t\tNorway', '\t\tSpain', '\tAsia'],
           f'the tree shows {target.text("text", tree)!r}, before {before}')
    target.text('select', 'ctrl[role=outline]', 'Spain', '--verify')
    target.text('scroll-to', europe)


def winecfg_case():
    """Check boxes and tabs of a program that nobody here wrote."""
    with foreign('winecfg', 'wine configuration') as target:
        tabs = 'ctrl[role="page tab list"]'
        expect('Graphics' in names(target, 'items', tabs), f'the tabs are {names(target, "items", tabs)}')
        target.text('select', tabs, 'Graphics', '--verify')
        box = 'ctrl[role="check box" name="Emulate a virtual desktop"]'
        wait_until(lambda: target.run('is-checked', box)[0] == 0, 'no check box on the page')
        was = target.text('is-checked', box)
        target.text('check' if was.startswith('not') else 'uncheck', box, '--verify')
        expect(target.text('is-checked', box) != was, 'the box hasn\'t changed')


def regedit_case():
    """A tree is opened branch by branch, and the list beside it shows and selects what lies there."""
    with foreign('regedit', 'registry editor') as target:
        branch = 'ctrl[role=outline] ctrl[role="outline item" name=HKEY_CURRENT_USER]'
        target.text('click', branch)
        environment = 'ctrl[role=outline] ctrl[role="outline item" name=Environment]'
        wait_until(lambda: target.run('find', environment)[0] == 0, 'the branch doesn\'t open')
        target.text('select', 'ctrl[role=outline]', 'Environment', '--verify')
        values = 'ctrl[role=list]'
        wait_until(lambda: 'TEMP' in target.run('items', values)[1], f'the values are {target.run("items", values)}')
        target.text('select', values, 'TEMP', '--verify')
        expect('TEMP' in names(target, 'selected', values), 'TEMP isn\'t selected')


def notepad_case():
    """What is written can be read again."""
    with foreign('notepad', 'notepad') as target:
        field = 'ctrl[role="editable text"]'
        target.text('write', field, 'Dear Anna, the parcel has arrived.', '--verify')
        expect(target.text('text', field).rstrip('\n') == 'Dear Anna, the parcel has arrived.', f'the text is {target.text("text", field)!r}')


if __name__ == '__main__':
    print('-- acting', flush=True)
    with controls() as window:
        check('a list box of single selection', single_list_case, window)
        check('a list box of multiple selection', multiple_list_case, window, named('Stripes:', 'list'))
        check('a list box by messages', multiple_list_case, window, named('Dots:', 'list'))
        check('a combo box', combo_case, window)
        check('check boxes and radio buttons', check_boxes_case, window)
        check('an edit field', edit_case, window)
        check('a tree', tree_case, window)
    check('check boxes and tabs of winecfg', winecfg_case)
    check('the tree and the list of regedit', regedit_case)
    check('the text of notepad', notepad_case)
    finish()
