#!/usr/bin/env python3
"""Says what the tests reach: tools/cobertura.py <build folder made with --coverage, its tests run>

Prints lines and branches by folder. Then it names, and fails:

- each piece of the product that no test reaches: lines in a row, by the first of them;
- each line of a function that the library exports whose condition went one way only;
- each line that tools/cobertura.txt explains and the file has not got.

An explanation is a head with the reason, then the lines it holds for, as they stand and as often as they stand so:

    framework/Numeros.cpp: the standard library never answers so
        return false;

Of GCC's branches only those of conditions count. Left out are the ways that a call takes when it throws (GCC makes one
at every call; tests/internal/Memoria.cpp walks those where memory runs out), and what was not even evaluated on a line
that was reached: half of it cleans up after such calls, and of the rest a condition before it went one way.
"""
import collections
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = ('framework', 'platform', 'version', 'Uutilext', 'Fechas', 'Paramsql', 'Ucalculocfdi', 'Uformula', 'facil',
           'tools/utilvel')
# Where a condition of ours stands; the other branches are of temporaries that an exception takes away.
CONDITION = re.compile(r'\b(if|for|while)\b|\?|&&|\|\|')
# Which exceptions a handler takes; the lock of a static.
NO_CONDITION = ('} catch ', 'static ', 'throw ')
BRACES = ('}', '};', '})', '});')


def explained():
    """(file, text of a line) -> how often it may stand without being reached, or with one way not taken."""
    lines = collections.Counter()
    file = None
    for line in (ROOT / 'tools/cobertura.txt').read_text(encoding='utf-8').splitlines():
        if line.startswith('    '):
            lines[file, line.strip()] += 1
        elif line.strip() and not line.startswith('#'):
            file = line.split(':')[0]
    return lines


def measured(build):
    filters = [arg for folder in FOLDERS for arg in ('--filter', f'{ROOT}/{folder}/')]
    result = subprocess.run(['gcovr', '--root', ROOT, '--json', '-', '--exclude-unreachable-branches',
                             *filters, build],
                            check=True, stdout=subprocess.PIPE, text=True)
    return json.loads(result.stdout)['files']


def decisions(branches, text, before):
    """How often each of the two ways of each condition of a line was taken; `before` is the line before it."""
    if text.startswith(NO_CONDITION) or not (CONDITION.search(text) or before.endswith(('&&', '||'))):
        return []
    # Of the two ways of a jump one is the next block, in either order; those of a call's exception come in pairs too.
    pairs = zip(branches[::2], branches[1::2])
    return [(one['count'], other['count']) for one, other in pairs if not (one['throw'] or other['throw'])]


def signature(name):
    """As gcov and nm both write it."""
    return name.replace('[abi:cxx11]', '')


def exported(library):
    """The functions that programs can call."""
    result = subprocess.run(['nm', '--dynamic', '--defined-only', '--demangle', library], check=True,
                            capture_output=True, text=True)
    return {signature(line.split(maxsplit=2)[2]) for line in result.stdout.splitlines()}


def folder_of(path):
    return max((f for f in FOLDERS if path.startswith(f + '/')), key=len)


def of_file(file, source, public, row):
    """The lines that want an explanation, as (number, text, what is wrong); counts what it sees into `row`."""
    wanting = []
    functions = collections.defaultdict(list)
    for function in file['functions']:
        # A function within another, without a name of its own, is as public as that.
        functions[function['lineno']].append(signature(function['name']).split('::{lambda')[0])
    within = False
    of_public = False
    for line in file['lines']:
        if line.get('gcovr/noncode'):
            continue
        number = line['line_number']
        text = source[number - 1].strip()
        reached = line['count'] > 0
        ways = decisions(line['branches'], text, source[number - 2].strip() if number > 1 else '')
        if reached:
            ways = [way for way in ways if any(way)]
        row += (1, reached, 2 * len(ways), sum(count > 0 for way in ways for count in way))
        if number in functions:
            within = False
            of_public = not public.isdisjoint(functions[number])
        if reached:
            within = False
            if of_public and any(0 in way for way in ways):
                wanting.append((number, text, 'goes one way only'))
        elif not within and text not in BRACES:
            within = True
            wanting.append((number, text, 'no test reaches it'))
    return wanting


class Row:
    def __init__(self):
        self.numbers = [0, 0, 0, 0]

    def __iadd__(self, other):
        self.numbers = [a + b for a, b in zip(self.numbers, other)]
        return self

    def print(self, name):
        lines, reached, branches, taken = self.numbers
        print(f'{name:16} {lines:6} {reached / lines:8.1%} {branches:9} {taken / max(branches, 1):8.1%}')


def main():
    rows = {folder: Row() for folder in FOLDERS}
    left = explained()
    public = exported(f'{sys.argv[1]}/libUtilVel90.so')
    wanting = []
    for file in measured(sys.argv[1]):
        path = file['file']
        source = (ROOT / path).read_text(encoding='utf-8').splitlines()
        for number, text, what in of_file(file, source, public, rows[folder_of(path)]):
            if left[path, text] > 0:
                left[path, text] -= 1
            else:
                wanting.append(f'{path}:{number}: {text}    {what}')

    print(f'{"folder":16} {"lines":>6} {"reached":>8} {"branches":>9} {"taken":>8}')
    total = Row()
    for folder, row in rows.items():
        if row.numbers[0] == 0:
            sys.exit(f'{folder}: nothing was measured')
        row.print(folder)
        total += row.numbers
    total.print('all')

    for line in wanting:
        print(line)
    gone = []
    for (path, text), n in sorted(left.items()):
        if n and text not in map(str.strip, (ROOT / path).read_text(encoding='utf-8').splitlines()):
            gone.append(f'tools/cobertura.txt: {path}: {text}    the file has no such line')
        elif n:
            # No fault: what threads do to each other, and kills, reaches some lines in some runs only.
            print(f'tools/cobertura.txt: {path}: {text}    was reached this time')
    for line in gone:
        print(line)
    if wanting or gone:
        sys.exit(f'{len(wanting)} lines to reach or explain, {len(gone)} explanations too many')


main()
