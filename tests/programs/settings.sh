# Every command that draws or hears uses the settings document and prints its errors.
. "$PROMISES/promises.sh"
(episode && echo 'float2 sound(float t, constant Params& p) { return p.green * sin(3000.0 * t); }') >e.metal
settings() { # VALUES TRACKS
    echo '{"name": "E", "values": {'"$1"'}, "keys": {"tracks": {'"$2"'}}}'
}
# said PATTERN: the last command's standard error has such a line.
said() {
    grep -q -e "$1" err || complain "not said: $1" "$(cat err)"
}
track='"red": [{"time": 0, "value": 0, "ease": "linear"}, {"time": 4, "value": 1, "ease": "hold"}]'
size='--size 16x16'

# A document that cannot be read is an error with its place; no part of it is used.
settings '"red": 1,' "$track" >e.json
for command in 'still e.metal -o a.png' 'sheet e.metal -o a.png' 'export e.metal -o a.mp4' \
    'loop e.metal --around 1' 'variations e.metal --seed 1 --count 1' 'sound e.metal -o a.wav' \
    'spectrum e.metal --time 1' 'walkthrough e.metal --stages e.metal -o a.mp4'; do
    expect 2 '^tarnwick: e.json holds no settings: Line 1, column 35 is not JSON: ' $command
done
expect 2 'none.json cannot be read' still e.metal -o a.png --settings none.json
expect 2 'settings and --no-settings exclude' still e.metal -o a.png --settings e.json --no-settings
echo '{"tracks":{}}' >tracks.json
expect 2 'tracks.json holds no settings: The document has no "name", no "values" and no "keys".$' \
    still e.metal -o a.png --settings tracks.json
have ! -e a.png
"$TARNWICK" devices >out 2>err || exit 77

expect 0 '' still e.metal -o plain.png $size --no-settings
have ! -s err
expect 0 '' still e.metal -o wanted.png $size --no-settings --set red=0.5 --set green=0.25
settings '"green": 0.25, "red": 1' "$track" >e.json
expect 0 '' still e.metal -o a.png $size --time 2
said '^tarnwick: The settings are read from e.json; --no-settings ignores them.$'
cmp -s a.png wanted.png || complain 'the document beside it is not used' still
cp e.json other.json
expect 0 '' still e.metal -o a.png $size --time 2 --settings other.json
cmp -s a.png wanted.png || complain 'another document is not used' still
have ! -s err
# --set goes before the document's keys, the keys of --keys before --set.
expect 0 '' still e.metal -o a.png $size --time 4 --set red=0.5
cmp -s a.png wanted.png || complain '--set does not go before the document' still
expect 0 '' still e.metal -o a.png $size --time 2 --no-settings --set green=0.25 --keys e.json
cmp -s a.png wanted.png || complain 'the keys of settings are no keys' still

# Values that do not fit are printed and clamped; the work goes on.
expect 0 '' still e.metal -o wanted.png $size --no-settings --set red=1
settings '"red": 3.4028235e38, "blue": 1' '"gone": []' >e.json
expect 0 '' still e.metal -o a.png $size
said '^tarnwick: e.json: red goes from 0 to 1; 3.4028235e+38 counts as 1.$'
said '^tarnwick: e.json: e.metal declares no parameter "blue"; it declares red, green.$'
cmp -s a.png wanted.png || complain 'not clamped' still
expect 0 '' still e.metal -o a.png $size --no-settings --set red=99
said '^tarnwick: --set: red goes from 0 to 1; 99 counts as 1.$'
cmp -s a.png wanted.png || complain 'not clamped' still

# A file of another kind beside it, such as a list of chapters, stops nothing.
cp tracks.json e.json
expect 0 '' still e.metal -o a.png $size
said '^tarnwick: e.json holds no settings: .* It is ignored.$'
cmp -s a.png plain.png || complain 'another picture' still

# The other commands give the same result as with the same values on the command line.
settings '"green": 0.75' "$track" >e.json
movie='--size 32x32 --duration 0.2'
same() { # OUT WORD...: with the document as with its values and keys on the command line
    made=$1
    shift
    expect 0 '' "$@" -o "$made"
    said 'settings are read from e.json'
    mv "$made" wanted
    expect 0 '' "$@" -o "$made" --no-settings --set green=0.75 $keys
    cmp -s "$made" wanted || complain 'the settings are not used' "$@"
    expect 0 '' "$@" -o "$made" --no-settings
    cmp -s "$made" wanted && complain 'the settings change nothing' "$@"
}
keys=
same a.wav sound e.metal --duration 0.1
keys='--keys e.json'
same a.mp4 export e.metal $movie
same b.mp4 variations e.metal --seed 3 --count 2 $movie
same c.mp4 walkthrough e.metal --stages e.metal --size 320x180 --page-seconds 0.1
expect 0 '' sheet e.metal -o plain.png $size --no-settings
expect 0 '' sheet e.metal -o a.png $size
cmp -s a.png plain.png && complain 'the settings change nothing' sheet
# Keys move a parameter in every variation alike, so only the other one is varied, around its value.
expect 0 'green 0.75$' variations e.metal --seed 3 --count 1 --spread 0
expect 0 '^level ' spectrum e.metal --time 1
# Each still of the search for a loop has the keys' values of its time: up and down in 1.5 s.
settings '' '"red": [{"time": 0, "value": 0, "ease": "linear"}, {"time": 0.7, "value": 1, "ease": "linear"},
    {"time": 1.5, "value": 0, "ease": "linear"}, {"time": 2.2, "value": 1, "ease": "hold"}]' >e.json
expect 0 '^1.5 seconds: 15 frames' loop e.metal --around 1.4 --fps 10
expect 0 '' export e.metal -o a.mp4 --size 32x32 --find-loop 1.4
expect 0 '' export e.metal -o b.mp4 --size 32x32 --duration 1.5
cmp -s a.mp4 b.mp4 || complain 'the keys are not searched with' export
finish
