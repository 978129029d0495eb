#!/bin/sh
# Prints {"Name", bytes of arguments}, for every function of import libraries, sorted by name.
# Use: argument_sizes.sh NM LIBRARY...
nm=$1
shift
"$nm" "$@" 2>/dev/null |
    sed -n 's/^.* T _\([A-Za-z0-9_]*\)@\([0-9][0-9]*\)$/{"\1", \2},/p' | LC_ALL=C sort -u
