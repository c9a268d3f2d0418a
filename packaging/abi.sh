#!/usr/bin/env bash
# The work of `./run abi`: what programs built with an earlier release would miss in the library of today. The build
# with debug information is there already (preset paquete).
#   bash packaging/abi.sh             compare with each record in packaging/abi; ends with 1 when something broke
#   bash packaging/abi.sh --record    write the record of this version, which is a step of each release
#
# A record holds what callers see: exported functions, and the layout of the types of the public headers. What the
# standard library's templates leave among our symbols belongs to whoever instantiates them (abi/registro.supp).
# NAME.supp beside a record names what is known and why it may be.
set -euo pipefail
cd "$(dirname "$0")/.."

version=$(sed -n 's/^  VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install build/paquete --prefix "$work" --component dev >/dev/null
abidw --suppressions packaging/abi/registro.supp --headers-dir "$work/include/utilvel90" --drop-private-types \
  --no-corpus-path --no-comp-dir-path --no-show-locs --no-write-default-sizes --type-id-style hash \
  --out-file "$work/hoy.abi" "build/paquete/libUtilVel90.so.$version"

if [ "${1:-}" = --record ]; then
  xz -9e <"$work/hoy.abi" >"packaging/abi/$version.abi.xz"
  ls -l "packaging/abi/$version.abi.xz"
  exit
fi

# What is exported stands in the public headers, and the reverse.
tools/exportadas.py "build/paquete/libUtilVel90.so.$version" "$work/include/utilvel90"

broken=0
for record in packaging/abi/*.abi.xz; do
  release=$(basename "$record" .abi.xz)
  xz -dc "$record" >"$work/$release.abi"
  known=packaging/abi/$release.supp
  options=(--no-show-locs --no-added-syms)
  if [ -f "$known" ]; then options+=(--suppressions "$known"); fi
  status=0
  abidiff "${options[@]}" "$work/$release.abi" "$work/hoy.abi" >"$work/informe" || status=$?
  # Bits of the status: 1 and 2 are faults of the command's own, 4 a change, 8 one that is surely incompatible.
  if [ $((status & 3)) -ne 0 ]; then
    cat "$work/informe" >&2
    exit 2
  elif [ "$status" -ne 0 ]; then
    broken=1
    # Once for each type, not for each function that it reaches. Its status counts what was suppressed, too.
    abidiff "${options[@]}" --leaf-changes-only "$work/$release.abi" "$work/hoy.abi" >"$work/informe" || true
    echo "Programs built with $release do not run with this library:"
    sed -n "s/^  \[D\] '\(.*\)'    {.*}$/  gone: \1/p; s/^'\(.*\)' changed:$/  another layout: \1/p" "$work/informe"
    echo 'In full:'
    cat "$work/informe"
  else
    # Without a change it says nothing at all.
    added=$(abidiff --no-show-locs "$work/$release.abi" "$work/hoy.abi" |
      sed -n 's/^Functions changes summary:.* \([0-9]*\) Added functions\{0,1\}.*/\1/p' || true)
    echo "Programs built with $release find all that they use; functions added since: ${added:-0}."
    if [ -f "$known" ]; then echo "  but for what $known explains"; fi
  fi
done
[ "$broken" -eq 0 ] || exit 1
