#!/usr/bin/env python3
"""Checks a server library: machine, the two exports and nothing else, imports from system libraries alone.

usage: check_binary.py FILE
"""
import re
import subprocess
import sys

SYSTEM = {'kernel32.dll', 'user32.dll', 'advapi32.dll', 'ole32.dll', 'oleaut32.dll', 'oleacc.dll', 'shell32.dll',
          'msvcrt.dll', 'ntdll.dll', 'gdi32.dll', 'rpcrt4.dll'}

path = sys.argv[1]
wide = path.endswith('_x64.dll')
dump = subprocess.run([('x86_64' if wide else 'i686') + '-w64-mingw32-objdump', '-p', path], capture_output=True,
                      text=True, check=True).stdout
problems = []

machine = re.search(r'file format (\S+)', dump).group(1)
if machine != ('pei-x86-64' if wide else 'pei-i386'):
    problems.append(f'machine is {machine}')

names = dump.split('[Ordinal/Name Pointer] Table')[-1] if 'Ordinal/Name Pointer' in dump else ''
exports = sorted(re.findall(r'^\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+)?(?:[0-9a-f]+\s+)?(\S+)$', names, re.M))
if exports != ['ExecuteAa', 'GetHandleVerifier']:
    problems.append(f'exports are {exports}')

imports = {name.lower() for name in re.findall(r'DLL Name: (\S+)', dump)}
foreign = sorted(imports - SYSTEM)
if foreign:
    problems.append(f'imports from {", ".join(foreign)}')

for problem in problems:
    print(f'{path}: {problem}')
print(f'{path}: {machine}, exports {", ".join(exports)}, imports {", ".join(sorted(imports))}')
sys.exit(1 if problems else 0)
