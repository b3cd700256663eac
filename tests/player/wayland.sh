#!/usr/bin/env bash
# The player under a Wayland compositor without a screen: the picture is drawn in the window.
. "$(dirname "$0")/player.sh" weston weston-screenshooter
export WAYLAND_DISPLAY=test QT_QPA_PLATFORM=wayland
weston --backend=headless-backend.so --use-pixman --width=1400 --height=900 --socket=test --debug \
    --no-config >compositor 2>&1 &

cat >red.metal <<'TEXT'
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(1.0, 0.0, 0.25, 1.0);
}
TEXT
until [ -S run/test ]; do sleep 0.1; done
play red.metal

# The pixels of the screen that have the picture's colour, of which the picture has about 290,000.
drawn() {
    rm -f wayland-screenshot*.png
    weston-screenshooter >/dev/null 2>&1
    ffmpeg -v error -i wayland-screenshot*.png -f rawvideo -pix_fmt rgb24 - | od -An -v -w3 -tx1 |
        grep -c 'ff 00 40'
}
is_drawn() { [ "$(drawn)" -gt 200000 ]; }
comes 60 is_drawn || complain "The picture is not drawn."
[ -z "${KEEP:-}" ] || cp wayland-screenshot*.png "$KEEP/wayland.png"

kill -TERM $player
finish 143
