#!/usr/bin/env bash
# run.sh BUILD CONSUMER: the shared library shows its four functions alone, and the consumer gets on with it.
set -euo pipefail
build=$1
library=$build/libOndrelCorpComponents.so
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export ONDREL_SETTINGS=$folder/settings.json

seen=$(nm -D --defined-only "$library" | awk '{ print $3 }' | sort | paste -sd' ')
[[ $seen == "DllCanUnloadNow DllGetClassObject DllRegisterServer DllUnregisterServer" ]] || {
  echo "the library shows: $seen" >&2
  exit 1
}

connection="Driver=Embedded;Database=$folder/shop.db"
"$build/ondrel" db create "$connection"
"$build/ondrel" db sample "$connection"
"$2" "$library" "$connection"

"$build/ondrel" register "$library"
grep -q '"CLSID": "{1FDC7BD4-F46D-47B7-BD99-FE04480227D2}"' "$ONDREL_SETTINGS"
grep -q "\"InprocServer32\": \"$library\"" "$ONDREL_SETTINGS"
"$build/ondrel" unregister "$library"
mkdir "$folder/cannot"
! refusal=$(ONDREL_SETTINGS=$folder/cannot "$build/ondrel" register "$library" 2>&1)
[[ $refusal == "error 75: Settings file $folder/cannot cannot be read" ]]
(cd "$build" && ./ondrel register ./libOndrelCorpComponents.so)
grep -q "\"InprocServer32\": \"$library\"" "$ONDREL_SETTINGS"
"$build/ondrel" unregister
[[ $(tr -d ' \n' < "$ONDREL_SETTINGS") == '{}' ]]
