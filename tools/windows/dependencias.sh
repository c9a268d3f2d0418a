#!/usr/bin/env bash
# What the Windows library and its tests stand on, built for a target from Debian's source packages:
#   bash tools/windows/dependencias.sh <folder> <x86_64 or i686>...
# leaves <folder>/<target>/{include,lib} with libcrypto, SQLite and (64 bits) Expat and GoogleTest, versiones.txt, and
# the licences of what becomes part of the library or goes with it. What is there already, by this script, is left
# alone: then nothing is asked of the network.
set -euo pipefail
script=$(realpath "$0")
mkdir -p "$1"
folder=$(realpath "$1")
shift
targets=("$@")

# openssl is asked for by the name of the suite: where the security archive is listed too, its source may be
# newer there than what mirrors hold.
sources=(openssl/bookworm sqlite3/bookworm expat/bookworm)
googletest=/usr/src/googletest

compilers() {
  local t
  for t in "${targets[@]}"; do "$t-w64-mingw32-gcc-posix" -dumpfullversion; done
}

# What the result depends on: this script, the compilers, and GoogleTest, whose source is an installed package.
stamp() {
  { cat "$script"; compilers; dpkg-query -W -f='${Version}\n' googletest; } | sha256sum | cut -d' ' -f1
}

# Fetches and unpacks the source packages, each into a folder of its name. The package lists are apt's own of a
# private folder, made of the machine's Debian archives: nobody's sources.list changes.
fetch() {
  local work=$folder/fuentes s
  rm -rf "$work"
  mkdir -p "$work/lists/partial" "$work/cache/archives/partial"
  # shellcheck disable=SC2016 # the names are apt's
  apt-get indextargets --format 'deb-src $(REPO_URI) $(RELEASE) $(COMPONENT)' \
    'Identifier: Packages' 'Origin: Debian' 'Label: Debian' | sort -u >"$work/sources.list"
  [ -s "$work/sources.list" ] || { echo 'apt has no lists of Debian here: run apt-get update first' >&2; exit 1; }
  local apt=(apt-get -q -o "Dir::Etc::sourcelist=$work/sources.list" -o Dir::Etc::sourceparts=/dev/null
    -o "Dir::State::lists=$work/lists" -o "Dir::Cache=$work/cache" -o APT::Get::List-Cleanup=0
    -o APT::Sandbox::User=)
  "${apt[@]}" update
  (cd "$work" && "${apt[@]}" source --download-only "${sources[@]}")
  for s in "${sources[@]}"; do
    s=${s%/*}
    dpkg-source --no-check -x "$work/$s"_*.dsc "$work/$s" >/dev/null
  done
  {
    for s in "${sources[@]}"; do
      echo "${s%/*} $(sed -n 's/^Version: //p' "$work/${s%/*}"_*.dsc | head -n 1)"
    done
    echo "googletest $(dpkg-query -W -f='${Version}' googletest)"
    local t p
    for t in "${targets[@]}"; do
      for p in "g++-mingw-w64-${t/_/-}-posix" "mingw-w64-${t/_/-}-dev"; do
        echo "$p $(dpkg-query -W -f='${Version}' "$p")"
      done
    done
  } >"$folder/versiones.txt"
  mkdir -p "$folder/licencias"
  cp "$work/openssl/LICENSE.txt" "$folder/licencias/openssl.txt"
  cp /usr/share/doc/gcc-mingw-w64-base/copyright "$folder/licencias/gcc.txt"
  cp /usr/share/doc/mingw-w64-common/copyright "$folder/licencias/mingw-w64.txt"
}

# libcrypto alone: no sockets, no modules, no configuration file, so that nothing of the machine's changes a
# digest; the folder of its configuration does not exist, should anything look for one.
# The relative path to Configure keeps the folder of this machine out of what is built.
build_openssl() {
  local target=$1 prefix=$2 system=mingw64 flags=()
  # The assembly sources for 32 bits are not taken by this assembler.
  if [ "$target" = i686 ]; then system=mingw; flags=(no-asm -msse2 -mfpmath=sse); fi
  mkdir -p "$prefix/obra/openssl"
  cd "$prefix/obra/openssl"
  SOURCE_DATE_EPOCH=$(dpkg-parsechangelog -l "$folder/fuentes/openssl/debian/changelog" -S Timestamp)
  export SOURCE_DATE_EPOCH
  CC=gcc-posix perl ../../../fuentes/openssl/Configure "$system" --cross-compile-prefix="$target-w64-mingw32-" \
    --prefix=/utilvel90 --openssldir=/utilvel90/ssl "${flags[@]}" \
    no-shared no-module no-tests no-engine no-ssl no-tls no-dtls no-sock no-dso no-autoload-config no-cms \
    no-cmp no-ct no-ocsp no-srp no-ts no-ui-console no-legacy
  make -s build_generated libcrypto.a
  mkdir -p "$prefix/include" "$prefix/lib"
  cp libcrypto.a "$prefix/lib/"
  cp -r "$folder/fuentes/openssl/include/openssl" include/openssl "$prefix/include/"
}

# For the examples and tests; the program's own generator of its single source runs here.
build_sqlite() {
  local target=$1 prefix=$2
  mkdir -p "$prefix/obra/sqlite3" "$prefix/include" "$prefix/lib"
  cd "$prefix/obra/sqlite3"
  "$target-w64-mingw32-gcc-posix" -O2 -DSQLITE_THREADSAFE=1 -DSQLITE_OMIT_LOAD_EXTENSION \
    -c "$folder/fuentes/sqlite3-amalgama/sqlite3.c" -o sqlite3.o
  rm -f "$prefix/lib/libsqlite3.a"
  "$target-w64-mingw32-ar" rcsD "$prefix/lib/libsqlite3.a" sqlite3.o
  cp "$folder/fuentes/sqlite3-amalgama/sqlite3.h" "$prefix/include/"
}

make_amalgamation() {
  local out=$folder/fuentes/sqlite3-amalgama
  mkdir -p "$out"
  cd "$out"
  "$folder/fuentes/sqlite3/configure" --quiet --disable-tcl >configure.log 2>&1 || { cat configure.log; return 1; }
  make -s sqlite3.c sqlite3.h >make.log 2>&1 || { cat make.log; return 1; }
}

build_googletest() {
  local target=$1 prefix=$2
  cmake -S "$googletest" -B "$prefix/obra/googletest" -G Ninja -DCMAKE_SYSTEM_NAME=Windows \
    -DCMAKE_C_COMPILER="$target-w64-mingw32-gcc-posix" -DCMAKE_CXX_COMPILER="$target-w64-mingw32-g++-posix" \
    -DCMAKE_BUILD_TYPE=Release -DBUILD_GMOCK=OFF -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib
  cmake --build "$prefix/obra/googletest" --target install -j1
}

# The tests' second reader of XML. Its own configuration does not fit Debian's changes to it.
build_expat() {
  local target=$1 prefix=$2 lib=$folder/fuentes/expat/expat/lib
  mkdir -p "$prefix/obra/expat" "$prefix/include" "$prefix/lib"
  cd "$prefix/obra/expat"
  : >expat_config.h
  "$target-w64-mingw32-gcc-posix" -O2 -DXML_STATIC -DXML_DTD=1 -DXML_NS=1 -DXML_GE=1 -DXML_CONTEXT_BYTES=1024 \
    -I. -c "$lib/xmlparse.c" "$lib/xmlrole.c" "$lib/xmltok.c"
  rm -f "$prefix/lib/libexpat.a"
  "$target-w64-mingw32-ar" rcsD "$prefix/lib/libexpat.a" xmlparse.o xmlrole.o xmltok.o
  cp "$lib/expat.h" "$lib/expat_external.h" "$prefix/include/"
}

build() {
  local target=$1 prefix=$folder/$1 part start
  rm -rf "$prefix"
  mkdir -p "$prefix"
  local parts=(openssl sqlite)
  # Programs of 32 bits are not run here, so no tests are built for them.
  if [ "$target" = x86_64 ]; then parts+=(expat googletest); fi
  for part in "${parts[@]}"; do
    start=$SECONDS
    # Not behind "||" itself, where the shell would go on after a command that failed.
    ("build_$part" "$target" "$prefix") >"$prefix/$part.log" 2>&1 &
    wait $! || { tail -n 40 "$prefix/$part.log"; echo "$part for $target could not be built" >&2; exit 1; }
    echo "$target: $part in $((SECONDS - start)) s"
  done
  rm -rf "$prefix/obra"
}

current=$(stamp)
if [ "$(cat "$folder/estampa" 2>/dev/null)" != "$current ${targets[*]}" ]; then
  rm -f "$folder/estampa"
  start=$SECONDS
  fetch
  make_amalgamation
  echo "sources in $((SECONDS - start)) s"
  # The targets at the same time: each takes one core for its longest part.
  pids=()
  for t in "${targets[@]}"; do
    build "$t" &
    pids+=($!)
  done
  for p in "${pids[@]}"; do wait "$p"; done
  echo "$current ${targets[*]}" >"$folder/estampa"
  rm -rf "$folder/fuentes"
fi
