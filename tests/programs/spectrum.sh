# Prints the four levels of an episode's own sound, and draws its spectrum.
. "$PROMISES/promises.sh"
episode >silent.metal
(episode && echo 'float2 sound(float t, constant Params& p) {
    return t < 3.0 ? float2(0.0) : p.red * float2(sin(6283.18530718 * t)); }') >e.metal
expect 1 'silent.metal has no sound' spectrum silent.metal --time 1
expect 2 'time SECONDS is required' spectrum e.metal
expect 2 'time must be a number of seconds, at least 0, not "soon"' spectrum e.metal --time soon
for duration in 0 -1 nan; do
    expect 2 'above 0' spectrum e.metal --time 1 --duration "$duration" -o out.png
done
expect 2 'from 240x160 to 16384x16384 pixels, not "64x64"' spectrum e.metal --time 1 -o out.png --size 64x64
have ! -e out.png
"$TARNWICK" devices >out 2>err || exit 77
expect 0 '^level  0.000$' spectrum e.metal --time 2.9
# A sine of 1 kHz, 12 decibels below full scale; the window spreads it, by 1.8 decibels in all.
expect 0 '^mid    0.933$' spectrum e.metal --time 5 --set red=0.25
expect 0 '^high   0.000$' spectrum e.metal --time 5 --set red=0.25
expect 0 '^level  0.906$' spectrum e.metal --time 5 --set red=0.25
have ! -e out.png
expect 0 '^low ' spectrum e.metal --time 2.5 -o out.png --duration 1 --size 240x160
[ "$(head -c 24 out.png | tail -c 8 | od -An -tu1 | tr -s ' ')" = ' 0 0 0 240 0 0 0 160' ] ||
    complain 'not 240 by 160' spectrum
finish
