#!/usr/bin/env bash
# Builds the library and the examples for Windows of 64 and of 32 bits, checks what the libraries export and import,
# and packs each with all that a program needs to link it: bash tools/windows.sh. Called by ./run windows, which
# installs the compilers. What comes out stands in build/windows.
set -euo pipefail
cd "$(dirname "$0")/.."
out=build/windows
targets=(x86_64 i686)

version=$(sed -n 's/^  VERSION //p' CMakeLists.txt)

# The system's own libraries; on 32 bits also the compiler's runtime, which goes into the zip.
system_libraries='ADVAPI32|KERNEL32|msvcrt|ole32|SHELL32|USER32|VERSION'
runtime=(libgcc_s_dw2-1.dll libstdc++-6.dll libwinpthread-1.dll)

step() { echo "== $* ($SECONDS s)"; }

build() {
  local target=$1 preset=windows-$1
  mkdir -p build
  cmake --preset "$preset" >"build/$preset-configure.log" || { cat "build/$preset-configure.log"; exit 1; }
  cmake --build --preset "$preset" --target UtilVel90 examples/all
}

# The imports of a library that are neither the system's nor, for 32 bits, the runtime in the same folder.
check_imports() {
  local library=$1 target=$2 names name others=()
  # Not behind "<(...)", where a tool that failed would leave nothing to complain of.
  names=$("$target-w64-mingw32-objdump" -p "$library" | sed -n 's/^\s*DLL Name: //p')
  [ -n "$names" ] || { echo "$library: no imports found" >&2; exit 1; }
  while read -r name; do
    [[ $name =~ ^($system_libraries)\.dll$ ]] && continue
    [ "$target" = i686 ] && [ -e "$(dirname "$library")/$name" ] && continue
    others+=("$name")
  done <<<"$names"
  if [ ${#others[@]} -gt 0 ]; then
    echo "$library imports ${others[*]}" >&2
    exit 1
  fi
}

# Puts a target's files together as they are installed, checks them, and packs them.
pack() {
  local target=$1 name=UtilVel90-$version-windows-$1 file
  local folder=$out/$name
  # Those of other versions too: whoever takes the zips takes what stands there.
  rm -rf "$out"/UtilVel90-*-windows-"$target" "$out"/UtilVel90-*-windows-"$target".zip
  cmake --install "build/windows-$target" --prefix "$folder" >/dev/null
  if [ "$target" = i686 ]; then
    for file in "${runtime[@]}"; do
      # The tool writes the moment into what it strips, unless it is told one.
      SOURCE_DATE_EPOCH=315532800 install -m 755 --strip --strip-program="$target-w64-mingw32-strip" \
        "$(find_runtime "$target" "$file")" "$folder/bin/"
    done
  fi
  cp "$out/dependencias/versiones.txt" tools/windows/LEEME.txt COPYRIGHT "$folder/"
  # The table of zones is made from it.
  echo "tzdata $(dpkg-query -W -f='${Version}' tzdata)" >>"$folder/versiones.txt"
  cp -r "$out/dependencias/licencias" "$folder/"
  tools/exportadas.py --herramientas "$target-w64-mingw32-" "$folder/bin/UtilVel90.dll" "$folder/include/utilvel90"
  check_imports "$folder/bin/UtilVel90.dll" "$target"
  # The same files give the same zip.
  find "$folder" -exec touch -h -d @315532800 {} +
  (cd "$out" && find "$name" -type f | LC_ALL=C sort | TZ=UTC zip -q -X -@ "$name.zip")
  echo "$folder.zip: $(stat -c %s "$folder.zip") bytes, UtilVel90.dll $(stat -c %s "$folder/bin/UtilVel90.dll")"
}

find_runtime() {
  "$1-w64-mingw32-g++-posix" -print-file-name="$2"
}

step 'Dependencies'
bash tools/windows/dependencias.sh "$out/dependencias" "${targets[@]}"
for target in "${targets[@]}"; do
  step "Library and examples, $target"
  build "$target"
done
step 'Packages'
for target in "${targets[@]}"; do
  pack "$target"
done
step 'Done'
