#!/bin/sh
# Prints a source file that refers to every import of a DLL, and holds nothing else.
# Use: imports.sh NM DLL
printf 'asm(".section .rdata,\\"dr\\"");\n'
"$1" "$2" | sed -n 's/^.* I \(__imp_.*\)$/asm(".long \1");/p' | LC_ALL=C sort -u
