#!/usr/bin/env python3
"""Makes a desktop file of a page's accessible tree that was recorded over AT-SPI2 from a Chromium on Linux, with the
window classes, roles, states and IAccessible2 data that the browser has on Windows.

usage: convert_web_tree.py TREE.json DESKTOP.json

The tree is one object a node: role, name, description, states, attributes, extents, text, first_character_extents,
actions, value, children. Only the frame that shows the page is converted. What isn't shown of the frame itself is left
out; of the page everything is kept.
"""
import json
import sys

# Recorded role: role on Windows, and the role of IAccessible2 where that is another number.
ROLES = {
    'alert': ('alert', None), 'block quote': ('grouping', 0x424), 'caption': ('grouping', 0x402),
    'check box': ('check box', None), 'column header': ('column header', None), 'combo box': ('combo box', None),
    'document web': ('document', None), 'entry': ('editable text', None), 'form': ('grouping', 0x410),
    'frame': ('pane', 0x411), 'heading': ('grouping', 0x414), 'image': ('graphic', None),
    'internal frame': ('grouping', 0x418), 'label': ('editable text', 0x419), 'landmark': ('grouping', 0x42D),
    'link': ('link', None), 'list': ('list', None), 'list box': ('list', None), 'list item': ('list item', None),
    'menu': ('list', None), 'menu item': ('list item', None), 'notification': ('alert', None),
    'page tab': ('page tab', None), 'page tab list': ('page tab list', None), 'panel': ('grouping', None),
    'paragraph': ('grouping', 0x41E), 'password text': ('editable text', None), 'progress bar': ('progress bar', None),
    'push button': ('push button', None), 'radio button': ('radio button', None), 'row header': ('row header', None),
    'section': ('grouping', 0x424), 'separator': ('separator', None), 'slider': ('slider', None),
    'static': ('StaticText', None), 'table': ('table', None), 'table cell': ('cell', None), 'table row': ('row', None),
    'toggle button': ('push button', 0x42A), 'tool bar': ('tool bar', None), 'tree': ('outline', None),
    'tree item': ('outline item', None),
}
# Published role numbers, for what IAccessible2 says where it has no role of its own.
NUMBERS = {
    'alert': 8, 'cell': 29, 'check box': 44, 'column header': 25, 'combo box': 46, 'document': 15, 'editable text': 42,
    'graphic': 40, 'grouping': 20, 'link': 30, 'list': 33, 'list item': 34, 'outline': 35, 'outline item': 36,
    'page tab': 37, 'page tab list': 60, 'pane': 16, 'progress bar': 48, 'push button': 43, 'radio button': 45,
    'row': 28, 'row header': 26, 'separator': 21, 'slider': 51, 'StaticText': 41, 'table': 24, 'tool bar': 22,
}
STATES = {
    'checked': 'checked', 'expanded': 'expanded', 'focusable': 'focusable', 'focused': 'focused',
    'has-popup': 'has popup', 'is-default': 'default', 'multiselectable': 'multi selectable', 'pressed': 'pressed',
    'selectable': 'selectable', 'selected': 'selected',
}
# Never the action of an element itself.
NO_DEFAULT = {'showContextMenu', 'clickAncestor', 'doDefault'}
# Their text on Windows is their name; the recorded tree gives them none.
NAMED_TEXT = {'check box', 'radio button'}
# Recorded like runs of text; on Windows they hold them.
TEXT_FRAMES = {'code', 'em', 'strong', 'sub', 'sup'}
FIELDS = {'entry', 'password text'}


def is_shown(node):
    return 'showing' in node.get('states', [])


def role_of(node):
    """Role on Windows, and that of IAccessible2 where it is another number."""
    if node['role'] == 'static' and node.get('attributes', {}).get('tag') in TEXT_FRAMES:
        return 'grouping', 0x429
    return ROLES[node['role']]


def escaped(text):
    return ''.join('\\' + unit if unit in '\\:,=;' else unit for unit in text)


def find(node, wanted):
    """All nodes for which `wanted` is true, the outermost ones first, in document order."""
    if wanted(node):
        return [node]
    return [found for child in node.get('children', []) for found in find(child, wanted)]


