// References to variables, elements and members, through several calls, and as results.
// @expects 3 1 | 10 | 7 7 | 12 | 9
#include <metal_stdlib>
using namespace metal;

struct Box { float2 corner; float size; };
void swap_(thread float& a, thread float& b) { float t = a; a = b; b = t; }
void add(thread float& a, float by) { a += by; }
void twice(thread float& a, float by) { add(a, by); add(a, by); }
thread float& larger(thread float& a, thread float& b) {
    if (a > b) return a;
    return b;
}
void grow(thread Box& box) { box.size *= 2.0; box.corner += 1.0; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float a = in[1], b = in[3];
    swap_(a, b);
    out[0] = a; out[1] = b;
    float values[3] = {in[1], in[2], in[4]};
    twice(values[int(in[2])], in[3]);
    out[2] = values[2];
    Box box = {float2(in[6]), in[6]};
    grow(box);
    out[3] = box.corner.x; out[4] = box.corner.y;
    thread float& size = box.size;
    size += 0.0;
    out[5] = box.size;
    larger(a, b) = in[9];
    out[6] = a;
}
