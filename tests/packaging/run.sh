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
  -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_C_FLAGS="$flags" > "$folder/log" || { cat "$folder/log"; exit 1; }
cmake --build "$folder/build" > "$folder/log" || { cat "$folder/log"; exit 1; }

! grep -rn 'libduktape' "$library_folder/cmake" || fail "the path of a library of the machine that built it"
"$folder/usr/bin/ondrel" register
grep -q "$library_folder" "$ONDREL_SETTINGS" || fail "the program registered another library"
[[ $("$folder/build/c_host") == "0 characters" ]] || fail "the host in C"
[[ $("$folder/build/cpp_host") == "4 shirts" ]] || fail "the host in C++"

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
