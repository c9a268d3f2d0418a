#!/usr/bin/env python3
"""Says what the tests reach: tools/cobertura.py <build folder made with --coverage, its tests run>

Prints lines and branches by folder, then each line of the product that no test reaches and tools/cobertura.txt does
not explain; fails when there is one, or an explanation of a line that is reached or gone. Branches that only an
exception takes are left out of the counts: GCC makes one at every call. tests/internal/Memoria.cpp walks those where
memory runs out.

An explanation is a head with the reason, then the lines it holds for, as they stand:

    framework/Numeros.cpp: the standard library never answers so
        return false;
"""
import collections
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = ('framework', 'platform', 'version', 'Uutilext', 'Fechas', 'Paramsql', 'Ucalculocfdi', 'Uformula', 'facil',
           'tools/utilvel')


def explained():
    """file -> the texts of its lines that may stay unreached."""
    texts = collections.defaultdict(set)
    file = None
    for line in (ROOT / 'tools/cobertura.txt').read_text(encoding='utf-8').splitlines():
        if line.startswith('    '):
            texts[file].add(line.strip())
        elif line.strip() and not line.startswith('#'):
            file = line.split(':')[0]
    return texts


def measured(build):
    filters = [arg for folder in FOLDERS for arg in ('--filter', f'{ROOT}/{folder}/')]
    result = subprocess.run(['gcovr', '--root', ROOT, '--json', '-', '-j', '2', '--exclude-throw-branches',
                             '--exclude-unreachable-branches', *filters, build],
                            check=True, capture_output=True, text=True)
    return json.loads(result.stdout)['files']


def folder_of(path):
    return max((f for f in FOLDERS if path.startswith(f + '/')), key=len)


def main():
    counts = collections.defaultdict(lambda: [0, 0, 0, 0])
    allowed = explained()
    seen = set()
    unreached = []
    for file in measured(sys.argv[1]):
        path = file['file']
        source = (ROOT / path).read_text(encoding='utf-8').splitlines()
        row = counts[folder_of(path)]
        for line in file['lines']:
            if line.get('gcovr/noncode'):
                continue
            branches = [b for b in line['branches'] if not b.get('throw')]
            row[0] += 1
            row[1] += line['count'] > 0
            row[2] += len(branches)
            row[3] += sum(b['count'] > 0 for b in branches)
            text = source[line['line_number'] - 1].strip()
            if line['count'] == 0 and text not in ('}', '};'):
                if text in allowed[path]:
                    seen.add((path, text))
                else:
                    unreached.append(f'{path}:{line["line_number"]}: {text}')

    print(f'{"folder":16} {"lines":>6} {"reached":>8} {"branches":>9} {"reached":>8}')
    for folder in FOLDERS:
        lines, hit, branches, taken = counts[folder]
        if lines == 0:
            sys.exit(f'{folder}: nothing was measured')
        print(f'{folder:16} {lines:6} {hit / lines:8.1%} {branches:9} {taken / max(branches, 1):8.1%}')
    total = [sum(column) for column in zip(*counts.values())]
    print(f'{"all":16} {total[0]:6} {total[1] / total[0]:8.1%} {total[2]:9} {total[3] / total[2]:8.1%}')

    stale = sorted((p, t) for p, texts in allowed.items() for t in texts if (p, t) not in seen)
    for line in unreached:
        print(f'{line}    no test reaches it')
    for path, text in stale:
        print(f'tools/cobertura.txt: {path}: {text}    reached, or gone')
    if unreached or stale:
        sys.exit(1)


main()
