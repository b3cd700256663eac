# The options of a compiler: macros, includes, versions, optimisation, documents, dependencies.
. "$PROMISES/promises.sh"
cat >macros.metal <<'TEXT'
#include <metal_stdlib>
using namespace metal;
#if __METAL_VERSION__ < 310
#error "version " VERSION
#endif
kernel void fill(device float* out [[buffer(0)]], uint i [[thread_position_in_grid]]) { out[i] = SIZE; }
TEXT
expect 1 "^macros.metal:6:98: error: use of undeclared identifier 'SIZE'" msl macros.metal
expect 0 '^kernel fill' msl -DSIZE=4 macros.metal
expect 0 '^kernel fill' msl -D SIZE macros.metal
expect 1 '^<defines>:1:14: note: expanded from macro' msl -D 'SIZE=nothing' macros.metal
expect 2 'requires a name of letters, digits and _, and a value in one line, not "2=3"' msl -D 2=3 macros.metal
expect 2 'in one line, not' msl -D 'SIZE=4\' macros.metal
expect 1 '^macros.metal:4:2: error: "version " VERSION' msl -DSIZE -std=macos-metal2.4 macros.metal
expect 0 '^kernel fill' msl -DSIZE -std=metal3.1 macros.metal
expect 2 'std must be a name that tarnwick help msl lists, not "metal9.0"' msl -std=metal9.0 macros.metal
expect 2 'std must be' msl -std=macos-metal3.0 macros.metal

# Only the folders that are named are read.
mkdir -p 'in clude/deep' outside
echo '#include "near.h"
#include <types.h>' >'in clude/deep/far.h'
echo 'constant float near = 2;' >'in clude/deep/near.h'
echo 'struct Far { float3 colour; float weights[3]; };' >'in clude/types.h'
echo 'float secret() { return 1; }' >outside/secret.h
ln -s ../outside/secret.h 'in clude/linked.h'
ln -s deep/near.h 'in clude/inner.h'
cat >files.metal <<'TEXT'
#include <metal_stdlib>
#include "deep/far.h"
#include "inner.h"
fragment float4 shade(constant Far& far [[buffer(1)]]) { return float4(far.colour * near, far.weights[2]); }
TEXT
sed -i 's/#include "near.h"/#pragma once\n&/; s/^constant/#pragma once\n&/' 'in clude/deep/'*.h
expect 1 "^files.metal:2:10: error: 'deep/far.h' file not found" msl files.metal
expect 0 '^fragment shade' msl files.metal -I 'in clude' -o files.spv -MD
spirv-val --target-env vulkan1.3 --scalar-block-layout files.spv || complain 'files.spv is not valid' msl -I
printf 'files.spv: files.metal \\\n  in\\ clude/deep/far.h \\\n  in\\ clude/deep/near.h \\\n  in\\ clude/types.h \\\n  in\\ clude/inner.h\n' >rule
head -n 5 files.d | diff rule - || complain 'not the rule' msl -MD
make --version >/dev/null 2>&1 && { make -q -f files.d files.spv || complain 'make does not read the rule' msl -MD; }
expect 0 '' msl files.metal "-Iin clude" -MD -MF again.d
grep -q '^files.spv: files.metal' again.d || complain 'no rule' msl -MF
echo 'my notes' >notes.d
expect 2 'notes.d' msl files.metal "-Iin clude" -MD -MF notes.d
grep -q 'my notes' notes.d || complain 'a file was replaced' msl -MF
expect 2 'MD requires -MF OUT.d or -o OUT.spv' msl files.metal -MD
# Also where no file is, so that a program does not learn which files exist.
ln -s ../outside/none.h 'in clude/dangling.h'
ln -s ../outside 'in clude/away'
for name in ../outside/secret.h linked.h "$PWD/outside/secret.h" /etc/passwd ../outside/none.h \
    dangling.h away/secret.h away/none.h away/none/none.h /etc/none; do
    echo "#include \"$name\"" >out.metal
    expect 1 "^out.metal:1:10: error: '$name' is outside the folders of includes" msl out.metal -I 'in clude'
done
echo '#if __has_include("/etc/passwd")
#error "seen"
#endif
#include "none.h"' >none.metal
expect 1 "^none.metal:4:10: error: 'none.h' file not found" msl none.metal -I 'in clude'
echo 'int x = y;' >'in clude/bad.h'
echo '#include "bad.h"' >bad.metal
expect 1 "^in clude/bad.h:1:9: error: use of undeclared identifier 'y'" msl bad.metal -I 'in clude'
expect 2 'I requires a folder, but missing is not a folder' msl bad.metal -I missing
# A header that was changed is read again.
echo 'constant int x = 1;' >'in clude/bad.h'
expect 0 '' msl bad.metal -I 'in clude'

# Documents.
expect 0 '"name": "far"' msl files.metal -I 'in clude' --reflect json
cat >check.py <<'TEXT'
import json
document = json.load(open("out"))
entry, = document["entryPoints"]
argument, = entry["arguments"]
assert (argument["table"], argument["index"], argument["access"]) == ("buffer", 1, "read"), argument
record = document["records"][argument["record"]]
assert (record["name"], record["bytes"]) == ("Far", 32), record
colour, weights = record["members"]
assert (colour["type"], colour["offset"], colour["bytes"]) == ("float3", 0, 16), colour
assert (weights["offset"], weights["count"], weights["stride"]) == (16, 3, 4), weights
binding, = entry["bindings"]
assert (binding["binding"], binding["index"], binding["kind"]) == (32, 1, "uniform buffer"), binding
assert document["files"][0] == "in clude/deep/far.h" and document["diagnostics"] == []
TEXT
python3 check.py || complain 'not the document' msl --reflect
"$TARNWICK" msl out.metal --reflect json >out 2>err
[ $? = 1 ] || complain 'status is not 1' msl --reflect
python3 -c 'import json
d = json.load(open("out"))
assert not d["compiled"] and d["diagnostics"][0]["line"] == 1 and d["diagnostics"][0]["kind"] == "error"' ||
    complain 'no diagnostic' msl --reflect
expect 0 'OpEntryPoint Fragment' msl files.metal -I 'in clude' --disassemble
grep -q '^; fragment shade$' out || complain 'no name' msl --disassemble
expect 2 'exclude each other' msl files.metal --disassemble --reflect json

# Without optimisation a loop is left as it is written; both are valid.
echo 'fragment float4 sum(constant float4* v [[buffer(0)]]) {
    float4 s = 0;
    for (int i = 0; i < 4; ++i) s += v[i];
    return s;
}' >loop.metal
expect 0 'OpReturn' msl loop.metal --disassemble -o fast.spv
grep -q OpLoopMerge out && complain 'the loop is not unrolled' msl
expect 0 'OpLoopMerge' msl loop.metal -O0 --disassemble -o slow.spv
for module in fast slow; do
    spirv-val --target-env vulkan1.3 --scalar-block-layout $module.spv || complain "$module.spv is not valid" msl -O0
done
expect 2 'exclude each other' msl loop.metal -O -O0

# Standard input.
expect 0 '^fragment sum' msl - <loop.metal
echo 'x' >one.metal
expect 1 '^<stdin>:1:1: error: ' msl - <one.metal
finish
