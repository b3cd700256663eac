# Long work is seen to go on: on a terminal by one line of it, whatever its width.
. "$PROMISES/promises.sh"
{ "$TARNWICK" devices && command -v script; } >out 2>err || exit 77
export TERM=xterm
# An episode that takes more than a second to draw on this machine, without the time that the driver takes to
# compile it.
slow() { # ROUNDS
    cat >slow.metal <<TEXT
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float a = uv.x;
    for (int i = 0; i < $1; i++) a += sin(uv.y * i + a);
    return float4(fract(a), uv, 1.0);
}
TEXT
    expect 0 '' still slow.metal -o a.png --size 8x8
}
# Processor time, which other programs do not lengthen: `spent`, milliseconds of all ended children.
spend() {
    times >times
    spent=$(awk 'NR == 2 { split($1, part, "m"); print int((part[1] * 60 + part[2]) * 1000) }' times)
}
slow 4000
spend
began=$spent
expect 0 '' still slow.metal -o a.png --size 512x256
spend
took=$((spent - began + 1))
rounds=$((4000 * 1250 * $(nproc) / took))
[ $rounds -le 50000 ] || rounds=50000
slow $rounds
episode >quick.metal
# shown WIDTH WORD...: what a terminal of that width gets to see, a line each time.
shown() {
    width=$1
    shift
    script -qec "stty cols $width; $TARNWICK $*" /dev/null </dev/null >typed 2>err
    have $? = 0
    tr '\r' '\n' <typed | sed 's/\x1b\[K//g' >lines
    awk -v width="$width" 'length($0) >= width { wide = 1 } END { exit wide }' lines ||
        complain "wider than $width" "$@"
}
shown 24 sheet quick.metal slow.metal -o a.png --size 256x128
grep -q -x "Still 2 of 2: Drawing s" lines || complain "no number" sheet
shown 60 export slow.metal -o a.mp4 --size 96x48 --duration 1
grep -q '^\[#*\.*\] Frame [0-9]* of 30, ' lines || complain 'no bar' export
# For a program: JSON, a line each.
TARNWICK_PROGRESS=json "$TARNWICK" sheet quick.metal slow.metal -o a.png --size 256x128 2>lines
grep -q -x '{"part":"Still 2 of 2","doing":"Drawing slow.metal","seconds":[0-9.]*}' lines || complain 'no JSON' sheet
finish
