// Methods and functions once for each address space, as their arguments need them (4, 5.1).
// @expects 5 5 7 | 6 | 3 17 | 1
#include <metal_stdlib>
using namespace metal;

struct Cell {
    float value;
    void set(float v) device { value = v; }
    void set(float v) thread { value = v; }
    float get() const device { return value; }
    float get() const constant { return value; }
    float get() const thread { return value; }
};
float sum(const device float* all, int n) {
    float total = 0;
    for (int i = 0; i < n; i++) total += all[i];
    return total;
}
float sum(const thread float* all, int n) {
    float total = 0;
    for (int i = 0; i < n; i++) total += all[i];
    return total;
}
float sum(constant float* all, int n) {
    float total = 0;
    for (int i = 0; i < n; i++) total += all[i];
    return total;
}
template <typename T> T second(const device T* all) { return all[1]; }
template <typename T> T second(constant T* all) { return all[1]; }

kernel void check(device Cell* out [[buffer(0)]], constant Cell* in [[buffer(1)]]) {
    out[0].set(in[5].get());
    Cell own;
    own.set(out[0].get());
    out[1].value = own.get();
    out[2].value = in[7].get();
    out[3].value = sum(&in[1].value, 3);
    float few[2] = {1, 2};
    out[4].value = sum(few, 2);
    out[5].value = sum(&out[0].value, 3);
    out[6].value = second(&in[0].value);
}
