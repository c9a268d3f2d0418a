#!/usr/bin/env bash
# What a user does with the packages of build/paquetes, step by step, in a bare Debian of its own: installs them,
# builds README's program with CMake and with pkg-config, runs `utilvel`, and takes everything away again. Then the
# other ways of coming by the library, on this machine: an installation under a prefix, and the source archive as a
# part of another project. Runs as root.
set -euo pipefail
cd "$(dirname "$0")/.."
packages=$PWD/build/paquetes
# With compilers, as programmers have them; made once, since it is the longest step.
base=$packages/raiz.tar.zst
work=$(mktemp -d "$packages/prueba.XXXXXX")
root=$work/raiz
trap 'rm -rf --one-file-system "$work"' EXIT

step() { printf '%5ds  %s\n' "$SECONDS" "$*"; }
fail() {
  echo "$*" >&2
  exit 1
}
inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 "$@"; }
quietly() { "$@" >"$work/salida.log" 2>&1 || { cat "$work/salida.log" >&2; fail "failed: $*"; }; }

# The block of README that opens with a line ```$1 and holds $2.
readme_block() {
  awk -v lang="$1" -v has="$2" '
    $0 == "```" lang { open = 1; text = ""; next }
    open && $0 == "```" { open = 0; if (index(text, has)) { printf "%s", text; exit } }
    open { text = text $0 "\n" }' README.md
}

# Every path of the root but what the package manager keeps of its own work.
paths() {
  (cd "$root" && find . -xdev \( -path ./var/cache -o -path ./var/log -o -path ./var/lib/apt -o -path ./var/lib/dpkg \
    -o -path ./tmp -o -path ./root \) -prune -o -print | sort)
}

if [ ! -f "$base" ]; then
  step 'making the bare root'
  # shellcheck source=/dev/null
  . /etc/os-release
  # shellcheck disable=SC2016  # apt's own words
  mirror=$(apt-get indextargets --format '$(ORIGIN) $(CODENAME) $(COMPONENT) $(SITE)' 'Created-By: Packages' |
    awk -v name="$VERSION_CODENAME" '$1 == "Debian" && $2 == name && $3 == "main" { print $4; exit }')
  quietly debootstrap --variant=minbase --include=g++,cmake,make,pkg-config "$VERSION_CODENAME" "$work/base" "$mirror"
  tar --zstd -C "$work/base" -cf "$base.tmp" .
  mv "$base.tmp" "$base"
  rm -rf --one-file-system "$work/base"
fi
mkdir "$root"
tar --zstd -C "$root" -xf "$base"
# The names of this machine's network, for the mirror.
cp -L /etc/resolv.conf /etc/hosts "$root/etc/"
paths >"$work/antes"

