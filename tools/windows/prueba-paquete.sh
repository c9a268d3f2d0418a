#!/usr/bin/env bash
# Builds a small program against an unpacked zip alone, by its CMake package and by hand, and for 64 bits runs it
# under wine: bash tools/windows/prueba-paquete.sh <zip> <x86_64 or i686>. WINEPREFIX is the caller's.
set -euo pipefail
zip=$(realpath "$1")
target=$2
source=$(realpath "$(dirname "$0")/programa")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unzip -q "$zip" -d "$work"
package=$(echo "$work"/UtilVel90-*)
compiler=$target-w64-mingw32-g++-posix

cmake -S "$source" -B "$work/cmake" -G Ninja -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_CXX_COMPILER="$compiler" \
  -DCMAKE_FIND_ROOT_PATH="$package" -DCMAKE_BUILD_TYPE=Release >"$work/cmake.log" || { cat "$work/cmake.log"; exit 1; }
cmake --build "$work/cmake" >"$work/cmake.log" || { cat "$work/cmake.log"; exit 1; }
mkdir "$work/mano"
(cd "$package" && "$compiler" -std=c++20 "$source/programa.cpp" -I include/utilvel90 -L lib -lUtilVel90 \
  -o "$work/mano/programa.exe")

if [ "$target" != x86_64 ]; then
  echo "programa ($target): compiles and links, by CMake and by hand; not run, there is no wine of 32 bits"
  exit 0
fi
# The program takes the compiler's runtime from the compiler's own folders.
runtime=$(dirname "$("$compiler" -print-file-name=libstdc++-6.dll)")
threads=$(dirname "$("$compiler" -print-file-name=libwinpthread-1.dll)")
export WINEDEBUG=-all WINEPATH="Z:${runtime//\//\\};Z:${threads//\//\\}"
for way in cmake mano; do
  cp "$package/bin/UtilVel90.dll" "$work/$way/"
  (cd "$work" && /usr/lib/wine/wine64 "$way/programa.exe") | tr -d '\r' >"$work/$way.txt"
  diff "$source/salida.txt" "$work/$way.txt"
  echo "programa ($target, $way): the statement, the total and the messages are those of Linux"
done
