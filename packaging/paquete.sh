#!/usr/bin/env bash
# The work of `./run package`: packages, source archive and checks, in build/paquetes. The build is there already.
#   bash packaging/paquete.sh                  make and check them
#   bash packaging/paquete.sh --reproducible   build once more, in another folder, and compare byte by byte
set -euo pipefail
cd "$(dirname "$0")/.."

version=$(sed -n 's/^  VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt)
in_git() { git rev-parse --is-inside-work-tree >/dev/null 2>&1; }

# Equal sources give equal packages: every time in them is that of the last commit or, in an unpacked source
# archive, of the packages' changelog.
if in_git; then
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
else
  SOURCE_DATE_EPOCH=$(dpkg-parsechangelog -l packaging/debian/changelog -S Timestamp)
fi
export SOURCE_DATE_EPOCH

# packages TREE FOLDER: the packages of a built tree.
packages() {
  mkdir -p "$2"
  find "$2" -maxdepth 1 -name '*.deb' -delete
  # CPack keeps what an earlier run left in its folder.
  rm -rf "$1/_CPack_Packages"
  (umask 022 && cd "$1" && cpack -B "$1/_cpack" >"$1/cpack.log") || { cat "$1/cpack.log" >&2; exit 1; }
  mv "$1"/_cpack/*.deb "$2"
  rm -rf "$1/_cpack"
}

# The tree as git has it, with the folder's name and the times that its version gives.
source_archive() {
  git archive --format=tar --prefix="utilvel90-$version/" HEAD | gzip -9n >"$1/utilvel90-$version.tar.gz"
}

# Builds the tree as it stands once more, in a folder elsewhere, and compares that with the build of here.
reproducible() {
  local other
  other=$(mktemp -d "${TMPDIR:-/tmp}/utilvel90.XXXXXX")
  # shellcheck disable=SC2064  # the folder of now
  trap "rm -rf '$other'" EXIT
  tar -c --exclude=./build --exclude=./.git . | tar -x -C "$other"
  # The site is made once: other programs made it.
  if [ -d build/docs/sitio ]; then
    mkdir -p "$other/build/docs"
    cp -a build/docs/sitio "$other/build/docs"
  fi
  (cd "$other" && cmake --preset paquete >/dev/null && cmake --build --preset paquete >/dev/null)
  packages "$PWD/build/paquete" "$PWD/build/paquetes"
  packages "$other/build/paquete" "$other/paquetes"
  for file in "libUtilVel90.so.$version" tools/utilvel/utilvel.1 tools/utilvel/utilvel.bash; do
    cmp "build/paquete/$file" "$other/build/paquete/$file"
  done
  for package in "$other"/paquetes/*.deb; do cmp "build/paquetes/$(basename "$package")" "$package"; done
  echo 'Two builds in two folders are equal to the byte:'
  (cd "$other/paquetes" && sha256sum -- *.deb)
}

if [ "${1:-}" = --reproducible ]; then
  reproducible
  exit
fi

if [ "$(dpkg-parsechangelog -l packaging/debian/changelog -S Version)" != "$version-1" ]; then
  echo "packaging/debian/changelog does not begin with $version-1" >&2
  exit 1
fi
target=$PWD/build/paquetes
packages "$PWD/build/paquete" "$target"
rm -f "$target"/*.tar.gz "$target"/*.zip
if in_git; then
  source_archive "$target"
  git diff --quiet HEAD -- || echo 'Changes that are not committed are not in the source archive.' >&2
else
  echo 'No source archive: this tree is one.' >&2
fi
# What the build for Windows left, where there is one.
for zip in build/windows/UtilVel90-"$version"-windows-*.zip; do
  if [ -e "$zip" ]; then cp "$zip" "$target"; fi
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for package in "$target"/*.deb; do dpkg-deb -x "$package" "$work"; done
bash packaging/endurecido.sh "$(echo "$work"/usr/lib/*/libUtilVel90.so."$version")" "$work/usr/bin/utilvel"
# What is meant as it is stands in debian/*.lintian-overrides with its reason. No report of a bug in Debian asks for
# these packages.
lintian --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs --allow-root "$target"/*.deb
ls -l "$target"
