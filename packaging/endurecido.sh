#!/usr/bin/env bash
# Checks that the hardening of cmake/Endurecido.cmake is in built ELF files: bash endurecido.sh FILE...
# What the compiler adds is looked for in the shared library alone: a program shows it in any case, from static
# libraries of others. A program must be one that loads at any address.
set -euo pipefail

missing=0
# need FILE WHAT PATTERN TEXT: the text has a line with the pattern.
need() {
  grep -qE -- "$3" <<<"$4" || { echo "$1: no $2" >&2; missing=1; }
}

for file in "$@"; do
  segments=$(readelf -lW "$file")
  dynamic=$(readelf -dW "$file")
  need "$file" 'read-only relocations' 'GNU_RELRO' "$segments"
  need "$file" 'stack that is not executed' 'GNU_STACK.* RW +0x' "$segments"
  need "$file" 'binding at the start' '\(FLAGS_1\).*NOW' "$dynamic"
  case $file in
    *.so*)
      symbols=$(readelf --dyn-syms -W "$file")
      need "$file" 'stack protector' '__stack_chk_fail' "$symbols"
      need "$file" 'checked calls (fortify)' '__[a-z]+(printf|cpy|cat|move|set|read|recv|path|link)[a-z]*_chk' "$symbols"
      ;;
    *) need "$file" 'position of its own (PIE)' '\(FLAGS_1\).*PIE' "$dynamic" ;;
  esac
  if grep -qE 'X86-64|80386' <<<"$(readelf -hW "$file")"; then
    notes=$(readelf -nW "$file")
    need "$file" 'branch tracking (IBT)' 'x86 feature:.*IBT' "$notes"
    need "$file" 'shadow stack (SHSTK)' 'x86 feature:.*SHSTK' "$notes"
  fi
done
[ "$missing" -eq 0 ] || exit 1
echo "hardened: $*"
