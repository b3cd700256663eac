# A saver is installed with its values, found again, and removed without a leftover.
. "$PROMISES/promises.sh"
export HOME="$folder/home" XDG_DATA_HOME="$folder/home/data"
mkdir home
printf '// @param speed 1 0 2\n// @param hue 0.5 0 1\nfloat4 shade(float2 uv, constant Uniforms& u, constant Params& p) { return float4(p.hue); }\n' >rose.metal
echo '{"speed": 1.25, "hue": 9}' >values.json
printf 'programs: maze --root \\n\\\n\n' >home/.xscreensaver
cp home/.xscreensaver old
expect 0 "" saver install rose.metal --name 'Rose Two' --values values.json --set hue=0.75
bundle=home/data/tarnwick/savers/rose-two.saver
grep -q '"speed": 1.25' $bundle/Shader/saver.json || complain 'not the value of the document' install
grep -q '"hue": 0.75' $bundle/Shader/saver.json || complain 'not the value of --set' install
grep -q '"Rose Two".*/tarnwick-rose-two --root' home/.xscreensaver || complain 'not in the list' install
expect 0 "" saver list --json
grep -q '"id": "rose-two"' out || complain 'not listed' list
expect 0 '^rose-two	Rose Two' --complete 3 tarnwick saver preview ro
expect 2 "" saver preview nobody
expect 0 "" saver uninstall 'Rose Two'
cmp -s old home/.xscreensaver || complain 'another list' uninstall
[ "$(find home -type f | wc -l)" = 1 ] || complain 'files are left' uninstall
# One saver a name, also where names have the same letters.
list=home/.xscreensaver
for name in '日本' '月' '-x' "It's \"\$(touch ran)\`touch ran\`"; do
    expect 0 "" saver install rose.metal --name "$name"
done
have ! -e ran
have -d home/data/tarnwick/savers/saver-2.saver
[ "$(grep -c 'tarnwick-' $list)" = 4 ] || complain 'another number of savers' list
for launcher in home/data/tarnwick/savers/*.saver/tarnwick-*[!l]; do
    sh -n "$launcher" || complain "not a script: $launcher"
done
for name in '日本' '月' -x "It's \"\$(touch ran)\`touch ran\`"; do
    expect 0 "" saver uninstall -- "$name"
done
cmp -s old $list || complain 'another list' uninstall
expect 2 'is not text in UTF-8' saver install rose.metal --name "$(printf 'a\377')"
expect 2 'must not be empty' saver install rose.metal --name ' '
expect 2 'more than one line' saver install rose.metal --name "$(printf 'a\nb')"
echo 'float4 shade(' >broken.metal
expect 1 "" saver install broken.metal
[ ! -e home/data/tarnwick/savers/broken.saver ] || complain 'a saver that does not compile' install
finish
