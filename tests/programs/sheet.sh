# A sheet has a place for each episode, in the order of their numbers; an error is one sentence.
. "$PROMISES/promises.sh"
"$TARNWICK" devices >out 2>err || exit 77
(echo '// @episode 2 B' && episode) >a.metal
(echo '// @episode 1 A' && episode | sed 's/0.25/0.75/') >b.metal
expect 0 '' sheet a.metal b.metal -o ab.png --size 64x36 --columns 2
expect 0 '' sheet b.metal a.metal -o ba.png --size 64x36 --columns 2
cmp -s ab.png ba.png || complain 'the order of the names counts' sheet
# 2 * (64 + 12) + 12 by 36 + 26 + 2 * 12 pixels, in the file's header.
[ "$(head -c 24 ab.png | tail -c 8 | od -An -tu1 | tr -s ' ')" = ' 0 0 0 164 0 0 0 86' ] ||
    complain 'not 164 by 86' sheet
# An episode without a title is labelled by its file's name.
episode >one.metal
episode >two.metal
expect 0 '' sheet one.metal -o one.png --size 64x36
expect 0 '' sheet two.metal -o two.png --size 64x36
cmp -s one.png two.png && complain 'one label for two files' sheet
expect 2 'EPISODE... is required' sheet -o c.png
expect 2 'OUT.png is required' sheet a.metal
expect 2 'must be a whole number from 1 to 100, not "0"' sheet a.metal -o c.png --columns 0
expect 2 'The sheet would have 18036x59 pixels; at most 16384 are allowed in width and height.' \
    sheet a.metal b.metal -o c.png --columns 2 --size 9000x9
(episode && echo 'float x = y;') >bad.metal
expect 1 '^tarnwick: bad.metal does not compile.$' sheet bad.metal -o c.png --size 64x36
have ! -e c.png
finish
