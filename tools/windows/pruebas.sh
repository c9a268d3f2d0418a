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
# shellcheck disable=SC2317 # the trap calls it
stop() {
  exec 8<&-
  kill "$waiting" 2>/dev/null || true
  "${wine%64}server64" -k 2>/dev/null || true
}
trap stop EXIT
timed 'wine prefix'

# Two at a time, except for what writes the same log.
ctest --test-dir "$build" -j 2 --output-on-failure --no-tests=error -E '^Casa\.|^Consulta\.Deslices' 8<&- || failed=1
timed 'test programs'
bash tools/windows/aceptacion.sh build/dev "$build" 8<&- || failed=1
timed 'comparison with this system'
for target in x86_64 i686; do
  bash tools/windows/prueba-paquete.sh build/windows/UtilVel90-*-windows-$target.zip $target 8<&- || failed=1
done
timed 'programs of outside'
if [ -x /usr/lib/wine/wine ]; then
  echo 'There is a wine of 32 bits here, but the tests for i686 are not built: they did not run'
else
  echo 'Programs for i686 did not run: no wine of 32 bits is installed here'
fi
bash tools/m32.sh 8<&- || failed=1
timed 'arithmetic as native code of 32 bits'

# What a test program tells of itself in its XML report.
count() { cat "$build"/pruebas/*.xml | grep -c "$1" || true; }
skipped() {
  sed -nE 's/.*<testcase name="([^"]+)".*result="skipped".*classname="([^"]+)".*/  \2.\1/p' "$build"/pruebas/*.xml
}
# The tests that sources define.
defined() { sed -nE 's/^(TEST|TEST_F|TEST_P)\((\w+), (\w+)\).*/  \2.\3/p' "$@" | sort; }
list() {
  local title=$1 names
  names=$(cat)
  echo "$title: $(grep -c . <<<"$names" || true)"
  echo "$names"
}

mapfile -t posix < <(find tests -path '*/posix/*.cpp' -not -path 'tests/apoyo/*' | sort)
mapfile -t native < <(find tests/tools -name '*.cpp' | sort)
mapfile -t own < <(find tests -path '*/windows/*.cpp' -not -path 'tests/apoyo/*' | sort)
echo "Tests that ran to their end: $(count 'result="completed"'); failed: $(count '<failure message' )"
defined "${own[@]}" | list 'Of these, only on Windows'
skipped | list 'Skipped by themselves'
defined "${posix[@]}" | list 'Skipped, since they ask for what only POSIX has'
defined "${native[@]}" | list 'Skipped, since the command-line program is native only'
echo 'Skipped, since they look at sources and native tools: Casa.*, Consulta.DeslicesSeDicenSolos, Fin.LlamaTodoLoExportado'
exit "$failed"
