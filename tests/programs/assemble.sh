# The program of an episode, in full, with a newline at its end, and the same through a pipe.
. "$PROMISES/promises.sh"
for text in "$PROMISES"/../TarnwickCore/programs/*.metal.txt; do
    expect 0 'tw_fragment' assemble "${text%.txt}"
    { cat "$text" && echo; } | cmp -s - out || complain "differs from $text" assemble "${text%.txt}"
done
episode >e.metal
cat e.metal | "$TARNWICK" assemble /dev/stdin >piped 2>err || complain 'a pipe is refused' assemble
"$TARNWICK" assemble e.metal | cmp -s - piped || complain 'a pipe changes the text' assemble
"$TARNWICK" assemble e.metal >/dev/full 2>err && complain 'a full disk goes unseen' assemble
finish
