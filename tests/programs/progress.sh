# Long work is seen to go on: on a terminal by one line of it, whatever its width.
. "$PROMISES/promises.sh"
{ "$TARNWICK" devices && command -v script; } >out 2>err || exit 77
export TERM=xterm
# An episode that takes some seconds to draw on this machine, without the time that the driver takes
# to compile it.
rounds=2000
took=0
until [ $took -ge 1500 ] || [ $rounds -ge 50000 ]; do
    rounds=$((rounds * 2))
    cat >slow.metal <<TEXT
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float a = uv.x;
    for (int i = 0; i < $rounds; i++) a += sin(uv.y * i + a);
    return float4(fract(a), uv, 1.0);
}
TEXT
    expect 0 '' still slow.metal -o a.png --size 8x8
    began=$(date +%s%N)
    expect 0 '' still slow.metal -o a.png --size 512x256
    took=$((($(date +%s%N) - began) / 1000000))
done
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
shown 24 still slow.metal -o a.png --size 512x256
grep -q -x 'Drawing slow.metal, [0-9]* s' lines || complain 'no word while drawing' still
shown 60 sheet slow.metal slow.metal -o a.png --size 256x128
grep -q -x 'Still 2 of 2: Drawing slow.metal, [0-9]* s' lines || complain 'no number' sheet
shown 60 export slow.metal -o a.mp4 --size 96x48 --duration 1
grep -q '^\[#*\.*\] Frame [0-9]* of 30, ' lines || complain 'no bar' export
# For a program: JSON, a line each.
TARNWICK_PROGRESS=json "$TARNWICK" sheet slow.metal slow.metal -o a.png --size 256x128 2>lines
grep -q -x '{"part":"Still 2 of 2","doing":"Drawing slow.metal","seconds":[0-9.]*}' lines || complain 'no JSON' sheet
TARNWICK_PROGRESS=json "$TARNWICK" export slow.metal -o a.mp4 --size 96x48 --duration 1 2>lines
grep -q -x '{"unit":"Frame","done":[0-9]*,"goal":30,"seconds":[0-9.]*}' lines || complain 'no count' export
finish
