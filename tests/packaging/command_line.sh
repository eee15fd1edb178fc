#!/usr/bin/env bash
# command_line.sh ONDREL: what the program answers to wrong input, in a pipe, on a full disk and when it is interrupted.
set -euo pipefail
ondrel=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
shop="Driver=Embedded;Database=$folder/shop.db"
failed=0

# expect STATUS TEXT ARG...: the status, and a text of what it says.
expect() {
  local status=0 said
  said=$("$ondrel" "${@:3}" 2>&1 < /dev/null) || status=$?
  [[ $status == "$1" && $said == *"$2"* ]] || { echo "ondrel ${*:3}: status $status, \"$said\"" >&2; failed=1; }
}

expect 2 "subcommand is required"
expect 2 "There is no command nope"            nope
expect 2 "FILE.js is required"                 run
expect 1 "error 53: File not found"            run "$folder/none.js"
expect 2 "no date"                             run --now noon "$folder/none.js"
expect 2 "ADDRESS:PORT"                        serve --listen 1.2.3
expect 1 "error 75: There is no folder"        serve --pages "$folder/none" --listen 127.0.0.1:0
expect 1 "error 429"                           describe nope
expect 1 "error 53"                            register "$folder/none.so"
expect 1 "Cannot make the database \"$folder/none/shop.db\"" db create "Driver=Embedded;Database=$folder/none/shop.db"
expect 1 "\"ondrel db create\" makes one"      db sample "$shop"
expect 0 "created"                             db create "$shop"
expect 1 "error 58"                            db create "$shop"
expect 0 "there already"                       db create --if-missing "$shop"
expect 0 "sample store loaded"                 db sample "$shop"
expect 1 "holds a store already"               db sample "$shop"
expect 1 "error 75: Cannot write"              db export "$shop" "$folder/none/text"
expect 1 "error 53: Cannot read"               db import "$shop" "$folder/none"
expect 1 "error 75: Cannot write"              db export "$shop" /dev/full
expect 1 "not a database of this program"      db check "Driver=Embedded;Database=$0"
echo 'print(1); quit(7)' > "$folder/seven.js"
expect 7 "1"                                   run "$folder/seven.js"

# The page that docs/moving.md brings over.
awk '/^```js$/ { inside = 1; next } /^```$/ { inside = 0 } inside' "${BASH_SOURCE[0]%/*}/../../docs/moving.md" > "$folder/page.js"
expect 0 $'true\n7.5'                          run --now "2026-11-24 10:30" "$folder/page.js"

# A result that nobody got is no success.
! "$ondrel" describe > /dev/full 2> /dev/null || { echo "describe: a full disk is not told" >&2; failed=1; }

# Killed at a random moment, the file is not there or it is whole.
for moment in 0.002 0.01 0.02 0.03 0.04 0.06; do
  rm -f "$folder"/killed.db*
  { timeout -s KILL "$moment" "$ondrel" db create "Driver=Embedded;Database=$folder/killed.db" || true; } > /dev/null 2>&1
  expect 0 "" db create --if-missing "Driver=Embedded;Database=$folder/killed.db"
  expect 0 "complete" db check "Driver=Embedded;Database=$folder/killed.db"
done
exit "$failed"
