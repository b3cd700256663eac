// Local pointers that loops move: compared with each other, with the end and with null, and their
// differences.
// @expects 10 | 6 | 3 | 30 1 2 | 1 0 0 5 | 4 2 3
#include <metal_stdlib>
using namespace metal;

thread const float* find(thread const float* from, thread const float* to, float least) {
    while (from != to && *from < least) ++from;
    return from;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float a[4] = {1.0, 2.0, 3.0, 4.0}, b[4] = {5.0, 6.0, 7.0, in[12]};
    float sum = 0.0;
    for (thread float* p = a; p != a + 4; p++) sum += *p;
    out[0] = sum;
    sum = 0.0;
    thread float* last = a + int(in[3]);
    for (thread float* p = a; p < last; ++p) sum += *p;
    out[1] = sum;
    thread float* far = a;
    while (far - a < int(in[3])) far++;
    out[2] = float(far - a);

    thread float* chosen = in[1] > 0.5 ? b : a;
    thread float* end = chosen + 4;
    sum = 0.0;
    for (thread float* p = chosen; p != end; p++) sum += *p;
    out[3] = sum;
    out[4] = end == b + 4 ? 1.0 : 0.0;
    out[5] = float(end - chosen) - 2.0;

    thread float* none = nullptr;
    thread float* maybe = in[2] > 0.5 ? none : a;
    out[6] = maybe == none ? 1.0 : 0.0;
    out[7] = maybe == a ? 1.0 : 0.0;
    out[8] = chosen == maybe ? 1.0 : 0.0;
    out[9] = maybe ? *maybe : 5.0;

    out[10] = *find(a, a + 4, in[4]);
    out[11] = float(find(b, b + 4, 6.5) - b);
    uintptr_t first = uintptr_t(a), next = uintptr_t(chosen == b ? a + 3 : b);
    out[12] = float((next - first) / sizeof(float));
}
