#!/usr/bin/env bash
# Formatting, layers and static checks over the whole tree, new files included: bash tools/lint.sh
set -euo pipefail
cd "$(dirname "$0")/.."

# The files of the tree, whether git knows them yet or not; one that was deleted is still in its list.
tree() {
  git ls-files --cached --others --exclude-standard -- "$@" | sort -u | while read -r file; do
    if [[ -e $file ]]; then echo "$file"; fi
  done
}

files=$(tree '*.h' '*.cpp')
mapfile -t files <<<"$files"
echo "clang-format: ${#files[@]} files"
clang-format --dry-run -Werror "${files[@]}"

echo "layers"
cmake -DRAIZ="$PWD" -P tools/capas.cmake

sources=$(tree '*.cpp' | grep -vE '^(tests|benchmarks|fuzz)/')
mapfile -t sources <<<"$sources"
echo "clang-tidy: ${#sources[@]} files"
cmake --preset clang >/dev/null
for source in "${sources[@]}"; do
  if ! grep -qF "\"$PWD/$source\"" build/clang/compile_commands.json; then
    echo "$source: no target builds it" >&2
    exit 1
  fi
done
# Only the count of what it holds back in other people's headers is left out.
printf '%s\0' "${sources[@]}" | xargs -0 -P "$(nproc)" -n 4 clang-tidy --quiet -p build/clang \
  2> >(grep -vE '^[0-9]+ warnings? generated\.$' >&2 || true)
echo "nothing to complain of"
