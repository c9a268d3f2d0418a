#!/usr/bin/env bash
# Configures the outside project, and compiles its program and two sources of ours under its flags; all of the
# library is built so by `./run package --test`.
#   bash prueba.sh <way> <our source folder> <program> <build folder> [<CMake's option>...]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
way=$1 sources=$2 program=$3 build=$4
shift 4
rm -rf "$build"
cmake -S "$here" -B "$build" -G Ninja -DFORMA="$way" -DFUENTES="$sources" -DPROGRAMA="$program" "$@"
ninja -C "$build" -t targets all | cut -d: -f1 | grep -E '(/Redondeo|/Variant|programa\.dir/.*)\.c(pp|xx)\.o$' >"$build/objetos"
[ "$(wc -l <"$build/objetos")" -eq 3 ]
xargs ninja -C "$build" <"$build/objetos"
