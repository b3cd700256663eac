# Links open where the program is installed: its entry is one that desktops take, and what it runs
# is there.
. "$PROMISES/promises.sh"
command -v desktop-file-validate >out || exit 77
"$CMAKE" --install "$BUILD" --prefix "$folder/installed" >out 2>err || complain 'not installed'
entry=installed/share/applications/tarnwick.desktop
desktop-file-validate $entry >out 2>err || complain 'no desktop entry'
have ! -s out
grep -q -x 'MimeType=x-scheme-handler/tarnwick;' $entry || complain 'no scheme'
grep -q -x 'Exec=tarnwick open %u' $entry || complain 'another command'
player=installed/share/applications/tarnwick-player.desktop
if [ -f $player ]; then
    desktop-file-validate $player >out 2>err || complain 'no desktop entry of the player'
    have ! -s out
    grep -q -x 'MimeType=x-scheme-handler/tarnwick;' $player || complain 'no scheme of the player'
    have -x installed/bin/tarnwick-player
fi
have -x installed/bin/tarnwick-saver
# The tree can be moved and read-only.
mv installed moved
chmod -R a-w moved
trap 'chmod -R u+w "$folder"; rm -rf "$folder"' EXIT
TARNWICK="$folder/moved/bin/tarnwick"
have -d moved/share/tarnwick/Tarnwick.saver
have -f moved/libexec/tarnwick/metal.pch
expect 2 'does not say which shader to open' open tarnwick://open
episode >e.metal
expect 0 '' check e.metal
finish
