// Methods that read and that change, methods that call each other, nested records, constructors.
// @expects 3 | 5 | 6 | 11 | 4 7
#include <metal_stdlib>
using namespace metal;

struct Counter {
    float total = 0.0;
    void add(float by) { total += by; }
    float doubled() const { return 2.0 * total; }
    thread Counter& twice() { add(doubled() - total); return *this; }
};
struct Pair {
    Counter left, right;
    Pair(float a, float b) { left.add(a); right.add(b); }
    float sum() const { return left.total + right.total; }
};
struct Ray {
    float3 origin, direction;
    float3 at(float t) const { return origin + direction * t; }
};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Counter counter;
    counter.add(in[1]);
    counter.add(in[2]);
    out[0] = counter.total;
    Pair pair(in[2], in[3]);
    out[1] = pair.sum();
    out[2] = counter.twice().total;
    pair.left.add(counter.total);
    out[3] = pair.sum();
    Ray ray = {float3(in[1]), float3(in[1], in[2], 0.0)};
    out[4] = ray.at(in[3]).x; out[5] = ray.at(in[3]).y;
}
