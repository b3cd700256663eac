#!/usr/bin/env bash
# The player on a display of its own (Xvfb), by keyboard and mouse: opens an episode, makes an error
# and mends it, drags a slider, adds a key, saves a snapshot, fills the display, exports a movie,
# takes dropped files and quits. Its pictures are compared with each other and with stills.
#
# TARNWICK, DRAGGER: other programs.
. "$(dirname "$0")/player.sh" Xvfb xdotool
export QT_QPA_PLATFORM=xcb
width=1376 height=868 # the size of the window, and room for a frame
Xvfb -displayfd 3 -screen 0 ${width}x${height}x24 3>display 2>/dev/null &
until [ -s display ]; do sleep 0.1; done
DISPLAY=:$(cat display)
export DISPLAY

shots=0
# shot FILE [X Y WIDTH HEIGHT]: a part of the screen.
shot() {
    ffmpeg -v error -y -f x11grab -draw_mouse 0 -video_size "${4:-$width}x${5:-$height}" \
        -i "$DISPLAY+${2:-0},${3:-0}" -frames:v 1 -pix_fmt rgb24 "$1"
    if [ -n "${KEEP:-}" ]; then
        shots=$((shots + 1))
        cp "$1" "$KEEP/$(printf %02d $shots)-$1"
    fi
}

color() { # X Y
    ffmpeg -v error -f x11grab -draw_mouse 0 -video_size 1x1 -i "$DISPLAY+$1,$2" -frames:v 1 \
        -f rawvideo -pix_fmt rgb24 - | od -An -tx1 | tr -d ' \n'
}

is_color() { [ "$(color "$1" "$2")" = "$3" ]; }
same_problems() { shot problems.png 0 600 $width 140 && cmp -s problems.png "$1"; }
other_problems() { ! same_problems "$1"; }
window() { xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1; }
has_window() { [ -n "$(window "$1")" ]; }

# to NAME KEY...: presses keys in the window whose title matches.
to() {
    comes 20 has_window "$1" || { complain "There is no window $1."; return; }
    xdotool windowfocus --sync "$(window "$1")" key "${@:2}"
}
main='^gradient'

cat >gradient.metal <<'TEXT'
// @length 1
// @param blue 0.25 0 1 How blue
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = uv.x < 0.5 ? float2(1.0, 0.0) : uv;
    return float4(q, p.blue, 1.0);
}
TEXT

play gradient.metal
x=560 y=300 # in the left half of the picture
comes 60 is_color $x $y ff0040 || { complain "The episode is not drawn."; shot screen.png; }

# An error is listed while the last program plays. Without it the list is as before.
shot before.png 0 600 $width 140
xdotool mousemove 200 300 click 1 key ctrl+End
xdotool type 'vec3 v;'
comes 30 other_problems before.png || complain "The error is not listed."
is_color $x $y ff0040 || complain "The picture is lost during an error."
shot screen.png
for _ in 1 2 3 4 5 6 7; do xdotool key BackSpace; done
comes 30 same_problems before.png || complain "The mended error is still listed."

# The first slider is in the upper right.
for row in 64 70 76 82; do
    xdotool mousemove 1109 $row mousedown 1 mousemove 1150 $row mousemove 1225 $row mouseup 1
    comes 2 is_color $x $y ff00ff && break
done
comes 5 is_color $x $y ff00ff || complain "Dragging the slider does not change the picture."
shot screen.png

# The diamond beside the slider makes a key; saving writes the settings beside the text.
xdotool mousemove 1305 "$row" click 1
to "$main" ctrl+s
comes 10 grep -qs '"value": 1' gradient.json || complain "The key is not saved."

# agree A B: the pictures differ by what scaling and rounding change, at most.
agree() {
    local said
    said=$(ffmpeg -v error -i "$1" -i "$2" -lavfi "psnr=stats_file=-" -f null - 2>&1)
    awk -v found="$said" 'BEGIN { split(found, part, "psnr_avg:"); split(part[2], n, " ")
                                  exit !(n[1] == "inf" || n[1] + 0 >= 35) }'
}

# The picture alone on the display is the still of that size.
"$TARNWICK" still gradient.metal --size ${width}x${height} -o still.png >/dev/null 2>&1
is_full() { shot full.png && agree full.png still.png; }
to "$main" F11
comes 20 is_full || complain "The picture on the whole display is not the still."
xdotool key Escape
comes 10 same_problems before.png || complain "Escape does not leave the whole display."

# The list of commands starts a snapshot; its dialog takes the name.
to "$main" ctrl+shift+p
comes 10 has_window '^Commands' && xdotool windowfocus --sync "$(window '^Commands')"
xdotool type 'save snapshot'
shot screen.png
xdotool key Return
comes 10 has_window napshot || complain "There is no dialog for the snapshot."
xdotool windowfocus --sync "$(window napshot)" type "$folder/snapshot.png"
xdotool key Return
comes 20 test -s snapshot.png || complain "There is no snapshot."
size=$(ffprobe -v error -show_entries stream=width,height -of csv=p=0:s=x snapshot.png)
"$TARNWICK" still gradient.metal --size "$size" -o still.png >/dev/null 2>&1
agree snapshot.png still.png || complain "The snapshot of $size is not the still."

# An export of half the size, with the name that the dialog proposes.
to "$main" ctrl+shift+e
comes 10 has_window '^Export movie' || complain "There is no dialog for an export."
shot screen.png
xdotool windowfocus --sync "$(window '^Export movie')" key alt+d
sleep 0.5
xdotool key Return
is_movie() { [ "$(ffprobe -v error -count_packets -show_entries stream=width,nb_read_packets \
    -of csv=p=0 gradient.mp4 2>/dev/null)" = 960,60 ]; }
comes 90 is_movie || complain "There is no movie of 60 frames."
shot screen.png

# drag FILE: from another program onto the picture.
drag() {
    "$DRAGGER" "$1" >dragged &
    local dragger=$!
    comes 10 has_window '^Drag source' || complain "There is no source of drags."
    sleep 0.5
    xdotool mousemove $((width - 50)) $((height - 50)) mousedown 1
    for step in 1 2 3 4 5; do
        xdotool mousemove $((width - 50 - step * (width - 50 - x) / 5)) \
            $((height - 50 - step * (height - 50 - y) / 5))
        sleep 0.2
    done
    # On a busy machine the drag follows the pointer late, and would end above another part of the window.
    for step in 1 0 1 0; do
        xdotool mousemove $((x + step)) $y
        sleep 0.3
    done
    xdotool mouseup 1
    comes 10 grep -qs copied dragged || complain "$1 is not taken."
    kill $dragger
    wait $dragger 2>/dev/null
}

# An episode that is dropped opens, and a picture becomes its channel 0.
cat >other.metal <<'TEXT'
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    return float4(0.0, in.channel(0, uv).r, 0.25, 1.0);
}
TEXT
drag other.metal
main='^other'
comes 30 is_color $x $y 000040 || { complain "The episode that was dropped is not drawn."; shot screen.png; }
drag snapshot.png
comes 30 is_color $x $y 00ff40 || complain "The picture that was dropped is not channel 0."
shot screen.png

to "$main" ctrl+q
finish 0
