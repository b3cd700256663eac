// Constructors, methods and functions without names of parameters, which differ in address spaces.
// @expects 3 4 | 1 2 3 4 | 2 1 | 6 12 5 | 7 | 8 3 | 9
#include <metal_stdlib>
using namespace metal;

template <class T, int N> struct Column {
    T values[N];
    Column() thread = default;
    Column() device = default;
    Column() constant = default;
    Column() threadgroup = default;
    Column(const thread Column& other) thread = default;
    Column(const constant Column& other) constant = default;
    Column(const thread T& first) thread {
        for (int i = 0; i < N; i++) values[i] = first + T(i);
    }
    Column(const device T& first) thread {
        for (int i = 0; i < N; i++) values[i] = first + T(i);
    }
    Column(const thread T& first) constant {
        for (int i = 0; i < N; i++) values[i] = first + T(i);
    }
};
struct Level {
    float value;
    Level(float v) thread : value(v) {}
    Level(float v) constant : value(v) {}
    float get() const { return value; }
    float get() const device { return value * 2; }
    float get() const constant { return value - 1; }
};
constant Level base = Level(6.0f);

static int which(thread float*) { return 1; }
static int which(device float*) { return 2; }
static int which(constant float*) { return 3; }
static int which(threadgroup float* own) { return 3 + int(own[0]); }
template <class T> static int kind(device T&) { return 2; }
template <class T> static int kind(thread T&) { return 1; }
constexpr float change(constant float* p) { return p[0] * 2; }
constexpr float change(device const float* p) { return p[0] + 5; }
constexpr constant float four = 4;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  device Level* levels [[buffer(2)]]) {
    threadgroup float shared;
    float own = in[3];
    const Column<float, 2> column(own);
    out[0] = column.values[0];
    out[1] = column.values[1];
    shared = in[1];
    threadgroup_barrier(mem_flags::mem_threadgroup);
    out[2] = which(&own);
    out[3] = which(out);
    out[4] = which(in);
    out[5] = which(&shared);
    out[6] = kind(out[0]);
    out[7] = kind(own);
    const Level here(in[6]);
    levels[0].value = in[6];
    out[8] = here.get();
    out[9] = levels[0].get();
    out[10] = base.get();
    const Column<float, 2> read(out[9]);
    out[11] = read.values[0] - 5;
    constexpr float three = 3;
    constexpr float eight = change(&four);
    out[12] = eight;
    out[13] = three;
    out[14] = change(out) + in[1];
}
