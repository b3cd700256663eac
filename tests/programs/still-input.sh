# An error of a still is one sentence, and no file is changed.
. "$PROMISES/promises.sh"
episode >e.metal
printf '\211PNG\r\n\032\nold' >out.png
cp out.png old.png
for size in 0x0 100000x100000 64 64x 64x-4 64X48 x 64x48x2 ''; do
    expect 2 '^tarnwick: --size must be WIDTHxHEIGHT, each from 1 to 16384 pixels, not "' \
        still e.metal -o out.png --size "$size"
done
expect 2 'OUT.png is required' still e.metal
expect 2 'declares no parameter "blue"; it declares red, green.' still e.metal -o out.png --set blue=1
expect 2 'The value of red must be a number, not "1,5"' still e.metal -o out.png --set red=1,5
expect 2 'The value of red must be a number, not "inf"' still e.metal -o out.png --set red=inf
expect 2 'must be NAME=VALUE' still e.metal -o out.png --set red
expect 2 'must be a number of seconds' still e.metal -o out.png --time soon
expect 2 'must be a number of seconds' still e.metal -o out.png --time -1
expect 2 'must be a whole number' still e.metal -o out.png --frame 4294967296
echo '{"tracks":{"red":[{"time":0}]}}' >keys.json
expect 2 '^tarnwick: keys.json holds no keys: Key 1 of "red" has no "value".$' \
    still e.metal -o out.png --keys keys.json
expect 2 'none.json cannot be read' still e.metal -o out.png --keys none.json
(episode && echo 'float x = y;') >bad.metal
expect 1 "^bad.metal:6:11: error: " still bad.metal -o out.png
expect 1 'none/out.png cannot be written: No such file' still e.metal -o none/out.png --size 8x8
# Where the output cannot be written is found before the episode is compiled.
expect 1 '^tarnwick: none/out.png cannot be written: No such file' still bad.metal -o none/out.png
have "$(wc -l <err)" = 1
mkdir folder.png
expect 2 'folder.png is a folder' still e.metal -o folder.png --size 8x8
cmp -s out.png old.png || complain 'out.png changed' still
[ "$(ls *.partial folder.png/* 2>/dev/null)" = '' ] || complain 'a part is left' still
finish
