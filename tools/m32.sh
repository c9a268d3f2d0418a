#!/usr/bin/env bash
# 32-bit x86 code, native: the tests of the arithmetic and the framework, and 1.2 million results whose bits must be
# those of the 64-bit build. Needs g++-multilib, cmake, ninja-build and googletest: bash tools/m32.sh
set -euo pipefail
cd "$(dirname "$0")/.."

mkdir -p build
for bits in 32 64; do
  cmake -S tests/m32 -B build/m$bits -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE=-O2 \
    -DUTILVEL90_BITS=$bits >build/m$bits-configure.log
  cmake --build build/m$bits
  build/m$bits/resultados >build/m$bits/resultados.txt
  if [ $bits = 32 ]; then build/m32/pruebas_m32 --gtest_brief=1; fi
done

echo "results, and how many differ between 32 and 64 bits:"
paste -d ' ' build/m32/resultados.txt build/m64/resultados.txt | awk '
  { ++n[$1]; ++todos; if ($1 != $3 || $2 != $4) { ++d[$1]; ++difieren } }
  END {
    for (g in n) printf "  %-10s %8d %8d\n", g, n[g], d[g] + 0
    printf "  %-10s %8d %8d\n", "all", todos, difieren + 0
    if (todos < 1200000) { print "too few results"; exit 1 }
    exit difieren > 0
  }'
