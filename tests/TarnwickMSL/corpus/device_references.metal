// References to device memory, in functions, templates and records' methods.
// @expects 4 6 | 11 5 | 9
#include <metal_stdlib>
using namespace metal;

struct Cell { float level; float2 flow; void drain(float by) device { level -= by; } };
void add(device float& to, float value) { to += value; }
template <class T> void put(device T& to, T value) { to = value; }
float read(const device float& from) { return from; }
device float& pick(device float* list, int n) { return list[n]; }
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Cell* cells [[buffer(2)]]) {
    out[0] = in[1]; add(out[0], 3.0); put(out[1], 6.0f);
    device Cell& cell = cells[int(in[3])];
    cell.level = 20.0; cell.flow = float2(in[5], 1.0);
    cell.drain(9.0);
    out[2] = read(cells[3].level);
    out[3] = cells[3].flow.x;
    pick(out, int(in[4])) = 9.0;
}