class Conversion:
    def __init__(self):
        self.ids = set()
        self.count = 0

    def identifier(self, node):
        name = node.get('attributes', {}).get('id')
        if not name or name in self.ids:
            return None
        self.ids.add(name)
        return name

    def states(self, node):
        given = node.get('states', [])
        states = [windows for linux, windows in STATES.items() if linux in given]
        if 'enabled' not in given and node['role'] not in ('static', 'separator'):
            states.append('unavailable')
        if 'expandable' in given and 'expanded' not in given:
            states.append('collapsed')
        if node['role'] == 'password text':
            states.append('protected')
        if node['role'] == 'link':
            states.append('linked')
        if role_of(node)[0] in ('document', 'StaticText'):
            states.append('read only')
        if 'visible' not in given:
            states.append('invisible')
        elif not is_shown(node):
            states.append('offscreen')
        return states

    def value(self, node):
        if node['role'] in FIELDS:
            return node.get('text', '')
        if node['role'] == 'combo box':
            chosen = find(node, lambda child: child is not node and 'selected' in child.get('states', []))
            return chosen[0]['name'] if chosen else node.get('text', '').replace('\ufffc', '')
        if node.get('value') is not None:
            return format(node['value'], '.6g')
        return None

    def ia2(self, node, role, own_role):
        self.count += 1
        result = {'role': own_role or NUMBERS[role], 'uniqueId': -self.count}
        attributes = node.get('attributes', {})
        if attributes:
            result['attributes'] = ''.join(f'{escaped(key)}:{escaped(value)};' for key, value in attributes.items())
        text = node['name'] if node['role'] in NAMED_TEXT else node.get('text')
        if text is not None:
            result['text'] = text
            place = node.get('first_character_extents')
            if place and any(place):
                result['characters'] = [place]
        return result

    def element(self, node, page=None):
        """`page` is the document that another window stands for."""
        if node is page:
            return {'windowObject': 'page'}
        role, own_role = role_of(node)
        # Outside a document, groups are views.
        if role == 'grouping' and page is not None:
            role = 'pane'
        result = {}
        name = self.identifier(node)
        if name:
            result['id'] = name
        result['role'] = role
        if node['name']:
            result['name'] = node['name']
        value = self.value(node)
        if value is not None:
            result['value'] = value
        if node.get('description'):
            result['description'] = node['description']
        states = self.states(node)
        if states:
            result['state'] = states
        result['rectangle'] = node['extents']
        actions = [action for action in node.get('actions', []) if action not in NO_DEFAULT]
        if actions:
            result['defaultAction'] = actions[0]
        result['ia2'] = self.ia2(node, role, own_role)
        children = [child for child in node.get('children', [])
                    if page is None or is_shown(child) or find(child, lambda below: below is page)]
        if children:
            result['children'] = [self.element(child, page) for child in children]
        return result

    def desktop(self, tree):
        is_page = lambda node: node['role'] == 'document web' and is_shown(node) and node.get('children')
        frame = next(node for node in tree['children'] if find(node, is_page))
        page = find(frame, is_page)[0]
        document = self.element(page)
        client = self.element(frame, page)
        document['id'] = 'document'
        client['id'] = 'application'
        return {
            'format': 'vantrel-desktop/1',
            'comment': f'Made by tools/convert_web_tree.py from a recorded page, {page["name"]}.',
            'processes': [{'id': 3100, 'path': 'C:\\Program Files\\Browser\\browser.exe', 'current': True}],
            'windows': [{
                'id': 'browser', 'class': 'Chrome_WidgetWin_1', 'title': frame['name'], 'rectangle': frame['extents'],
                'objects': {'client': client},
                'children': [{
                    'id': 'page', 'class': 'Chrome_RenderWidgetHostHWND', 'title': 'Chrome Legacy Window',
                    'rectangle': page['extents'],
                    'objects': {
                        'window': {'role': 'window', 'rectangle': page['extents'], 'ia2': {'role': 9},
                                   'children': [{'clientObject': 'page'}]},
                        'client': document,
                    },
                }],
            }],
        }


def lines(value, indent=0):
    """JSON with a line for every element: short ones are read in one look, and changes show in one line."""
    blank = ' ' * indent
    if isinstance(value, list) and any(isinstance(item, dict) for item in value):
        return '[\n' + ',\n'.join(f'{blank} {lines(item, indent + 1)}' for item in value) + f'\n{blank}]'
    if isinstance(value, dict):
        nested = ', '.join(f'{json.dumps(key)}: {lines(item, indent)}' for key, item in value.items())
        return '{' + nested + '}'
    return json.dumps(value, ensure_ascii=False)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    with open(sys.argv[1], encoding='utf-8') as file:
        tree = json.load(file)
    with open(sys.argv[2], 'w', encoding='utf-8') as file:
        file.write(lines(Conversion().desktop(tree)) + '\n')


main()
