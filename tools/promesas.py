#!/usr/bin/env python3
"""Writes the latest counts into docs/promises.md, from what the commands left under build/cuentas.

    tools/promesas.py

Each file there is named after its command and holds what that printed in its last good run; one that tells no counts is
a fault.
"""
import datetime
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


def total(pattern, text):
    """The sum of what the pattern finds, and how often it does."""
    found = [int(n.replace(',', '')) for n in re.findall(pattern, text, re.M)]
    return (sum(found), len(found)) if found else None


def tests(text):
    found = total(r'tests passed, 0 tests failed out of (\d+)', text)
    if not found:
        return None
    counts = [f'{found[0]} tests']
    for pattern, what in ((r'^(\d+) failed calls', 'failed calls of the system'),
                          (r'^\d+ functions, (\d+) failed', 'failed allocations'),
                          (r'^(\d+) kills', 'kills'),
                          (r'^(\d+) states of files', 'states of the disk after a power failure')):
        went_through = total(pattern, text)
        if went_through:
            counts.append(f'{went_through[0]:,} {what}')
    return ', '.join(counts)


def calls(text):
    found = re.search(r'^(\d+) calls by (\d+) threads, 0 faults', text, re.M)
    return found and f'{int(found[1]):,} calls by {found[2]} threads, no race'


def environments(text):
    found = total(r'^.+: (\d+) programs, [\d.]+ s$', text)
    return found and f'{found[1]} environments, {found[0]} runs of test programs'


def inputs(text):
    found = total(r'^\w+ +([\d,]+) inputs', text)
    return found and f'{found[0]:,} inputs to {found[1]} programs, no fault'


def windows(text):
    found = total(r'^Tests that ran to their end: (\d+); failed: 0$', text)
    return found and f'{found[0]} tests under wine, and the comparisons with Linux'


def lines(text):
    found = re.search(r'^all +\d+ +([\d.]+%) +\d+ +([\d.]+%)', text, re.M)
    return found and f'{found[1]} of the lines, {found[2]} of the branches'


def sources(text):
    found = re.search(r'^clang-tidy: (\d+) files', text, re.M)
    return found and f'{found[1]} sources, no finding'


# The file that a command leaves; how it is called; what that tells.
COUNTS = [
    ('test', 'test', tests),
    ('sanitize', 'test --sanitize', tests),
    ('threads', 'test --threads', calls),
    ('entornos', 'test --entornos', environments),
    ('fuzz', 'fuzz', inputs),
    ('windows', 'windows --test', windows),
    ('lint', 'lint', sources),
    ('coverage', 'coverage', lines),
]


def main():
    rows = []
    for name, command, tell in COUNTS:
        file = ROOT / 'build/cuentas' / f'{name}.txt'
        if not file.exists():
            continue
        told = tell(file.read_text(encoding='utf-8', errors='replace'))
        if not told:
            sys.exit(f'{file}: no counts in it')
        day = datetime.date.fromtimestamp(file.stat().st_mtime)
        rows.append(f'| `./run {command}` | {told} | {day} |')
    if not rows:
        sys.exit('build/cuentas: no command has left its counts')
    page = ROOT / 'docs/promises.md'
    begin, rest = page.read_text(encoding='utf-8').split('<!-- counts -->\n')
    end = rest.split('<!-- end of counts -->')[1]
    table = '| command | what it counted | on |\n|---|---|---|\n' + '\n'.join(rows) + '\n'
    page.write_text(f'{begin}<!-- counts -->\n\n{table}\n<!-- end of counts -->{end}', encoding='utf-8')


main()
