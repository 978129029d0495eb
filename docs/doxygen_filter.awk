# Makes the public headers' plain comments known to Doxygen:
# - the banner at the top becomes the file's description;
# - a comment above a group of declarations is given to each of them, up to the next blank line.

FNR == 1 && /^\/\// { print "/// @file"; banner = 1 }
banner && /^\/\// { sub(/^\/\//, "///"); print escaped($0); next }
{ banner = 0 }

/^[ \t]*\/\/\// {
    if (!collecting) block = ""
    collecting = 1
    block = block escaped($0) "\n"
    printf "%s", escaped($0) "\n"
    next
}
/^[ \t]*$/ { block = ""; collecting = 0; open = 0; print; next }
{
    # A new declaration of the group, not the continuation of one.
    if (!collecting && block != "" && !open) printf "%s", block
    collecting = 0
    open = !/;[ \t]*$/
    if (/\{/) block = ""
    print
}

# What Doxygen would take for commands is meant as it stands; examples are left alone.
function escaped(line) {
    if (line ~ /\/\/\/     /) return line
    gsub(/[\\<>@#%]/, "\\\\&", line)
    return line
}
