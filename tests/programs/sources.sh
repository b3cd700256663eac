# A file that is no text of reasonable length is refused in one sentence that names it.
. "$PROMISES/promises.sh"
mkdir folder
head -c 100000 "$TARNWICK" >binary
printf 'float x;\0' >zero
printf 'float \377 x;' >latin
yes '// one hundred megabytes of text' | head -c 100000000 >long.metal
for command in meta check assemble msl; do
    expect 2 '^tarnwick: missing.metal cannot be read: No such file or directory.$' $command missing.metal
    expect 2 '^tarnwick: folder is a folder' $command folder
    expect 2 '^tarnwick: long.metal is longer than the 8 MiB' $command long.metal
    expect 2 '^tarnwick: /dev/zero is longer than the 8 MiB' $command /dev/zero
done
for command in meta assemble msl; do
    for file in binary zero latin; do
        expect 1 "^tarnwick: $file is not text in UTF-8.$" $command $file
    done
    expect 1 '^zero:1:9: error: byte 0x00 is not text' $command zero
    expect 1 '^latin:1:7: error: byte 0xFF is not UTF-8' $command latin
done
finish
