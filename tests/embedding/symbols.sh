# symbols.sh LIBRARY LIST: the library exports the functions of LIST and nothing else, and needs no
# library of Clang or LLVM. With TARNWICK_REWRITE=1 it writes the list.
found=$(mktemp)
trap 'rm -f "$found"' EXIT
nm -D --defined-only --with-symbol-versions "$1" | awk '$2 == "T" { print $3 } $2 !~ /^[TA]$/ { print "no function:", $0 }' |
    sed 's/@@/ /' | LC_ALL=C sort >"$found"
if [ "$TARNWICK_REWRITE" = 1 ]; then
    cp "$found" "$2"
fi
diff "$2" "$found" || exit 1
objdump -p "$1" | grep -q 'SONAME *libtarnwick-msl.so.1$' || { echo 'Not the SONAME.'; exit 1; }
! objdump -p "$1" | grep -iE 'NEEDED.*(clang|llvm|vulkan)'
