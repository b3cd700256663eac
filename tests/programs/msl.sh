# Any file compiles, not only episodes; its entry points are listed or written.
. "$PROMISES/promises.sh"
cat >two.metal <<'TEXT'
#include <metal_stdlib>
using namespace metal;
kernel void twice(device float* a [[buffer(0)]], constant float& by [[buffer(3)]],
                  uint i [[thread_position_in_grid]]) { a[i] *= by; }
fragment float4 red() { return float4(1, 0, 0, 1); }
TEXT
expect 0 '^kernel twice, ' msl two.metal
grep -q 'binding 0: buffer(0), storage buffer.*written' out || complain 'no buffer(0)' msl
grep -q 'buffer(3), uniform buffer, 4 bytes' out || complain 'no buffer(3)' msl
grep -q '^fragment red, ' out || complain 'no red' msl
expect 0 '^fragment red, ' msl two.metal --entry red -o red.spv
spirv-val --target-env vulkan1.3 red.spv || complain 'red.spv is not valid' msl
expect 2 'no entry point "blue", but kernel twice, fragment red' msl two.metal --entry blue
expect 2 'o requires --entry: two.metal has ' msl two.metal -o two.spv
have ! -e two.spv
expect 0 '^// kernel twice, ' msl two.metal --target wgsl
grep -q '^// .*buffer(3), uniform buffer, 16 bytes' out || complain 'no binding of buffer(3)' msl --target
grep -q '^@compute @workgroup_size(' out || complain 'no text of the kernel' msl --target
expect 0 '^fragment red, ' msl two.metal --target wgsl --entry red -o red.wgsl
expect 0 '^fragment red, ' msl two.metal --target wgsl --entry red -o red.wgsl
grep -q '^@fragment$' red.wgsl || complain 'red.wgsl is not the text' msl --target -o
expect 2 'o writes files that end in .wgsl, not "red.spv"' msl two.metal --target wgsl --entry red -o red.spv
expect 2 'spirv, wgsl' msl two.metal --target glsl
cat >log.metal <<'TEXT'
#include <metal_stdlib>
#include <metal_logging>
kernel void count(metal::uint i [[thread_position_in_grid]]) { metal::os_log_default.log("thread %u", i); }
TEXT
expect 0 '^kernel count, ' msl log.metal -o dropped.spv
expect 0 '^kernel count, ' msl log.metal --logs -o kept.spv
spirv-val --target-env vulkan1.3 kept.spv || complain 'kept.spv is not valid' msl --logs
grep -q 'thread %u' dropped.spv && complain 'the log was kept' msl
grep -q 'thread %u' kept.spv || complain 'the log was dropped' msl --logs
cat >constants.metal <<'TEXT'
constant float2 tint [[function_constant(3)]];
constant bool isDark [[function_constant(4)]];
fragment float4 paint(constant float& dark [[buffer(0), function_constant(isDark)]]) {
    return float4(tint, isDark ? dark : 1, 1);
}
TEXT
expect 0 'function constant 3: float2 tint, required' msl constants.metal
grep -q 'function constant 4: bool isDark, required' out || complain 'no isDark' msl
grep -q 'buffer(0)' out || complain 'no buffer(0)' msl
expect 0 '^fragment paint' msl constants.metal --constant tint=0.5,-1e-1 --constant isDark=false
grep -q 'function constant\|buffer(0)' out && complain 'constants are left' msl --constant
expect 1 'constants.metal:1:17: error: .* requires a number for each component' msl constants.metal \
    --constant tint=1
expect 1 "error: the program has no function constant 'tin'" msl constants.metal --constant tin=1
expect 2 'requires numbers, true or false, not "red"' msl constants.metal --constant tint=red
expect 2 'requires NAME=VALUE, not "tint"' msl constants.metal --constant tint
echo 'float x = y;' >bad.metal
expect 1 "^bad.metal:1:11: error: use of undeclared identifier 'y'" msl bad.metal
"$TARNWICK" msl --batch two.metal bad.metal missing.metal >out 2>err
[ $? = 2 ] || complain 'status is not 2' msl --batch
grep -q '^two.metal: ok: kernel twice, fragment red$' out || complain 'no line of two.metal' msl
grep -q '^bad.metal: failed: bad.metal:1:11: error: ' out || complain 'no line of bad.metal' msl
grep -q '^missing.metal: failed: ' out || complain 'no line of missing.metal' msl
[ "$(wc -l <out)" = 3 ] || complain 'not a line a file' msl --batch
finish
