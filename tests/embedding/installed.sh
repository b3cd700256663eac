#!/usr/bin/env bash
# installed.sh BUILD CMAKE: an installed tree, moved to another folder, builds the example with
# pkg-config and with CMake; the example draws a triangle. Status 77: skipped, with the reason.
set -euo pipefail
build=$1 cmake=$2
fail() {
    echo "$1"
    exit 1
}
for tool in cc pkg-config; do
    command -v $tool >/dev/null || { echo "Skipped: $tool is missing."; exit 77; }
done
pkg-config vulkan || { echo "Skipped: libvulkan-dev is missing."; exit 77; }
[ -e "$build/lib/libtarnwick-msl.so" ] || fail "The library is not built."

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
for component in compiler dev; do
    "$cmake" --install "$build" --component $component --prefix "$folder/first" >/dev/null
done
mv "$folder/first" "$folder/moved place"
tree="$folder/moved place"
libraries=$(dirname "$(find "$tree" -name libtarnwick-msl.so.1)")
examples=$tree/share/doc/tarnwick-dev/examples

export PKG_CONFIG_PATH="$libraries/pkgconfig"
eval "cc -std=c11 -Wall -Wextra -Wno-missing-field-initializers -Werror '$examples/triangle.c' '$examples/canvas.c' -o '$folder/triangle' \
    $(pkg-config --cflags --libs tarnwick-msl vulkan)"
LD_LIBRARY_PATH="$libraries" VK_INSTANCE_LAYERS=VK_LAYER_KHRONOS_validation \
    "$folder/triangle" "$folder/triangle.ppm" >"$folder/log" 2>&1 || { cat "$folder/log"; fail 'No triangle.'; }
! grep -i validation "$folder/log" || fail 'Vulkan is not used as it requires.'

# The picture: black corners, red at the lower left, green at the lower right, blue above.
pixel() { # X Y
    od -An -tu1 -j $((15 + ($2 * 256 + $1) * 3)) -N 3 "$folder/triangle.ppm"
}
near() { # X Y RED GREEN BLUE: within 12
    read -r red green blue <<<"$(pixel "$1" "$2")"
    for pair in "$red $3" "$green $4" "$blue $5"; do
        read -r met wanted <<<"$pair"
        [ $((met - wanted)) -le 12 ] && [ $((wanted - met)) -le 12 ] ||
            fail "The pixel ($1, $2) is $red $green $blue, not $3 $4 $5."
    done
}
[ "$(head -c 15 "$folder/triangle.ppm" | tr '\n' ' ')" = 'P6 256 256 255 ' ] || fail 'Not a picture.'
near 2 2 0 0 0
near 253 253 0 0 0
near 30 228 250 3 1
near 225 228 3 200 1
near 128 30 3 2 148

env -u LDFLAGS "$cmake" -S "$examples" -B "$folder/build" -DCMAKE_PREFIX_PATH="$tree" >"$folder/log" ||
    { cat "$folder/log"; fail 'find_package fails.'; }
"$cmake" --build "$folder/build" >"$folder/log" || { cat "$folder/log"; fail 'CMake does not build the example.'; }
"$folder/build/triangle" "$folder/again.ppm" || fail 'The example that CMake built draws no triangle.'
cmp "$folder/triangle.ppm" "$folder/again.ppm"