step 'installing the packages in a bare root'
mkdir "$root/tmp/paquetes"
cp "$packages"/*.deb "$root/tmp/paquetes"
quietly inside apt-get update -q
quietly inside sh -c 'DEBIAN_FRONTEND=noninteractive apt-get install -q -y /tmp/paquetes/*.deb'

step "README's program with CMake"
program=$root/tmp/programa
mkdir "$program"
readme_block cpp 'int main' >"$program/program.cpp"
{
  printf 'cmake_minimum_required(VERSION 3.25)\nproject(outside LANGUAGES CXX)\nadd_executable(program program.cpp)\n'
  readme_block cmake find_package
} >"$program/CMakeLists.txt"
awk '/^```cpp$/ { code = 1 } code && /int main/ { main = 1 }
     main && $0 == "```text" { open = 1; next } open && $0 == "```" { exit } open' README.md >"$work/esperado"
if [ ! -s "$program/program.cpp" ] || [ ! -s "$work/esperado" ]; then fail 'README has no program with its output'; fi
quietly inside cmake -S /tmp/programa -B /tmp/programa/build
quietly inside cmake --build /tmp/programa/build
inside /tmp/programa/build/program >"$work/dicho"
diff "$work/esperado" "$work/dicho"

step "README's program with pkg-config"
# shellcheck disable=SC2016  # the command of README, for the shell in there
quietly inside sh -c 'cd /tmp/programa && g++ -std=c++20 program.cpp $(pkg-config --cflags --libs utilvel90) -o program'
inside /tmp/programa/program >"$work/dicho"
diff "$work/esperado" "$work/dicho"

step 'utilvel, its manual page and its completion; a query on each kind of database'
inside utilvel version
# All of it is read: a reader that ends early would end the writer with a signal.
gzip -dc "$root/usr/share/man/man1/utilvel.1.gz" | grep '^\.TH UTILVEL 1' >/dev/null
bash -n "$root/usr/share/bash-completion/completions/utilvel"
cp -r examples/datos "$root/tmp/datos"
sqlite3 "$root/tmp/ventas.db" <examples/datos/base.sql
inside utilvel consulta /tmp/datos/consulta.ini --base sqlite3:///tmp/ventas.db
# Without a server, or on a file that is no database, it is the engine that complains, which shows that it was found.
printf 'no database' >"$root/tmp/nada.fdb"
while read -r address answer; do
  said=$(inside utilvel consulta /tmp/datos/consulta.ini --base "$address" 2>&1) && fail "$address: gave rows"
  grep -q "$answer" <<<"$said" || fail "$address: $said"
done <<'ENGINES'
firebird:///tmp/nada.fdb I/O error
firebird://127.0.0.1/nada network request
postgresql:///nada connection to server on socket
mysql:///nada connect to local server through socket
ENGINES

step 'the bill of materials against what is installed'
for package in libutilvel90-9 libutilvel90-dev utilvel90-tools utilvel90-doc; do
  python3 - "$root" "$package" <<'PYTHON'
import hashlib, json, pathlib, sys
root, package = pathlib.Path(sys.argv[1]), sys.argv[2]
path = 'usr/share/doc/%s/sbom.spdx.json' % package
document = json.loads((root / path).read_text())
told = {f['fileName'][2:]: f['checksums'][1]['checksumValue'] for f in document['files']}
listed = (root / 'var/lib/dpkg/info' / (package + '.list')).read_text().split('\n')
there = {p[1:] for p in listed if p and (root / p[1:]).is_file() and not (root / p[1:]).is_symlink()} - {path}
assert told.keys() == there, sorted(told.keys() ^ there)
for name, value in told.items():
    assert hashlib.sha256((root / name).read_bytes()).hexdigest() == value, name
print('%s: %d files, %d packages' % (package, len(told), len(document['packages']) - 1))
PYTHON
done

step 'taking it all away'
quietly inside sh -c 'DEBIAN_FRONTEND=noninteractive apt-get purge -q -y --autoremove \
  utilvel90-tools libutilvel90-dev utilvel90-doc libutilvel90-9'
paths >"$work/despues"
diff "$work/antes" "$work/despues" || fail 'Above: what the packages left (>) or took (<)'

step 'an installation under a prefix'
quietly cmake --install build/paquete --prefix "$work/prefijo"
quietly cmake -S tests/afuera -B "$work/ajeno" -G Ninja -DFORMA=find_package -DCMAKE_PREFIX_PATH="$work/prefijo" \
  -DPROGRAMA="$PWD/tests/afuera/programa.cpp"
quietly cmake --build "$work/ajeno"
"$work/ajeno/programa" | tee "$work/dicho"
pc=$(find "$work/prefijo" -name utilvel90.pc -printf %h)
# shellcheck disable=SC2046  # options, a word each
quietly g++ -std=c++20 tests/afuera/programa.cpp -o "$work/programa" \
  $(PKG_CONFIG_PATH=$pc pkg-config --cflags --libs utilvel90)
LD_LIBRARY_PATH=$(dirname "$pc") "$work/programa" | diff "$work/dicho" -

archive=$(find "$packages" -maxdepth 1 -name 'utilvel90-*.tar.gz')
if [ -n "$archive" ]; then
  step 'the source archive as a part of another project'
  quietly cmake -S tests/afuera -B "$work/archivo" -G Ninja -DFORMA=fetch_content -DFUENTES="$archive" \
    -DPROGRAMA="$PWD/tests/afuera/programa.cpp"
  quietly cmake --build "$work/archivo"
  "$work/archivo/programa" | diff "$work/dicho" -
fi
step 'done'
