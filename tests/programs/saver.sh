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
echo 'float4 shade(' >broken.metal
expect 1 "" saver install broken.metal
[ ! -e home/data/tarnwick/savers/broken.saver ] || complain 'a saver that does not compile' install
finish
