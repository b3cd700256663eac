// A matrix, a range with iterators, a stack and a sort, all as templates (1.5.2).
// @expects 22 28 49 64 | 10 | 3 2 | 1 2 4 7 9 | 5
#include <metal_stdlib>
using namespace metal;

template <int R, int C> struct Table {
    float m[R][C];
    template <int K> Table<R, K> operator*(const thread Table<C, K>& o) const {
        Table<R, K> r = {};
        for (int i = 0; i < R; i++)
            for (int j = 0; j < K; j++)
                for (int k = 0; k < C; k++) r.m[i][j] += m[i][k] * o.m[k][j];
        return r;
    }
};
struct Counter {
    int i;
    bool operator!=(Counter o) const { return i != o.i; }
    thread Counter& operator++() { ++i; return *this; }
    int operator*() const { return i; }
};
struct Range {
    int first, last;
    Counter begin() const { return {first}; }
    Counter end() const { return {last}; }
};
template <typename T, int N> struct Stack {
    T all[N];
    int count = 0;
    void push(T v) { if (count < N) all[count++] = v; }
    T pop() { return all[--count]; }
};
template <typename T, size_t N, typename Less> void sort(thread array<T, N>& all, Less less) {
    for (size_t i = 1; i < N; i++)
        for (size_t j = i; j > 0 && less(all[j], all[j - 1]); j--) {
            T kept = all[j];
            all[j] = all[j - 1];
            all[j - 1] = kept;
        }
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Table<2, 3> a = {{{1, 2, 3}, {4, 5, in[6]}}};
    Table<3, 2> b = {{{1, 2}, {3, 4}, {5, 6}}};
    auto c = a * b;
    for (int i : Range{0, 4}) out[i] = c.m[i / 2][i % 2];
    int sum = 0;
    for (int i : Range{0, int(in[5])}) sum += i;
    out[4] = sum;
    Stack<float2, 4> stack;
    stack.push(float2(in[2])); stack.push(float2(in[3]));
    out[5] = stack.pop().x; out[6] = stack.pop().y;
    array<float, 5> numbers = {in[7], in[1], in[9], in[4], in[2]};
    sort(numbers, [](float x, float y) { return x < y; });
    for (int i = 0; i < 5; i++) out[7 + i] = numbers[i];
    out[12] = numbers.size();
}
