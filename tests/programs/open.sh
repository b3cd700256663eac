# A link's shader is saved under its own name, with its origin, and replaces no file.
. "$PROMISES/promises.sh"
. "$PROMISES/local-service.sh"
serve
mkdir -p service/site/s/abc1 service/site/s/big service/site/s/latin service/site/x saved
episode >service/site/s/abc1/source.metal
cp service/site/s/abc1/source.metal service/site/x/y.metal
head -c 307201 /dev/zero | tr '\0' ' ' >service/site/s/big/source.metal
printf '\377' >service/site/s/latin/source.metal
link="tarnwick://open?src=$TARNWICK_SERVER/s"
export DISPLAY=
expect 0 '^s-abc1.metal$' open "$link/abc1/source.metal"
grep -q 'there is no display' err || complain 'nothing about the display' open
have "$(head -n 1 s-abc1.metal)" = '// @forked-from s/abc1'
tail -n +2 s-abc1.metal | cmp -s - service/site/s/abc1/source.metal || complain 'another text' open
expect 0 '^s-abc1 2.metal$' open "$link/abc1/source.metal"
ln -s nowhere 's-abc1 3.metal'
expect 0 '^s-abc1 4.metal$' open "$link/abc1/source.metal"
expect 0 '^saved/s-abc1.metal$' open "TARNWICK://OPEN?src=$TARNWICK_SERVER/s/abc1/source.metal" -o saved
expect 0 '^y.metal$' open "tarnwick://open?src=$TARNWICK_SERVER/x/y.metal"
cmp -s y.metal service/site/x/y.metal || complain 'an origin that it has not' open
expect 1 '^tarnwick: That file is over 300 KB' open "$link/big/source.metal"
expect 1 '^tarnwick: That file is not UTF-8 text' open "$link/latin/source.metal"
expect 1 '^tarnwick: Tarnweb answered 404 for that shader.$' open "$link/none/source.metal"
expect 2 'This is not a Tarnwick open link' open https://a.example/
expect 2 'does not say which shader to open' open tarnwick://open
expect 2 'the address is on a.example, not ' open tarnwick://open?src=https://a.example/a.metal
expect 1 'none cannot be written to: No such file' open "$link/abc1/source.metal" -o none
# Links to this machine are valid only if the service is on this machine.
address=$TARNWICK_SERVER
unset TARNWICK_SERVER
expect 2 'the address is not https' open "tarnwick://open?src=$address/s/abc1/source.metal"
have "$(echo s-big* s-latin* s-none*)" = 's-big* s-latin* s-none*'
# Where there are windows it is shown, by the program beside.
mkdir bin
cp "$TARNWICK" bin/tarnwick
printf '#!/bin/sh\necho "$#" "$1" >shown\n' >bin/tarnwick-saver
chmod +x bin/tarnwick-saver
DISPLAY=:77 bin/tarnwick open "tarnwick://open?src=$address/x/y.metal" --server "$address" >out
have "$(cat shown)" = "1 $(pwd)/y 2.metal"
rm shown
DISPLAY=:77 bin/tarnwick open "tarnwick://open?src=$address/x/y.metal" --server "$address" --no-play >out
have ! -e shown
grep -c token service/log >out && complain 'a token for all to see'
finish
