# A signal ends every command within two seconds, also where a loop of the episode never ends, and
# nothing unfinished is left.
. "$PROMISES/promises.sh"
"$TARNWICK" devices >out 2>err || exit 77
export TMPDIR="$folder/tmp"
mkdir tmp work
loop='float x = seed; for (int i = 0; x > -1.0; i++) x = fract(x * 1.37 + 0.1); return x;'
shade='float4 shade(float2 uv, constant Uniforms& u, constant Params& p)'
echo "float endless(float seed) { $loop }
$shade { return endless(uv.x); }" >picture.metal
echo "float endless(float seed) { $loop }
float2 sound(float t, constant Params& p) { return t < 20.0 ? 0.0 : endless(t); }
$shade { return 0.5; }" >sound.metal

# begin WORD...: tarnwick WORD... works beside the others.
processes=
begin() {
    (cd work && exec "$TARNWICK" "$@") >>out 2>>err &
    processes="$processes $!"
}
begin still ../picture.metal -o a.png
begin export ../picture.metal -o a.mp4 --duration 1
begin sound ../sound.metal -o a.wav --start 60 --duration 20000
begin variations ../picture.metal --seed 1 --count 2 --sheet b.png
# They work for a while, then SIGTERM ends them. A frame here takes the CPU a minute, so ten seconds
# are a difference on a busy machine as well.
sleep 4
began=$(date +%s)
for process in $processes; do
    kill -TERM "$process"
done
for process in $processes; do
    wait "$process"
    met=$?
    [ $met = 143 ] || complain "status $met, not 143" "process $process of$processes"
done
[ $(($(date +%s) - began)) -le 10 ] || complain 'they did not end' "$processes"
[ -z "$(ls -A work tmp | grep -v :)" ] || complain "$(ls -A work tmp) is left" "$processes"
# The first frame whose loop was ended is told of, long before the movie is done.
"$TARNWICK" export picture.metal -o a.mp4 --size 32x32 --duration 100 2>err >out &
process=$!
tries=0
until grep -q 'ran for too long' err || [ $tries = 300 ]; do
    sleep 0.1
    tries=$((tries + 1))
done
[ $tries -lt 300 ] || complain 'the loop is not told of' export
kill -TERM $process
wait $process
have ! -e a.mp4
finish
