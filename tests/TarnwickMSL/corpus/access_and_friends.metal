// Private members, friends, static functions, this, deleted and defaulted functions (C++17).
// @expects 3 | 5 | 7 | 2 | 1
#include <metal_stdlib>
using namespace metal;

class Counter {
  public:
    Counter() = default;
    explicit Counter(int n) : n(n) {}
    thread Counter& add(int m) { this->n += m; return *this; }
    int get() const { return n; }
    static Counter of(float x) { return Counter(int(x)); }
    friend int peek(Counter c) { return c.n; }
    float operator=(float) = delete;

  private:
    int n = 1;
};
struct Guard {
    thread int& depth;
    Guard(thread int& depth) : depth(depth) { depth++; }
    ~Guard() { depth--; }
};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Counter c;
    out[0] = c.add(1).add(int(in[1])).get();
    out[1] = Counter::of(in[5]).get();
    out[2] = peek(Counter(7));
    int depth = 1;
    {
        Guard guard(depth);
        out[3] = depth;
    }
    out[4] = depth;
}
