#!/usr/bin/env bash
# Runs the program utilvel as a user does: bash corre.sh <program> <root of the sources> <case file>...
# With "ejemplos" in the place of the case files it checks that the cases hold every example of the manual page
# and every exit code of its table.
#
# A case is a line "$ " with a command for bash, then what it prints (errors too), then "= " and the exit code
# when that is not 0. A line "~ " is a regular expression for one line of what is printed. Lines "#" before the
# first case are comments, and empty ones at a case's end do not count. The cases of a file run one after another
# in a folder of their own, which holds the example files; it is "@" in what is printed, and blanks in its lines are one.
set -uo pipefail
program=$1
root=$2
shift 2
cases=$root/tests/tools/utilvel/casos

if [ "$1" = ejemplos ]; then
  faults=0
  while IFS= read -r line; do
    grep -qFx -- "\$ $line" "$cases"/*.txt || { echo "no case for the example: $line"; faults=1; }
  done < <("$program" _ejemplos)
  # 70 is a fault of ours or a machine without memory.
  for code in $("$program" --help | sed -nE 's/^  ([0-9]+) .*/\1/p' | grep -vxE '0|70'); do
    grep -qx "= $code" "$cases"/*.txt || { echo "no case ends with code $code"; faults=1; }
  done
  exit "$faults"
fi

mapfile -t files < <(realpath -- "$@")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cp "$root"/examples/datos/* "$folder"
bash "$root/examples/genera_sello.sh" "$folder"
printf 'Sello de año 1\n' >"$folder/contrasena.txt"
PATH=$(dirname "$program"):$PATH
export PATH HOME=$folder/casa TZ=America/Mexico_City LC_ALL=C TERM=xterm
export DATOS=$root/tests/data UTILVEL_REGISTRO=$folder/registro.reg UTILVEL_DATOS_COMUNES=$folder/comunes UTILVEL_UNIDADES=$folder/unidades
unset XDG_DATA_HOME NO_COLOR
cd "$folder" || exit 1
faults=0
ran=0

# Compares what a case printed with what it should, line by line.
compare() {
  local i=0 same=1 line
  local -a got
  mapfile -t got <"$folder.out"
  while [ ${#want[@]} -gt 0 ] && [ -z "${want[-1]}" ]; do unset 'want[-1]'; done
  while [ ${#got[@]} -gt 0 ] && [ -z "${got[-1]}" ]; do unset 'got[-1]'; done
  [ ${#want[@]} -eq ${#got[@]} ] && [ "$code" -eq "$wanted" ] || same=0
  for line in "${want[@]}"; do
    case "$line" in
      '~ '*) [[ ${got[i]:-} =~ ^${line#'~ '}$ ]] || same=0 ;;
      *) [ "$line" = "${got[i]:-}" ] || same=0 ;;
    esac
    i=$((i + 1))
  done
  [ $same -eq 1 ] && return
  faults=$((faults + 1))
  echo "--- $command"
  diff <(printf '%s\n' "${want[@]}" "= $wanted") <(printf '%s\n' "${got[@]}" "= $code")
}

run() {
  [ -n "$command" ] || return
  timeout 120 bash -c "$command" >"$folder.out" 2>&1 </dev/null
  code=$?
  sed -i "s|$folder|@|g; /@/s/  */ /g" "$folder.out"
  ran=$((ran + 1))
  compare
}

command=
for file in "${files[@]}"; do
  while IFS= read -r line || [ -n "$line" ]; do
    case "$line" in
      '$ '*)
        run
        command=${line#'$ '}
        want=()
        wanted=0
        ;;
      '= '*) wanted=${line#'= '} ;;
      *) [ -z "$command" ] || want+=("$line") ;;
    esac
  done <"$file"
  run
  command=
done
rm -f "$folder.out"
echo "$ran cases, $faults wrong"
[ "$faults" -eq 0 ] && [ "$ran" -gt 0 ]
