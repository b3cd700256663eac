# The movie of variations shows one after another, each with its values, and has them as chapters.
. "$PROMISES/promises.sh"
"$TARNWICK" devices >out 2>err || exit 77
command -v ffprobe >out && command -v ffmpeg >out || exit 77
(episode && echo 'float2 sound(float t, constant Params& p) { return 0.1; }') >e.metal
series='--seed 5 --count 3 --duration 0.49 --spread 1'
format='--preset site --size 64x48'
expect 0 '' variations e.metal $series $format -o a.mp4 --chapters a.json
# 0.49 s are 15 frames of 30 a second.
"$TARNWICK" variations e.metal $series | sed '1d; s/   */|/g' >list
awk -F '|' '{ printf "%.6f|%s\n", (NR - 1) * 0.5, $3 }' list >expected
ffprobe -v error -show_entries chapter=start_time:chapter_tags=title -of compact=p=0:nk=1 a.mp4 >met
cmp -s met expected || complain "chapters: $(cat met)" variations
[ "$(sed 's/.*"duration":\([0-9.]*\).*/\1/' a.json)" = 1.5 ] || complain "$(cat a.json)" variations
streams() { ffprobe -v error -show_entries stream=codec_name -of csv=p=0 a.mp4 | tr '\n' ' '; }
case $(streams) in 'h264 aac '*) ;; *) complain "streams: $(streams)" variations ;; esac
# The eighth frame of each segment has the variation's red and green.
for place in 0 1 2; do
    met=$(ffmpeg -v error -i a.mp4 -vf "select=eq(n\,$((place * 15 + 7)))" -frames:v 1 -f rawvideo \
        -pix_fmt rgb24 - | head -c 2 | od -An -tu1)
    sed -n "$((place + 1))p" list | sed 's/.*green \([0-9.]*\), red \([0-9.]*\).*/\2 \1/' |
        awk -v met="$met" '{ split(met, is); for (i = 1; i < 3; i++)
            if ((is[i] - $i * 255) ^ 2 > 25) exit 1 }' ||
        complain "segment $place has the colour$met" variations
done
expect 0 '' variations e.metal $series $format -o a.mp4 --no-sound
case $(streams) in *aac*) complain "streams: $(streams)" variations ;; esac

cp a.mp4 before.mp4
for wrong in '--size 63x48' '--preset none' '--preset prores422' '--bitrate 0' '--duration 1e9' \
    '--sound --no-sound' '--sheet b.png' '--chapters a.mp4' '--count 300000'; do
    expect 2 '' variations e.metal $series $format -o a.mp4 $wrong
done
expect 1 '^tarnwick: none/a.mp4 cannot be written: No such file' variations e.metal $series \
    -o none/a.mp4
# Standard output holds the document and nothing else.
expect 0 '' variations e.metal $series $format -o a.mp4 --no-sound --json
have "$(head -c 1 out)" = '{'
grep -q '^a.mp4: ' err || complain 'nothing about what was made' variations
cp a.mp4 before.mp4
(episode && echo 'float x = y;') >bad.metal
"$TARNWICK" variations bad.metal $series $format -o a.mp4 2>err
have $? = 1
grep -q 'bad.metal does not compile' err || complain 'nothing about the mistake' variations
(episode && echo 'float2 sound(float t, constant Params& p) { return sqrt(0.25 - t); }') >nan.metal
expect 1 'nan.metal is not a finite number at' variations nan.metal $series $format -o a.mp4
cmp -s a.mp4 before.mp4 || complain 'an older movie is changed' variations
[ "$(ls)" = "$(printf '%s\n' a.json a.mp4 bad.metal before.mp4 e.metal err expected list met nan.metal out)" ] ||
    complain "what remains: $(ls)" variations
finish
