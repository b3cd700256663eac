# A movie that two workers export in parts is the movie that is exported in one go.
. "$PROMISES/promises.sh"
"$TARNWICK" devices >out 2>err || exit 77
"$TARNWICK" export --help >out 2>err || { echo 'There is no tarnwick export yet.' && exit 77; }
{ command -v parallel && command -v ffmpeg; } >out || { echo 'No parallel or ffmpeg.' && exit 77; }
cat >'an episode.metal' <<'TEXT'
// @param speed 1 0 4
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(fract(uv + u.time * p.speed), 0.5 + 0.5 * sin(u.time), 1.0);
}
float2 sound(float t, constant Params& p) { return float2(sin(t * 2000.0), sin(t * 1000.0)); }
TEXT
echo '{"name": "", "values": {"speed": 2}, "keys": {"tracks": {}}}' >'an episode.json'
farm() {
    PART=10 HOSTS=2/: "$PROMISES/../../scripts/farm-parallel" "$@" >out 2>err
}
hashes() {
    ffmpeg -v error -i "$1" -c copy -f framehash -
}
export TARNWICK
expect 0 '' export 'an episode.metal' --preset site --duration 21 --size 64x36 -o whole.mp4
farm site 21 'an episode.metal' farmed.mp4 --size 64x36 || complain 'the farm fails' export
hashes whole.mp4 >whole
hashes farmed.mp4 | cmp -s - whole || complain 'another movie' export
have -s whole
have ! -e farmed.mp4.parts
if ! command -v sbatch >out; then
    "$PROMISES/../../scripts/farm-slurm" site 21 'an episode.metal' slurm.mp4 >out 2>err
    have $? = 1
    grep -q 'The program "sbatch" is not installed' err || complain 'no word about Slurm' export
    have ! -e slurm.mp4.parts
fi
# An interrupted export resumes; a wrong command line is an error.
mkdir on.mp4.parts
cp whole.mp4 on.mp4.parts/part-000002.mp4
farm site 21 'an episode.metal' on.mp4 --size 64x36 && complain 'a part is made anew' export
have -e on.mp4.parts/part-000000.mp4 -a -e on.mp4.parts/part-000001.mp4 -a ! -e on.mp4
for words in 'nosuch 5' 'site x'; do
    # shellcheck disable=SC2086
    farm $words 'an episode.metal' bad.mp4 && complain "taken: $words" export
done
have "$(wc -l <err)" = 1 -a ! -e bad.mp4.parts
finish
