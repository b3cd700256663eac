#!/usr/bin/env bash
# The player under a Wayland compositor without a screen: the picture is drawn in the window.
#
# PLAYER: the program. KEEP: a folder for the screen; default: it is removed.
set -u
for tool in weston weston-screenshooter ffmpeg; do
    command -v "$tool" >/dev/null || { echo "$tool is missing"; exit 77; }
done

folder=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; wait 2>/dev/null; rm -rf "$folder"' EXIT
cd "$folder" || exit 1
mkdir -m 700 run
export XDG_STATE_HOME=$folder/state XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data
export XDG_RUNTIME_DIR=$folder/run HOME=$folder WAYLAND_DISPLAY=test QT_QPA_PLATFORM=wayland
unset DISPLAY
weston --backend=headless-backend.so --use-pixman --width=1400 --height=900 --socket=test --debug \
    --no-config >compositor 2>&1 &

cat >red.metal <<'TEXT'
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(1.0, 0.0, 0.25, 1.0);
}
TEXT
until [ -S run/test ]; do sleep 0.1; done
"$PLAYER" red.metal 2>said &
player=$!

# The pixels of the screen that have the picture's colour, of which the picture has about 290,000.
drawn() {
    rm -f wayland-screenshot*.png
    weston-screenshooter >/dev/null 2>&1
    ffmpeg -v error -i wayland-screenshot*.png -f rawvideo -pix_fmt rgb24 - | od -An -v -w3 -tx1 |
        grep -c 'ff 00 40'
}
end=$((SECONDS + 60))
until [ "$(drawn)" -gt 200000 ]; do
    [ $SECONDS -lt $end ] || { echo "The picture is not drawn."; break; }
    sleep 0.5
done
[ -z "${KEEP:-}" ] || cp wayland-screenshot*.png "$KEEP/wayland.png"

kill -TERM $player
wait $player
[ ! -s said ] || { echo "The player said:"; cat said; exit 1; }
[ $SECONDS -lt $end ]
