# A walkthrough shows the lines that each version adds; an error has its stage and line.
. "$PROMISES/promises.sh"
shade='float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {'
cat >1.metal <<TEXT
// A red field
// Nothing yet.
$shade
    return float4(1.0, 0.0, 0.0, 1.0);
}
TEXT
cat >e.metal <<TEXT
// @final All of it | Red and green.
$shade
    float green = uv.x; // brighter to the right
    return float4(1.0, green, 0.0, 1.0);
}
TEXT
expect 0 '^1/2  A red field$' walkthrough e.metal --stages 1.metal
for line in 'Nothing yet.' '2/2  All of it' 'Red and green.' 'page 1/1' "    $shade" \
    '  +     float green = uv.x;' 'Brighter to the right.'; do
    grep -qxF -e "$line" out || complain "no line: $line" walkthrough
done
expect 0 '"kind": "added"' walkthrough e.metal --json --stages 1.metal 1.metal
grep -q '"source": "e.metal"' out && [ "$(grep -c '"number"' out)" = 3 ] ||
    complain 'not three stages' walkthrough --json
NO_COLOR=1 expect 0 '"capacity"' walkthrough --stages 1.metal --json -- e.metal
expect 2 'missing.metal cannot be read' walkthrough e.metal --stages 1.metal missing.metal
expect 2 'at least 160 pixels' walkthrough e.metal --stages 1.metal --size 1920x100
expect 2 'stages requires a value, FILE...' walkthrough e.metal --stages --json
"$TARNWICK" devices >out 2>err || exit 77
expect 0 '^pages/stage-02-page-01.png$' walkthrough e.metal --stages 1.metal --pages pages --size 320x180
have "$(ls pages | wc -l)" = 2
sed 's/uv.x/uv.q/' e.metal >bad.metal
expect 1 '^tarnwick: Stage 1, bad.metal, does not compile: line 3: ' \
    walkthrough e.metal --stages bad.metal --pages none
have ! -e none
echo >file
expect 2 'file already exists and is not a folder' walkthrough e.metal --pages file --size 320x180
finish
