#!/usr/bin/env python3
"""Writes a package's bill of materials, in SPDX 2.3 as JSON, among the files of the package.

    sbom.py ROOT PACKAGE VERSION DEPENDS INSIDE

ROOT holds the package's files as they will be installed. The document goes to usr/share/doc/PACKAGE/sbom.spdx.json
in it: each file with its digests, and what the package runs with, by Debian's names and the versions that it was
built with - the libraries that its binaries are linked with, those that DEPENDS (the field's text) names, and those
of INSIDE (parted by blanks), whose static libraries or headers became a part of it. The time is SOURCE_DATE_EPOCH
where that is set, so that equal files give an equal document.
"""

import hashlib
import json
import os
import re
import subprocess
import sys
import time
import uuid
from datetime import datetime, timezone
from pathlib import Path


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def digest(path, algorithm):
    return hashlib.new(algorithm, path.read_bytes()).hexdigest()


def is_elf(path):
    with path.open('rb') as file:
        return file.read(4) == b'\x7fELF'


def linked_packages(files):
    """Debian packages, by name, of the libraries that the ELF files name."""
    packages = set()
    for file in files:
        # The loader itself has no "=>".
        found_at = re.findall(r'^\t(?:(\S+) => )?(/\S+)', output('ldd', file), re.M)
        cache = {name or Path(path).name: path for name, path in found_at}
        for library in re.findall(r'\(NEEDED\).*\[(.+)\]', output('readelf', '-dW', file)):
            if library in cache:
                real = Path(cache[library]).resolve()
                # Before the merge of /lib into /usr, a package may have named the file either way.
                found = subprocess.run(['dpkg', '-S', real, str(real).removeprefix('/usr')], check=False,
                                       capture_output=True, text=True).stdout
                packages.add(found.split(':')[0])
            elif not library.startswith('libUtilVel90.'):
                raise SystemExit(f'{file}: no package has {library}')
    return packages


def installed_version(package):
    # A line for each architecture that it is installed for.
    return output('dpkg-query', '-W', '-f=${Version}\n', package).split()[0]


def spdx_id(text):
    return 'SPDXRef-' + re.sub(r'[^A-Za-z0-9.]', '-', text)


def spdx_package(name, version, **more):
    return {'SPDXID': spdx_id('Package-' + name), 'name': name, 'versionInfo': version,
            'downloadLocation': 'NOASSERTION', 'licenseConcluded': 'NOASSERTION', 'licenseDeclared': 'NOASSERTION',
            'copyrightText': 'NOASSERTION', 'filesAnalyzed': False, **more,
            'externalRefs': [{'referenceCategory': 'PACKAGE-MANAGER', 'referenceType': 'purl',
                              'referenceLocator': f'pkg:deb/debian/{name}@{version}'}]}


def main():
    root, name, version, depends, inside = Path(sys.argv[1]), *sys.argv[2:]
    target = root / 'usr/share/doc' / name / 'sbom.spdx.json'
    target.unlink(missing_ok=True)
    paths = sorted(p for p in root.rglob('*') if p.is_file() and not p.is_symlink())
    files = [{'SPDXID': spdx_id(f'File-{number}'), 'fileName': './' + str(path.relative_to(root)),
              'checksums': [{'algorithm': 'SHA1', 'checksumValue': digest(path, 'sha1')},
                            {'algorithm': 'SHA256', 'checksumValue': digest(path, 'sha256')}],
              'licenseConcluded': 'NOASSERTION', 'copyrightText': 'NOASSERTION'}
             for number, path in enumerate(paths)]
    sums = sorted(f['checksums'][0]['checksumValue'] for f in files)
    code = hashlib.sha1(''.join(sums).encode()).hexdigest()

    own = spdx_package(name, version, filesAnalyzed=True, supplier='Organization: Tavex',
                       packageVerificationCode={'packageVerificationCodeValue': code,
                                                'packageVerificationCodeExcludedFiles': ['./' + str(target.relative_to(root))]},
                       copyrightText=(root / 'usr/share/doc' / name / 'copyright').read_text(encoding='utf-8').strip())
    del own['externalRefs']
    needed = linked_packages(p for p in paths if is_elf(p))
    # Our own packages among them have the version that the field says.
    of_field = dict(re.findall(r'([a-z0-9.+-]+)(?: \(= ([^)]+)\))?(?:, |$)', depends))
    needed |= of_field.keys()
    others = [spdx_package(p, of_field.get(p) or installed_version(p)) for p in sorted(needed)]
    parts = [spdx_package(p, installed_version(p)) for p in inside.split()]

    relations = [('SPDXRef-DOCUMENT', 'DESCRIBES', own['SPDXID'])]
    relations += [(own['SPDXID'], 'CONTAINS', f['SPDXID']) for f in files]
    relations += [(own['SPDXID'], 'DEPENDS_ON', p['SPDXID']) for p in others]
    relations += [(own['SPDXID'], 'STATIC_LINK', p['SPDXID']) for p in parts]
    created = datetime.fromtimestamp(int(os.environ.get('SOURCE_DATE_EPOCH', time.time())), timezone.utc)
    document = {
        'spdxVersion': 'SPDX-2.3', 'dataLicense': 'CC0-1.0', 'SPDXID': 'SPDXRef-DOCUMENT', 'name': f'{name}-{version}',
        'documentNamespace': uuid.uuid5(uuid.NAMESPACE_OID, f'{name} {version} {code} {created}').urn,
        'creationInfo': {'created': created.strftime('%Y-%m-%dT%H:%M:%SZ'),
                         'creators': ['Organization: Tavex', 'Tool: sbom.py']},
        'packages': [own, *others, *parts], 'files': files,
        'relationships': [{'spdxElementId': a, 'relationshipType': kind, 'relatedSpdxElement': b}
                          for a, kind, b in relations]}
    target.parent.mkdir(parents=True, exist_ok=True)
    target.write_text(json.dumps(document, indent=1, ensure_ascii=False) + '\n', encoding='utf-8')


main()
