#!/usr/bin/env bash
# Prints {"Name", FakeOf(words of arguments)}, for every function that a library imports from the
# system. How many bytes a function takes off the stack stands in its decorated name, in the
# compiler's import library for the system's library.
# Use: import_fakes.sh OBJDUMP NM LIBRARY FOLDER-OF-IMPORT-LIBRARIES
set -euo pipefail

imports=$("$1" --private-headers "$3" | sed -n '/^The Import Tables/,/^The Export Tables/p')
# One row for each import: an address, numbers that differ by version, the name.
names=$(awk '/^\t[0-9a-f]+[\t ]/ { print $NF }' <<<"$imports")
[ -n "$names" ] || { echo "import_fakes.sh: $1 shows no imports of $3" >&2 && exit 1; }
sed -n 's/^\tDLL Name: \(.*\)\.dll$/\1/p' <<<"$imports" | tr '[:upper:]' '[:lower:]' |
    while read -r library; do
        case $library in lib*) continue ;; esac # the compiler's own
        "$2" "$4/lib$library.a" 2>/dev/null
    done |
    sed -n 's/^.* T _\([A-Za-z0-9_]*\)@\([0-9][0-9]*\)$/\1 \2/p' | sort -u |
    sed 's|\(.*\) \(.*\)|{"\1", FakeOf(std::make_index_sequence<\2 / 4>())},|' |
    grep -wF "$names"
