# An episode is published with what the program draws of it, or with files; what stands in the way
# is said before anything is drawn or sent.
. "$PROMISES/promises.sh"
. "$PROMISES/local-service.sh"
{ "$TARNWICK" devices && command -v ffprobe; } >out 2>err || exit 77
serve
cat >e.metal <<'TEXT'
// @forked-from s/abc1
// @still 5
// @param red 0.1 0 1 How red
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(p.red, 0.5 + 0.5 * cos(u.time * 0.6981317), uv.x, 1.0);
}
TEXT
small='--size 48x32 --title Plasma'
expect 2 'title TEXT is required' share e.metal
expect 2 'licence must be one of cc-by-nc-sa-4.0, cc-by-4.0, mit, arr, not "gpl"' share e.metal --title A --licence gpl
expect 2 'visibility must be one of public, unlisted, private, not "all"' share e.metal --title A --visibility all
expect 2 'none.mp4 is not a file' share e.metal --title A --loop none.mp4
expect 2 'The title must be 1 to 80 characters' share e.metal --title ' '
echo 'neither a movie nor a picture' >text
"$TARNWICK" share e.metal --title '' --loop text --thumb text >out 2>err
have $? = 2
printf 'tarnwick: %s\n' 'The title must be 1 to 80 characters.' 'The loop is not an MP4 file.' \
    'The thumbnail is not a JPEG.' | cmp -s - err || complain 'other problems' share
expect 1 'You are not signed in' share e.metal --title A
expect 0 'preview/meta.json' share e.metal --title Plasma --size 48x32 --preview preview
echo approved >service/polls
expect 0 '' sign-in
# shellcheck disable=SC2086
{
    (cat e.metal && echo 'float x = y;') >bad.metal
    expect 1 '^bad.metal:7:11: error: ' share bad.metal $small
    grep -q shaders service/log && complain 'sent what cannot be' share
    expect 0 "^$TARNWICK_SERVER/s/abc123\$" share e.metal $small --description 'Two words' --licence mit --visibility unlisted
    leaksNothing share
}
asked 'POST /api/shaders token'
cmp -s e.metal service/shared/source || complain 'another source' share
[ "$(cat service/shared/meta)" = '{"description":"Two words","forkedFrom":"s/abc1","kind":"fragment","licence":"mit","params":[{"default":0.1,"detail":"How red","max":1,"min":0,"name":"red"}],"title":"Plasma","visibility":"unlisted"}' ] ||
    complain "other words: $(cat service/shared/meta)" share
# Its colour comes back after nine seconds.
[ "$(ffprobe -v error -select_streams v -show_entries stream=nb_frames,width,codec_name -of csv=p=0 service/shared/loop)" = h264,48,270 ] ||
    complain 'another movie' share
[ "$(ffprobe -v error -show_entries stream=codec_name,width,height -of csv=p=0 service/shared/thumb)" = mjpeg,48,32 ] ||
    complain 'another picture' share
# A preview, which needed no sign-in, has the same.
{ cmp preview/source.metal e.metal && cmp preview/loop.mp4 service/shared/loop && cmp preview/thumb.jpg service/shared/thumb; } >out ||
    complain 'another preview' share
grep -q '"title":"Plasma"' preview/meta.json || complain 'no words in the preview' share
expect 2 'preview already exists and is not empty' share e.metal --title A --preview preview
cp service/shared/loop l.mp4
cp service/shared/thumb t.jpg
printf '409 {"needsHandle":true}' >service/refusal
expect 1 'Choose a handle first. tarnwick handle NAME does that' share e.metal --title A --loop l.mp4 --thumb t.jpg
rm service/refusal service/shared/*
expect 0 '/s/abc123$' share e.metal --title A --loop l.mp4 --thumb t.jpg
{ cmp l.mp4 service/shared/loop && cmp t.jpg service/shared/thumb; } >out || complain 'other files' share

# cancelled PATTERN FILE WORD...: tarnwick share WORD... is ended once FILE is there, says so in one
# sentence that matches PATTERN, and leaves nothing behind. Its command line and environment hold no
# secret.
cancelled() {
    pattern=$1 sign=$2
    shift 2
    "$TARNWICK" share "$@" >out 2>err &
    process=$!
    tries=0
    until ls $sign >found 2>&1 || [ $tries = 200 ]; do
        sleep 0.05
        tries=$((tries + 1))
    done
    cat /proc/$process/cmdline /proc/$process/environ >holds 2>found
    kill -TERM $process # a shell keeps SIGINT from what runs beside it
    wait $process
    have $? = 143 # by the signal, as a shell expects
    grep -q -x "$pattern" err || complain 'not cancelled in a sentence' share "$@"
    grep -q -e "$token" holds && complain 'a secret in the command line' share "$@"
    leaksNothing share "$@"
    [ -z "$(ls tmp)" ] || complain 'something is left' share "$@"
}
export TMPDIR="$folder/tmp"
mkdir tmp
cancelled 'tarnwick: Export cancelled.' 'tmp/*/loop.mp4' e.metal --title A
rm service/log
touch service/hang
(sleep 0.5 && until grep -q shaders service/log; do sleep 0.05; done && touch arrived) &
cancelled 'tarnwick: It was cancelled.' arrived e.metal --title A --loop l.mp4 --thumb t.jpg
rm service/hang
finish
