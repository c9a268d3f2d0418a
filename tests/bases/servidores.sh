#!/usr/bin/env bash
# Starts a PostgreSQL and a MariaDB of its own, runs a command with their addresses in its environment and stops
# them, whatever the command does: bash servidores.sh FOLDER COMMAND...
#
# Nothing of the machine's own servers is touched: the data stand in the folder, which is made anew, and both listen
# on a port of the loopback that nobody used. The command gets
#
#   UTILVEL_PRUEBA_POSTGRESQL, UTILVEL_PRUEBA_MYSQL   address of the database "prueba", with its user
#   UTILVEL_CLAVE                                     that user's password in both
#   UTILVEL_PRUEBA_PID_POSTGRESQL                     process of the server, for who wants to end it early
set -euo pipefail
folder=$1
shift
start=$PWD

# Servers refuse to run as root.
user=$(id -un)
as_user=(setpriv --pdeathsig QUIT)
if [ "$(id -u)" -eq 0 ]; then
  user=nobody
  as_user+=(--reuid "$user" --regid "$(id -g "$user")" --clear-groups)
fi

rm -rf "$folder"
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
# A checkout in somebody's home may be closed to that user; paths of sockets are short.
if [ ${#folder} -gt 60 ] || ! "${as_user[@]}" test -x "$folder"; then folder=$(mktemp -d); fi
chown "$user" "$folder"
cd "$folder"

servers=()
stop() {
  # QUIT ends PostgreSQL and what it started at once; the data are thrown away, so nobody needs a goodbye.
  for s in "${servers[@]}"; do kill -QUIT "$s" 2>/dev/null || true; done
  sleep 0.2
  for s in "${servers[@]}"; do kill -KILL "$s" 2>/dev/null || true; done
  wait 2>/dev/null || true
  cd /
  rm -rf "$folder"
}
trap stop EXIT
trap 'exit 130' INT TERM HUP

# A port that nothing answers on.
port() {
  local p
  while true; do
    p=$(shuf -i 20000-32000 -n 1)
    (exec 3<>"/dev/tcp/127.0.0.1/$p") 2>/dev/null || { echo "$p"; return; }
  done
}

# Waits for a server: wait_for NAME PROCESS COMMAND...
wait_for() {
  local name=$1 process=$2
  shift 2
  for _ in $(seq 300); do
    "$@" >/dev/null 2>&1 && return
    kill -0 "$process" 2>/dev/null || break
    sleep 0.1
  done
  echo "$name did not start:" >&2
  tail -20 "$folder/$name.log" >&2
  exit 1
}

# A password with what shells, addresses and quoting get wrong.
export UTILVEL_CLAVE="c'l\"a v\\e%ñ@:/"

postgres=$(printf '%s\n' /usr/lib/postgresql/*/bin | sort -V | tail -1)
postgres_port=$(port)
printf '%s\n' "$UTILVEL_CLAVE" >clave
chown "$user" clave
"${as_user[@]}" "$postgres/initdb" -D "$folder/postgresql" -U ana --pwfile=clave --auth=scram-sha-256 \
  --encoding=UTF8 --locale=C.UTF-8 --no-sync >postgresql.log
"${as_user[@]}" "$postgres/postgres" -D "$folder/postgresql" -p "$postgres_port" -k "$folder" \
  -c listen_addresses=127.0.0.1 -c fsync=off >>postgresql.log 2>&1 &
servers+=($!)
export UTILVEL_PRUEBA_PID_POSTGRESQL=$!

mysql_port=$(port)
"${as_user[@]}" mariadb-install-db --no-defaults --datadir="$folder/mysql" --skip-test-db \
  --auth-root-authentication-method=normal >mysql.log 2>&1
"${as_user[@]}" "$(command -v mariadbd || echo /usr/sbin/mariadbd)" --no-defaults --datadir="$folder/mysql" \
  --socket="$folder/mysql.sock" --pid-file="$folder/mysql.pid" --bind-address=127.0.0.1 --port="$mysql_port" \
  --innodb-flush-log-at-trx-commit=0 >>mysql.log 2>&1 &
servers+=($!)

PGPASSWORD=$UTILVEL_CLAVE wait_for postgresql "${servers[0]}" \
  psql -h 127.0.0.1 -p "$postgres_port" -U ana postgres -c 'CREATE DATABASE prueba'
sql=${UTILVEL_CLAVE//\\/\\\\}
wait_for mysql "${servers[1]}" mariadb --no-defaults --socket="$folder/mysql.sock" -u root -e "
  CREATE DATABASE prueba CHARACTER SET utf8mb4 COLLATE utf8mb4_bin;
  CREATE USER ana@'127.0.0.1' IDENTIFIED BY '${sql//\'/\\\'}';
  GRANT ALL ON prueba.* TO ana@'127.0.0.1';"

export UTILVEL_PRUEBA_POSTGRESQL="postgresql://ana@127.0.0.1:$postgres_port/prueba"
export UTILVEL_PRUEBA_MYSQL="mysql://ana@127.0.0.1:$mysql_port/prueba"
cd "$start"
"$@"
