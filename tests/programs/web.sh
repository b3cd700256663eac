# Episodes become pages in a new folder; an error leaves nothing behind.
. "$PROMISES/promises.sh"
(echo '// @episode 3 <b>Two</b> "colours"' && episode) >e.metal
(echo '// @grid 4
struct Vertex { float4 position [[position]]; };
Vertex corner(float2 grid, constant Uniforms& u, constant Params& p) { return Vertex{float4(grid, 0.5, 1.0)}; }
float4 shade(Vertex v, constant Uniforms& u, constant Params& p) { return float4(1.0); }') >'a grid.metal'
expect 0 '^page/index.html$' web e.metal -o page
have "$(find page -type f | sort | tr '\n' ' ')" = 'page/e.json page/index.html page/tarnwick-episode.js '
grep -q '<title>&lt;b&gt;Two&lt;/b&gt; &quot;colours&quot;</title>' page/index.html || complain 'no title' web
expect 0 '^one/index.html$' web e.metal -o one --single-file --set red=0.75
have "$(find one -type f)" = one/index.html
have "$(gzip -9c page/tarnwick-episode.js | wc -c)" -lt 40000
have "$(gzip -9c one/index.html | wc -c)" -lt 150000
expect 0 '^both/a grid.html$' web e.metal 'a grid.metal' -o both
grep -q ' href="a%20grid.html">' both/index.html || complain 'no address' web
python3 -c '
import json
document = json.load(open("page/e.json"))
assert [param["value"] for param in document["params"]] == [0.25, 0.5]
assert set(document["functions"]) == {"tw_vertex", "tw_fragment"}
document = json.load(open("both/a grid.json"))
assert document["kind"] == "grid" and document["grid"] == 4
' || complain 'another document' web
expect 2 '^tarnwick: page already exists and is not empty.$' web e.metal -o page
expect 2 '^tarnwick: --settings is for one episode, not for 2.$' \
    web e.metal 'a grid.metal' -o none --settings s.json
mkdir other && cp e.metal other
expect 2 'must have different names' web e.metal other/e.metal -o none
cp e.metal index.metal
expect 2 '^tarnwick: index.metal must have another name' web e.metal index.metal -o none
sed 's/return/constexpr sampler s(address::clamp_to_zero); return u.frame > 0 ? in.channel0.sample(s, uv) :/; s/Params& p)/Params\& p, Inputs in)/' e.metal >zero.metal
expect 0 '^zero/index.html$' web zero.metal -o zero
grep -q 'sampleWithBorder(.*"u":"clamp-to-edge"' zero/zero.json || complain 'no border in the text' web
sed 's/return/return simd_is_helper_thread() ? 1 :/' e.metal >helper.metal
expect 1 'WGSL has no simd_is_helper_thread' web helper.metal -o none
(cat e.metal && echo 'float x = y;') >bad.metal
expect 1 '^tarnwick: bad.metal does not compile.$' web bad.metal -o none
expect 2 '-o FOLDER is required' web e.metal
have ! -e none -a "$(find . -name '*.partial' | wc -l)" = 0
finish
