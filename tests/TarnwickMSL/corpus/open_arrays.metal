// Records that end in an array of one element, of none, or of no length: it goes on in the buffer.
// @expects 6 15 | 17
#include <metal_stdlib>
using namespace metal;

struct Hacked { uint count; float values[1]; };
struct Open { uint count; float values[]; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  device void* raw [[buffer(2)]]) {
    device Hacked* h = static_cast<device Hacked*>(raw);
    h->values[int(in[5])] = 6.0;
    out[0] = h->values[5];
    device Open& o = *(device Open*)(h + 20);
    o.values[3] = 7.0; o.values[int(in[4])] = 8.0; o.count = 2;
    out[1] = o.values[int(in[3])] + o.values[4];
    out[2] = out[1] + float(o.count);
}
