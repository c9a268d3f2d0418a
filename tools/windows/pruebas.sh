#!/usr/bin/env bash
# Runs the tests of the Windows build under wine: bash tools/windows/pruebas.sh
# The programs are in build/windows-x86_64; the examples' output is compared with that of the same examples for
# this system in build/dev. Says how many tests passed, and by name what was left out and why.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
build=$root/build/windows-x86_64
# The folder that cmake/Windows.cmake gives to wine; nothing of another run is in it.
export WINEPREFIX=$root/build/windows/wine WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=
wine=/usr/lib/wine/wine64
failed=0
part=$SECONDS

timed() {
  echo "-- $1: $((SECONDS - part)) s"
  part=$SECONDS
}

rm -rf "$WINEPREFIX" "$build/pruebas"
mkdir -p "$WINEPREFIX" "$build/pruebas"
"$wine" wineboot -i </dev/null >"$build/pruebas/wineboot.log" 2>&1 ||
  { cat "$build/pruebas/wineboot.log"; exit 1; }
echo 'Drive C of this prefix is thrown away.' >"$WINEPREFIX/drive_c/unidad de pruebas.txt"
# One process that waits keeps wine's services alive from test to test. It has no part in the tests' output,
# which otherwise would not end before wine does.
mkfifo "$WINEPREFIX/espera"
exec 8<>"$WINEPREFIX/espera"
"$wine" cmd <&8 8<&- >/dev/null 2>&1 &
waiting=$!
stop() {
  exec 8<&-
  kill "$waiting" 2>/dev/null || true
  "${wine%64}server64" -k 2>/dev/null || true
}
trap stop EXIT
timed 'wine prefix'

# Two at a time, except for what writes the same log.
ctest --test-dir "$build" -j 2 --output-on-failure --no-tests=error 8<&- || failed=1
timed 'test programs'
bash tools/windows/aceptacion.sh build/dev build/windows-x86_64 8<&- || failed=1
timed 'comparison with this system'

# What a test program tells of itself in its XML report.
count() { cat "$build"/pruebas/*.xml | grep -c "$1" || true; }
names() { sed -nE 's/.*<testcase name="([^"]+)".*'"$1"'.*classname="([^"]+)".*/  \2.\1/p' "$build"/pruebas/*.xml; }
# The tests that sources define.
defined() { sed -nE 's/^(TEST|TEST_F|TEST_P)\((\w+), (\w+)\).*/  \2.\3/p' "$@" | sort; }

run=$(count 'result="completed"')
echo "$run tests ran, $(count '<failure ') expectations failed, $(count 'result="skipped"') skipped:"
names 'result="skipped"'
mapfile -t posix < <(find tests -path '*/posix/*.cpp' -not -path 'tests/apoyo/*' | sort)
mapfile -t native < <(find tests/tools -name '*.cpp' | sort)
mapfile -t own < <(find tests -path '*/windows/*.cpp' -not -path 'tests/apoyo/*' | sort)
echo "Only where the system is POSIX, $(defined "${posix[@]}" | wc -l) skipped:"
defined "${posix[@]}"
echo "Of the command-line program, which is native only, $(defined "${native[@]}" | wc -l) skipped:"
defined "${native[@]}"
echo 'Checks of the sources and of native tools, skipped: Casa.*, Consulta.DeslicesSeDicenSolos, Fin.LlamaTodoLoExportado'
echo "Only on Windows, $(defined "${own[@]}" | wc -l) of those that ran:"
defined "${own[@]}"
exit "$failed"
