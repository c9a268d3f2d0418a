#!/usr/bin/env python3
"""Writes the latest counts into docs/promises.md, from what the commands left under build/cuentas.

    tools/promesas.py

Each file there is named after its command and holds what that printed in its last good run. What a run says of itself
is looked for by the expressions below; a file in which one finds nothing is a fault.
"""
import datetime
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
# Command, as its file is named; how it is called; what it counts.
COUNTS = [
    ('test', 'test', r'tests passed, \d+ tests failed out of (?P<n>\d+)', '{n} tests'),
    ('sanitize', 'test --sanitize', r'tests passed, \d+ tests failed out of (?P<n>\d+)',
     '{n} tests under the sanitizers, with Clang'),
]


def main():
    rows = []
    for name, command, pattern, sentence in COUNTS:
        file = ROOT / 'build/cuentas' / f'{name}.txt'
        if not file.exists():
            continue
        found = re.search(pattern, file.read_text(encoding='utf-8', errors='replace'))
        if not found:
            sys.exit(f'{file}: nothing like "{pattern}"')
        day = datetime.date.fromtimestamp(file.stat().st_mtime)
        rows.append(f'| `./run {command}` | {sentence.format(**found.groupdict())} | {day} |')
    if not rows:
        sys.exit('build/cuentas: no command has left its counts')
    page = ROOT / 'docs/promises.md'
    begin, rest = page.read_text(encoding='utf-8').split('<!-- counts -->\n')
    end = rest.split('<!-- end of counts -->')[1]
    table = '| command | what it counted | on |\n|---|---|---|\n' + '\n'.join(rows) + '\n'
    page.write_text(f'{begin}<!-- counts -->\n\n{table}\n<!-- end of counts -->{end}', encoding='utf-8')


main()
