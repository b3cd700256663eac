#!/usr/bin/env bash
# The X server ends while the player has unsaved work: the player says so and ends, with a draft of
# the last letter that was typed.
. "$(dirname "$0")/player.sh" Xvfb xdotool
export QT_QPA_PLATFORM=xcb
Xvfb -displayfd 3 -screen 0 1376x868x24 3>display 2>/dev/null &
server=$!
until [ -s display ]; do sleep 0.1; done
DISPLAY=:$(cat display)
export DISPLAY

cat >red.metal <<'TEXT'
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(1.0, 0.0, 0.25, 1.0);
}
TEXT
play red.metal
window() { xdotool search --onlyvisible --name '^red' 2>/dev/null | head -n 1; }
has_window() { [ -n "$(window)" ]; }
comes 60 has_window || complain "There is no window."
xdotool windowfocus --sync "$(window)" mousemove 200 300 click 1 key ctrl+End
xdotool type '// first'
has_draft() { grep -qsF "$1" state/tarnwick/drafts/*/draft.json; }
comes 20 has_draft '// first' || complain "There is no draft."

# Less than the second after which a change is kept. The key is in the window once it is drawn.
xdotool type ' last'
sleep 0.3
kill -KILL $server
status=0
wait $player || status=$?
[ $status = 1 ] || complain "The player ends with status $status."
grep -q '^tarnwick-player: The connection to the display broke' said ||
    { complain "The player does not say why it ends:"; cat said; }
has_draft '// first last' || complain "The draft is not of the last letter."
[ $failures = 0 ]
