#!/usr/bin/env bash
# Formatting, layers and static checks over the whole tree: bash tools/lint.sh
set -euo pipefail
cd "$(dirname "$0")/.."
files=$(git ls-files '*.h' '*.cpp')
mapfile -t sources <<<"$files"
echo "clang-format: ${#sources[@]} files"
clang-format --dry-run -Werror "${sources[@]}"
echo "layers"
cmake -DRAIZ="$PWD" -P tools/capas.cmake
echo "clang-tidy"
cmake --preset clang >/dev/null
git ls-files '*.cpp' | grep -vE '^(tests|benchmarks)/' |
  xargs -P "$(nproc)" -n 4 clang-tidy --quiet -p build/clang 2>/dev/null
