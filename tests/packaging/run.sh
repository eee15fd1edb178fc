#!/usr/bin/env bash
# run.sh BUILD [CXX_FLAG...]: installs into a new folder, builds a project outside of the tree against that and runs it.
# Its host in C is the example of docs/component.md.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$1
flags=${*:2}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
library_folder=$folder/usr/$(sed -n 's/^CMAKE_INSTALL_LIBDIR:[A-Z]*=//p' "$build/CMakeCache.txt")
export ONDREL_SETTINGS=$folder/settings.json

fail() {
  echo "packaging: $1" >&2
  exit 1
}

cmake --install "$build" --prefix "$folder/usr" > /dev/null
awk '/^```c$/ { inside = 1; next } /^```$/ { inside = 0 } inside' "$here/../../docs/component.md" > "$folder/c_host.c"
cmake -G Ninja -S "$here/consumer" -B "$folder/build" -DCMAKE_PREFIX_PATH="$folder/usr" -DC_HOST="$folder/c_host.c" \
  -DEXAMPLES="$folder/usr/share/OndrelCorpComponents/examples" \
  -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_C_FLAGS="$flags" > "$folder/log" || { cat "$folder/log"; exit 1; }
cmake --build "$folder/build" > "$folder/log" || { cat "$folder/log"; exit 1; }

! grep -rn 'libduktape' "$library_folder/cmake" || fail "the path of a library of the machine that built it"
"$folder/usr/bin/ondrel" register
grep -q "$library_folder" "$ONDREL_SETTINGS" || fail "the program registered another library"
[[ $("$folder/build/c_host") == "0 characters" ]] || fail "the host in C"
[[ $("$folder/build/cpp_host") == "4 shirts" ]] || fail "the host in C++"
"$folder/build/two_counters" > "$folder/log" || fail "two counters in one program"
[[ $(grep -cE '^Counter [12] wrote ticket [0-9]+ with [0-9]+ statements$' "$folder/log") == 2 ]] || fail "tickets of two counters"
grep -q '^error 438 from ' "$folder/log" || fail "the error of two counters"

# Python brings a C library of its own into the process, which a sanitizer would have to come before.
if command -v python3 > /dev/null && [[ $flags != *sanitize* ]]; then
  database="Driver=Embedded;Database=$folder/shop.db"
  "$folder/usr/bin/ondrel" db create "$database" > /dev/null
  "$folder/usr/bin/ondrel" db sample "$database" > /dev/null
  python3 "$folder/usr/share/OndrelCorpComponents/examples/hosts/counter.py" "$library_folder/libOndrelCorpComponents.so.1" "$folder/shop.db" > "$folder/log" || fail "the host in Python"
  [[ $(head -n 1 "$folder/log") == '4 shirts, $10.00' ]] || fail "the price of four shirts in Python"
  grep -q '^error 13 from ' "$folder/log" || fail "the error in Python"
fi

# What the shared library shows is what it showed in the last version.
shown=$(nm -D --defined-only "$library_folder/libOndrelCorpComponents.so.1" | awk '{ print $3 }' | sort | xargs)
[[ $shown == "DllCanUnloadNow DllGetClassObject DllRegisterServer DllUnregisterServer" ]] || fail "other symbols are seen: $shown"
if command -v abidiff > /dev/null; then
  cc -g -shared -fPIC -I "$folder/usr/include" "$here/interface.c" -o "$folder/interface.so"
  abidiff "$here/component.abi" "$folder/interface.so" > "$folder/log" || { cat "$folder/log"; fail "the interface differs from the last version"; }
else
  echo "packaging: abidiff is missing (package abigail-tools), the types of the interface are not compared"
fi

# Each header compiles by itself.
headers=$folder/usr/include/OndrelCorpComponents
mkdir "$folder/alone"
while read -r header; do
  echo "#include \"$header\"" > "$folder/alone/${header//\//_}.cpp"
done < <(cd "$headers" && find . -name '*.h' -printf '%P\n')
# shellcheck disable=SC2086
find "$folder/alone" -name '*.cpp' -print0 | xargs -0 -P "$(nproc)" -n 4 c++ -std=c++20 -fsyntax-only -I "$headers" $flags ||
  fail "a header does not stand alone"

# The manual knows each sub-command, and so does the completion.
[[ $("$folder/usr/bin/ondrel" --version) == "ondrel 1.0.0" ]] || fail "the version of the program"
manual=$(gzip -dc "$folder/usr/share/man/man1/ondrel.1.gz")
for command in $("$folder/usr/bin/ondrel" --help | awk '/^Subcommands:/ { inside = 1; next } inside && NF { print $1 }'); do
  grep -qE "^\.(B|BR|TP) .*$command" <<< "$manual" || fail "the manual does not tell of $command"
done
PATH=$folder/usr/bin:$PATH bash -c '
  source "$1"
  COMP_WORDS=(ondrel db cre) COMP_CWORD=2
  _ondrel
  [[ ${COMPREPLY[*]} == create ]]' - "$folder/usr/share/bash-completion/completions/ondrel" || fail "the completion"

export PKG_CONFIG_PATH=$library_folder/pkgconfig
[[ $(pkg-config --modversion ondrel-corp-components) == 1.0.0 ]] || fail "the version of pkg-config"
# shellcheck disable=SC2046,SC2086
cc $flags "$folder/c_host.c" -o "$folder/by_pkg_config" $(pkg-config --cflags --libs ondrel-corp-components)
LD_LIBRARY_PATH=$library_folder "$folder/by_pkg_config" > /dev/null || fail "the host by pkg-config"

[[ -f $folder/usr/share/OndrelCorpComponents/database/schema.sql ]] || fail "no database files"
[[ -f $folder/usr/share/doc/ondrel/reference.md ]] || fail "no documents"
