// Lists in braces: in loops over ranges, as arguments, as operands of the program's own operators and
// constructors, and as variables (C++17).
// @expects 6 9 | 10 3 | 7 | 12 | 5 2
#include <metal_stdlib>
using namespace metal;

static float sum(initializer_list<float> values) {
    float s = 0.0;
    for (float value : values) s += value;
    return s;
}
template <class T> static T largest(std::initializer_list<T> values) {
    T found = *values.begin();
    for (const thread T& value : values) found = value > found ? value : found;
    return found;
}
struct Columns {
    float2 columns[2];
    thread Columns& operator=(initializer_list<float2> list) thread {
        size_t i = 0;
        for (float2 column : list) columns[i++] = column;
        return *this;
    }
};
template <class T, int n> struct Bag {
    T items[n];
    size_t count = 0;
    Bag(initializer_list<T> list) { for (T item : list) items[count++] = item; }
};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = 0.0;
    for (float x : {1.0, 2.0, in[3]}) out[0] += x;
    out[1] = 0.0;
    for (int i : {0, 1, 2})
        for (int j : {int(in[1]), 2}) out[1] += float(i * j);
    out[2] = sum({1.0, 2.0, 3.0, in[4]});
    out[3] = float(largest({1, int(in[3]), 2}));
    auto list = {in[2], in[5]};
    out[4] = sum(list);
    Columns made;
    made = {float2(1.0, 2.0), float2(in[4], 5.0)};
    out[5] = made.columns[0].x + made.columns[0].y + made.columns[1].x + made.columns[1].y;
    Bag<int, 4> bag = {4, 5};
    out[6] = float(bag.items[int(in[1])]);
    out[7] = float(bag.count);
}
