// Functions and methods that differ only in address spaces, and have different bodies.
// @runs check 1 1
// @expects 1 2 3 | 14 23 | 5 6 | 7 8 8 | 32 42 | 3 | 2 | 9 14 32 41 | 2
#include <metal_stdlib>
using namespace metal;

static float which(device const float* p) { return *p > 0.0 ? 1.0 : -1.0; }
static float which(thread const float* p) { float two = p[1]; return two; }
static float which(constant float* values) { return values[3]; }

static float both(device float& a, thread float& b) { return 10.0 + b; }
static float both(thread float& x, device float& y) { return 20.0 + x; }
static float both(thread float& a, thread float& b) { return 30.0 + a; }
static float both(device float& a, device float& b) { return 40.0 + a; }

struct Pair {
    float a, b;
    Pair() thread = default;
    Pair() device = default;
    Pair(float a, float b) thread : a(a), b(b) {}
    float part() const device { return a; }
    float part() const thread { return b; }
};
template <class T> static T scaled(device T* p, T by) { return *p * by; }
template <class T> static T scaled(threadgroup T* p, T by) { return *p + by; }
template <class T> static T scaled(thread T* p, T by) { return *p + by; }

struct View { device float* values; float own; };
static float first(thread View& view) { return which(view.values); }
static float first(device View& view) { return -5.0; }

static void half_of(device float* p) { *p = *p * 0.5; }
static void half_of(thread float* q) { *q = *q * 0.25; }

// In constant expressions.
constexpr int least(constant int* p) { return *p < 5 ? *p : 5; }
constexpr int least(thread const int* p) { return *p + 10; }
constexpr float lane(constant float3& v) { return (v + 0).y; }
constexpr float lane(thread const float3& v) { return (v * 10).z; }
template <class T> constexpr int kind(constant T (&list)[2]) { return 2; }
template <class T> constexpr int kind(thread const T (&list)[2]) { return 1; }
constexpr int forwarded(constant int* p) { return least(p); }
constexpr int of_local(int x) {
    const int copy = x;
    int list[2] = {x, x + 1};
    return least(&copy) + least(list + 1) - kind(list);
}
constexpr constant int nine = 9, some[2] = {3, 4};
constexpr constant float3 vector = {1, 2, 3};
constexpr float of_vector() {
    const float3 own = {0, 1, 3};
    return lane(own) + lane(vector);
}
static_assert(least(&nine) == 5 && forwarded(some + 1) == 4 && kind(some) == 2, "");
static_assert(of_local(2) == 24 && of_vector() == 32, "");
constant int in_table[2] = {least(&nine) + forwarded(some + 1), of_local(-3)};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  device Pair* pairs [[buffer(2)]]) {
    threadgroup float shared;
    float local[2] = {in[4], in[2]};
    out[0] = in[1];
    out[0] = which(out);
    out[1] = which(local);
    out[2] = which(in);
    float four = in[4], three = in[3];
    out[3] = both(out[0], four);
    out[4] = both(three, out[0]);
    pairs[0].a = 5.0;
    Pair here = {1.0, 6.0};
    out[5] = pairs[0].part();
    out[6] = here.part();
    out[7] = 3.5;
    out[7] = scaled(out + 7, 2.0f);
    shared = in[5];
    threadgroup_barrier(mem_flags::mem_threadgroup);
    out[8] = scaled(&shared, in[3]);
    out[9] = scaled(&four, 4.0f);
    float two = in[2];
    out[10] = both(two, three);
    out[11] = out[1];
    out[11] = both(out[11], out[0]);
    View view = {out, 1.0};
    out[12] = first(view) + which(local);
    float eight = in[8];
    half_of(&eight);
    out[13] = eight;
    out[14] = in_table[0], out[15] = in_table[1];
    out[16] = of_vector();
    int run_time = int(in[31]);
    out[17] = least(&run_time);
    out[18] = kind(some);
}
