# Another driver than Mesa's draws the same: SwiftShader, which lacks small and 64-bit integers and
# halves. It is the one of Debian's package chromium-common, installed or fetched, or the Vulkan ICD
# file that TARNWICK_SECOND_DRIVER names.
. "$PROMISES/promises.sh"

skip() {
    echo "skipped: $1"
    exit 77
}

"$TARNWICK" devices >first 2>err || skip 'There is no Vulkan device.'
grep -q llvmpipe first || skip 'The first driver is not that of Mesa.'
command -v ffmpeg >/dev/null || skip 'ffmpeg is missing.'
driver=${TARNWICK_SECOND_DRIVER:-}
if [ -z "$driver" ]; then
    library=/usr/lib/chromium/libvk_swiftshader.so
    kept=$BUILD/second-driver
    if [ ! -e $library ] && [ ! -e "$kept$library" ]; then
        apt-get download chromium-common >out 2>&1 && dpkg-deb -x chromium-common_*.deb all &&
            mkdir -p "$kept/usr/lib/chromium" && mv all$library "$kept$library" ||
            skip 'The package chromium-common cannot be fetched.'
    fi
    [ -e $library ] || library=$kept$library
    driver=$folder/second.json
    echo '{"file_format_version": "1.0.0", "ICD": {"library_path": "'"$library"'", "api_version": "1.3.0"}}' >"$driver"
fi
# second WORD...: the command with the second driver.
second() {
    env VK_ICD_FILENAMES="$driver" "$@"
}
second "$TARNWICK" devices >found 2>err || skip 'The second driver has no usable device.'
grep -q llvmpipe found && skip 'The second driver is the first.'

# alike NAME DECIBELS OPTION...: stills of the episode by both drivers agree.
alike() {
    name=$1 wanted=$2
    shift 2
    still="still $PROMISES/../../episodes/$name.metal --no-settings --size 320x180"
    # shellcheck disable=SC2086
    "$TARNWICK" $still -o first.png "$@" >out 2>err || complain 'no first picture' "$name"
    # shellcheck disable=SC2086
    second "$TARNWICK" $still -o second.png "$@" >out 2>err || complain 'no second picture' "$name"
    ffmpeg -v info -i first.png -i second.png -lavfi psnr -f null - 2>psnr >out
    met=$(sed -n 's/.*average:\([0-9.inf]*\).*/\1/p' psnr)
    echo "$name $* $met dB"
    awk "BEGIN { exit !(\"$met\" == \"inf\" || $met + 0 >= $wanted) }" ||
        complain "$met dB, not $wanted" "$name"
}

for name in chambered-light copper-tide ember-silk evening-swell firefly-meadow listening-lake long-play \
    million-petals moon-lotus murmuration paper-lantern; do
    alike $name 40
done
# It reflects each point up to 40 times, and each reflection enlarges the last bits in which sines
# differ: a pixel in fifty, near the rim of the window, falls into another pane.
alike rose-window 38

# An export has as many frames, and the same pictures.
for number in first second; do
    run=
    [ $number = second ] && run=second
    $run "$TARNWICK" export "$PROMISES/../../episodes/long-play.metal" -o $number.mp4 --no-settings \
        --size 160x90 --start 3 --duration 1 >out 2>err || complain "no $number movie" export
done
ffmpeg -v info -i first.mp4 -i second.mp4 -lavfi psnr -f null - 2>psnr >out
grep -q 'frame= *30 ' psnr || complain 'not 30 frames' export
met=$(sed -n 's/.*average:\([0-9.inf]*\).*/\1/p' psnr)
echo "export $met dB"
awk "BEGIN { exit !(\"$met\" == \"inf\" || $met + 0 >= 40) }" || complain "$met dB, not 40" export

# The compiler's corpus gives the same numbers, but for programs that are refused because the driver
# lacks a feature that no words stand for (addresses, tessellation, textures that are read and written).
# And for what the driver has or does in its own way: SIMD-groups of 4 lanes, of which matrices need 8,
# and FMax of NaN, which the language leaves open in fast code.
sort >expected <<'TEXT'
simdgroup_matrices
three_numbers
TEXT
second "$BUILD/bin/TarnwickMSLCorpusTests" --gtest_filter='*givesWhatItPromises*' >corpus 2>&1
grep -q 'test suite ran' corpus || complain 'the corpus did not end' corpus
awk '/ RUN / { refused = 0 }
    / has no | does not blend |, which the device lacks/ { refused = 1 }
    /FAILED.*ms\)$/ && !refused { sub(/,.*/, "", $0); sub(/.*\//, "", $0); print }' corpus | sort >failed
diff expected failed || complain 'other programs than expected fail' corpus
finish
