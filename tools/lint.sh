#!/usr/bin/env bash
# Formatting, house rules and static checks over the whole tree, new files included: bash tools/lint.sh
set -euo pipefail
cd "$(dirname "$0")/.."

# The files of the tree, whether git knows them yet or not; one that was deleted is still in its list.
tree() {
  git ls-files --cached --others --exclude-standard -- "$@" | sort -u | while read -r file; do
    if [[ -e $file ]]; then echo "$file"; fi
  done
}

# How many files a check looks at. One that looks at none has checked nothing.
step() {
  local name=$1
  shift
  if [ $# -eq 0 ] || [ -z "$1" ]; then echo "$name: no files" >&2; exit 1; fi
  echo "$name: $# files"
}

# tidy FOLDER [OPTION] FILE...: clang-tidy with the folder's compile commands. Only the count of what it holds back in
# other people's headers is left out. Its analyzer gives up on a function after 75,000 states, which is what Clang takes
# for a quick look; three times as many, its default, found nothing more in half as much time again.
tidy() {
  local folder=$1 option options=()
  shift
  for option in -Xclang -analyzer-config -Xclang max-nodes=75000; do options+=("--extra-arg=$option"); done
  if [[ $1 == --* ]]; then options+=("$1"); shift; fi
  printf '%s\0' "$@" | xargs -0 -P "$(nproc)" -n 3 clang-tidy --quiet -p "$folder" "${options[@]}" \
    2> >(grep -vE '^[0-9]+ warnings? generated\.$' >&2 || true)
}

mapfile -t files < <(tree '*.h' '*.cpp')
step clang-format "${files[@]}"
clang-format --dry-run -Werror "${files[@]}"

mapfile -t scripts < <(tree '*.py')
step pyflakes "${scripts[@]}"
pyflakes3 "${scripts[@]}"

echo "mutants"
python3 tools/mutantes.py --check

echo "layers"
cmake -DRAIZ="$PWD" -P tools/capas.cmake

echo "includes"
python3 tools/includes.py

mapfile -t scripts < <(tree '*.sh')
scripts+=(run .ci/run)
step shellcheck "${scripts[@]}"
shellcheck "${scripts[@]}"

# The words of the English pages; those that look like slips of English and are none are in the list.
mapfile -t pages < <(tree '*.md' | grep -vE '^docs/(guia/|precio-con|recetas|resumen-fiscal|verificacion)')
step codespell "${pages[@]}"
codespell --ignore-words tools/palabras.txt "${pages[@]}"

# Sources of the Windows half are not built here.
mapfile -t sources < <(tree '*.cpp' | grep -vE '^(tests|benchmarks|fuzz)/|^(platform|tools)/windows/')
step cppcheck "${sources[@]}"
mkdir -p build/cppcheck
cppcheck -q -j "$(nproc)" -I . --std=c++20 --enable=warning,performance,portability --inline-suppr \
  --cppcheck-build-dir=build/cppcheck --error-exitcode=1 "${sources[@]}"

# The Windows half is looked at as its compiler sees it; its own headers cast numbers to pointers.
mapfile -t windows < <(tree 'platform/windows/*.cpp')
step "Windows: cppcheck, clang-tidy" "${windows[@]}"
cppcheck -q -j "$(nproc)" -I . --std=c++20 --platform=win64 --enable=warning,performance,portability \
  --inline-suppr --error-exitcode=1 "${windows[@]}"
mingw=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-libgcc-file-name)")/include/c++
mkdir -p build/lint-windows
printf '%s\n' -std=c++20 "-I$PWD" -DUTILVEL90_CONSTRUYE -DUNICODE -D_WIN32_WINNT=0x0601 \
  --target=x86_64-w64-mingw32 -isystem "$mingw" -isystem "$mingw/x86_64-w64-mingw32" \
  -idirafter "/usr/include/$(gcc -print-multiarch)" >build/lint-windows/compile_flags.txt
tidy build/lint-windows --checks=-performance-no-int-to-ptr "${windows[@]}"

# GCC's analyzer follows what C interfaces hand out: memory, descriptors, keys. GCC 12 does not follow the standard
# containers (minutes and gigabytes for a file of them), so it looks at the sources that call C; and what it says of
# values without a first one is said of temporaries of the compiler's own ("<unknown>"), so that is left to clang-tidy
# and to the sanitizers.
mapfile -t c_callers < <(printf '%s\n' "${sources[@]}" \
  | grep -E '^(platform|Uutilext/(crypto|process|diagnostics))/|^tools/utilvel/Sistema')
step "GCC's analyzer" "${c_callers[@]}"
printf '%s\0' "${c_callers[@]}" | xargs -0 -P "$(nproc)" -n 1 \
  g++ -std=c++20 -I . -DUTILVEL90_CONSTRUYE -S -o /dev/null -Werror \
  -fanalyzer -Wno-analyzer-use-of-uninitialized-value

step clang-tidy "${sources[@]}"
cmake --preset clang >/dev/null
for source in "${sources[@]}"; do
  if ! grep -qF "\"$PWD/$source\"" build/clang/compile_commands.json; then
    echo "$source: no target builds it" >&2
    exit 1
  fi
done
echo "generated files"
cmake --build build/clang --target genera_caracteres >/dev/null
# 77: an ICU of another version of Unicode, which can tell nothing.
build/clang/tests/platform/genera_caracteres --compara . || [ $? -eq 77 ]
tidy build/clang "${sources[@]}"
echo "nothing to complain of"
