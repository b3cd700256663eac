# Sound becomes a WAV file; without sound or length it is an error and nothing is written.
. "$PROMISES/promises.sh"
episode >silent.metal
sounding() {
    echo "float2 sound(float t, constant Params& p) { $1 }"
}
(episode && sounding 'return float2(p.red, -p.green);') >e.metal
expect 1 'silent.metal has no sound: it defines no float2 sound' sound silent.metal -o out.wav
expect 2 'OUT.wav is required' sound e.metal
for duration in 0 -1 nan inf 1e-9 22370 long ''; do
    expect 2 'duration ' \
        sound e.metal -o out.wav --duration "$duration"
done
expect 2 'start must be a number of seconds, at least 0, not "-1"' sound e.metal -o out.wav --start -1
expect 2 'declares no parameter "blue"' sound e.metal -o out.wav --set blue=1
have ! -e out.wav
"$TARNWICK" devices >out 2>err || exit 77
# Two samples: 44 bytes of header, then 16384 and -16384, 24575 and -16384.
numbers() { tail -c 8 "$1" | od -An -td2 | tr -s ' '; }
expect 0 '' sound e.metal -o a.wav --duration 0.00004 --set red=0.5
[ "$(numbers a.wav)" = ' 16384 -16384 16384 -16384' ] || complain 'other samples' sound
have "$(wc -c <a.wav)" = 52
have ! -s err
expect 0 '' sound e.metal -o b.wav --duration 0.00004 --start 5 --set red=0.75
[ "$(numbers b.wav)" = ' 24575 -16384 24575 -16384' ] || complain '--set changes nothing' sound
# Without options ten seconds from 0 on; what starts later equals that part of it.
(episode && sounding 'return float2(fract(t), t * 0.01);') >time.metal
expect 0 '' sound time.metal -o whole.wav
have "$(wc -c <whole.wav)" = 1920044
expect 0 '' sound time.metal -o part.wav --start 2 --duration 1
tail -c +384045 whole.wav | head -c 192000 >middle
tail -c +45 part.wav | cmp -s - middle || complain 'a part differs from the whole' sound
# What is beyond full scale is clipped; before its start a sound need not be a number.
(episode && sounding 'return float2(3.0 + 0.0 * sqrt(t), -1e38);') >loud.metal
expect 0 '' sound loud.metal -o loud.wav --duration 0.00004
[ "$(numbers loud.wav)" = ' 32767 -32767 32767 -32767' ] || complain 'not clipped' sound
# NaN and infinity are errors with their time, in any second and on either side.
cp a.wav old.wav
no_number() {
    (episode && sounding "return t < 1.25 ? float2(0.5) : $1;") >nan.metal
    expect 1 'The sound of nan.metal is not a finite number at 1.25 s.$' \
        sound nan.metal -o old.wav --duration 3
    expect 1 'not a finite number at 1.25 s.$' spectrum nan.metal --time 1.3
    cmp -s a.wav old.wav || complain 'written all the same' "$1"
    expect 0 '' sound nan.metal -o before.wav --duration 1.25
}
no_number 'float2(sqrt(-t), 0.0)'
no_number 'float2(0.0, 1.0 / (t - t))'
no_number 'float2(0.0, -exp(99.0 * t))'
(episode && sounding 'return y;') >bad.metal
expect 1 '^bad.metal:6:52: error: ' sound bad.metal -o bad.wav
have ! -e bad.wav
expect 1 'none/out.wav cannot be written: No such file' sound e.metal -o none/out.wav
finish
