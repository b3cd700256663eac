// Pointers of every address space: arithmetic, comparison, members, null, arrays as pointers.
// @expects 10 | 3 | 4 | 6 5 | 3 | 1
#include <metal_stdlib>
using namespace metal;

struct Node { float value; int next; };
float sum(thread const float* values, int count) {
    float total = 0.0;
    thread const float* end = values + count;
    for (thread const float* p = values; p != end; p++) total += *p;
    return total;
}
float second(constant float* values) { return *(values + 1); }
void set(thread Node* node, float value) { node->value = value; node->next++; }
float orElse(thread float* p, float other) { return p == nullptr ? other : *p; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float values[4] = {in[1], in[2], in[3], in[4]};
    out[0] = sum(values, 4);
    out[1] = second(in + 2);
    thread float* p = &values[1];
    p += 2;
    out[2] = *p;
    Node node = {in[1], 4};
    set(&node, in[6]);
    out[3] = node.value; out[4] = float(node.next);
    out[5] = float(p - values);
    out[6] = orElse(&values[0], in[9]);
}
