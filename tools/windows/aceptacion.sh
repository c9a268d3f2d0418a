#!/usr/bin/env bash
# Holds the library for Windows against that for this system: bash tools/windows/aceptacion.sh NATIVE WINDOWS
# where both are build folders with tests and examples, and WINEPREFIX is set. The same program's output must be
# the same from both, line ends apart; nothing expected is written here but what the systems must differ in.
set -euo pipefail
cd "$(dirname "$0")/../.."
native=$(realpath "$1")
windows=$(realpath "$2")
wine=${WINE:-/usr/lib/wine/wine64}
work=$windows/aceptacion
rm -rf "$work"
mkdir -p "$work"
failed=0

report() {
  if [ "$1" -eq 0 ]; then echo "bien   $2"; else echo "MAL    $2"; failed=$((failed + 1)); fi
}

# Runs a program of the Windows build; its lines end as on this system.
in_wine() {
  local program=$1
  shift
  "$wine" "$windows/bin/$program.exe" "$@" 2>/dev/null | tr -d '\r'
}

# What $1 is must be the same in the files $work/$1.nativo and $work/$1.windows.
compare() {
  local rc=0
  [ -s "$work/$1.nativo" ] && cmp -s "$work/$1.nativo" "$work/$1.windows" || rc=1
  report $rc "$1: $2"
  [ $rc -eq 0 ] || diff "$work/$1.nativo" "$work/$1.windows" | head -n 20 || true
}

# The zones under all names of the tz database.
awk '/^Z /{print $2} /^L /{print $3}' /usr/share/zoneinfo/tzdata.zi | sort >"$work/nombres"
"$native/tests/windows/volcado_zonas" <"$work/nombres" >"$work/zonas.nativo"
in_wine volcado_zonas <"$work/nombres" >"$work/zonas.windows" || true
compare zonas "$(tail -n 1 "$work/zonas.nativo" | tr '|' ' '), diferencias $(
  diff "$work/zonas.nativo" "$work/zonas.windows" | grep -c '^>' || true)"

"$native/tests/windows/volcado_caracteres" >"$work/caracteres.nativo"
in_wine volcado_caracteres >"$work/caracteres.windows" || true
compare caracteres "65,536 unidades, $(tail -n 1 "$work/caracteres.nativo")"

"$native/tests/windows/volcado_resultados" >"$work/resultados.nativo"
in_wine volcado_resultados >"$work/resultados.windows" || true
compare resultados "$(wc -l <"$work/resultados.nativo") resultados, en sus bits"

# A configuration file of libcrypto that leaves a program without any algorithm, as it does openssl's own.
hostile=tests/data/fin/openssl_sin_algoritmos.cnf
rc=0
OPENSSL_CONF=$hostile openssl dgst -sha256 </dev/null >/dev/null 2>&1 && rc=1
report $rc 'openssl: con OPENSSL_CONF hostil no resume'
"$native/tests/windows/volcado_resumenes" >"$work/resumenes.nativo"
OPENSSL_CONF="Z:$(realpath $hostile | sed 's|/|\\|g')" \
  in_wine volcado_resumenes >"$work/resumenes.windows" || true
compare resumenes 'todos los resúmenes, con OPENSSL_CONF hostil'

# The examples that ask for nothing of the machine.
seal=$work/sello
bash examples/genera_sello.sh "$seal" >/dev/null
for example in documento consulta consulta_contrato formulas textos rangos sello; do
  data=$PWD/examples/datos
  if [ $example = sello ]; then data=$seal; fi
  "$native/examples/$example" "$data" >"$work/$example.nativo"
  in_wine $example "Z:$data" >"$work/$example.windows" || true
  compare $example 'la salida del ejemplo'
done
# The catalog's folders depend on the registry: on both systems it has no keys of the suite.
UTILVEL_REGISTRO=$work/ninguno XDG_DATA_HOME=$work/datos \
  "$native/examples/empresas" "$PWD/examples/datos" >"$work/empresas.nativo"
in_wine empresas "Z:$PWD/examples/datos" >"$work/empresas.windows" || true
compare empresas 'la salida del ejemplo, sin registro'
# The first line of zonas is the computer's own zone, the next three are the moment: the same within a minute, unless
# one passes between both.
for _ in 1 2 3; do
  "$native/examples/zonas" examples/datos | tail -n +2 | sed -E 's/:[0-9]+(\.[0-9]+)?$//' >"$work/ejemplo_zonas.nativo"
  in_wine zonas examples/datos >"$work/zonas_todo" || true
  tail -n +2 "$work/zonas_todo" | sed -E 's/:[0-9]+(\.[0-9]+)?$//' >"$work/ejemplo_zonas.windows"
  if cmp -s "$work/ejemplo_zonas.nativo" "$work/ejemplo_zonas.windows"; then break; fi
done
compare ejemplo_zonas 'la hora de ahora y las de una fecha dada'

rc=0
in_wine sin_crt >"$work/sin_crt" || rc=1
report $rc "sin_crt: $(tr '\n' ',' <"$work/sin_crt" | sed 's/,$//; s/,/, /g')"

[ $failed -eq 0 ] || { echo "$failed comprobaciones mal"; exit 1; }
