# A desktop finds what is installed: its entries, icons, types and metadata are valid, and the
# programs that they run are there.
. "$PROMISES/promises.sh"
command -v desktop-file-validate >out || exit 77
"$CMAKE" --install "$BUILD" --prefix "$folder/installed" >out 2>err || complain 'not installed'
share=installed/share
have -f $share/applications/tarnwick.desktop
grep -q -x 'Exec=tarnwick open %u' $share/applications/tarnwick.desktop || complain 'another command'
for entry in $share/applications/*.desktop; do
    desktop-file-validate "$entry" >out 2>err || complain "no desktop entry: $entry"
    have ! -s out
    grep -q 'x-scheme-handler/tarnwick;' "$entry" || complain "no scheme: $entry"
    have -f $share/icons/hicolor/48x48/apps/"$(sed -n 's/^Icon=//p' "$entry")".png
    have -x installed/bin/"$(sed -n 's/^TryExec=//p' "$entry")"
done
have -f $share/man/man1/tarnwick-still.1.gz -o -f $share/man/man1/tarnwick-still.1
have -f $share/bash-completion/completions/tarnwick -a -f $share/fish/vendor_completions.d/tarnwick.fish
have -f $share/zsh/site-functions/_tarnwick
if command -v appstreamcli >out; then
    for metadata in $share/metainfo/*.xml; do
        appstreamcli validate --no-net "$metadata" >out 2>err || complain "no metadata: $metadata"
    done
else
    echo 'appstreamcli is not installed; the metadata is not checked.'
fi
# Episodes have a type; a text of another kind has not.
if command -v update-mime-database >out && command -v gio >out; then
    mkdir -p type/mime/packages
    cp $share/mime/packages/tarnwick.xml type/mime/packages
    [ ! -f /usr/share/mime/packages/freedesktop.org.xml ] ||
        cp /usr/share/mime/packages/freedesktop.org.xml type/mime/packages
    XDG_DATA_HOME="$folder/type" update-mime-database "$folder/type/mime" >out 2>err || complain 'no type of episodes'
    have ! -s err
    episode >rose.metal
    echo text >rose.txt
    typeOf() { XDG_DATA_HOME="$folder/type" XDG_DATA_DIRS="$folder/none" gio info -a standard::content-type "$1" | sed -n 's/.*content-type: //p'; }
    have "$(typeOf rose.metal)" = text/x-tarnwick-episode
    have "$(typeOf rose.txt)" = text/plain
else
    echo 'update-mime-database or gio is not installed; the type is not tried.'
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
