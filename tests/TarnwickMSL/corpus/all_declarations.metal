// Declarations of every kind: templates, overloads, operators, lambdas, enumerations, namespaces.
#include <metal_stdlib>
using namespace metal;

namespace shapes {
enum Kind { circle, box = 5, none };
enum class Colour : uchar { red = 1, green, blue };
namespace inner {
constant float scale = 2.0;
inline float scaled(float x) { return x * scale; }
} // namespace inner
struct Base {
    float radius = 1.0;
    float area() const { return M_PI_F * radius * radius; }
};
struct Ball : Base {
    float3 centre;
    Ball(float3 c, float r) : centre(c) { radius = r; }
    Ball(float x, float y) : centre(x, y, 0.0) {}
    static Ball unit() { return Ball(float3(0.0), 1.0); }
    float operator()(float3 p) const { return length(p - centre) - radius; }
    thread Ball& move(float3 by) thread {
        centre += by;
        return *this;
    }
};
} // namespace shapes

struct Complex {
    float re, im;
    Complex operator+(Complex o) const { return {re + o.re, im + o.im}; }
    Complex operator*(Complex o) const { return Complex{re * o.re - im * o.im, re * o.im + im * o.re}; }
    Complex operator-() const { return {-re, -im}; }
    bool operator==(Complex o) const { return re == o.re && im == o.im; }
    operator float2() const { return float2(re, im); }
    float operator[](int i) const { return i == 0 ? re : im; }
};
Complex operator*(float s, Complex c) { return {s * c.re, s * c.im}; }

template <typename T> T twice(T x) { return x + x; }
template <> float twice<float>(float x) { return x * 2.0; }
template <typename T, int N> struct Stack {
    T items[N];
    int count = 0;
    void push(T item) { items[count++] = item; }
    T top() const { return items[count - 1]; }
};
template <typename T, uint N> T total(array<T, N> values) {
    T sum = T(0);
    for (uint i = 0; i < N; ++i)
        sum += values[i];
    return sum;
}
template <typename First> First least(First a) { return a; }
template <typename First, typename... Rest> First least(First a, Rest... rest) {
    return min(a, least(rest...));
}
template <int N> struct Power { static constant constexpr int value = 2 * Power<N - 1>::value; };
template <> struct Power<0> { static constant constexpr int value = 1; };
template <typename F> float sumOf(F f, int n) {
    float s = 0;
    for (int i = 0; i < n; i++)
        s += f(i);
    return s;
}
template <typename T> using pair = vec<T, 2>;
using colour = float4;
typedef float table[3];

constant table weights = {0.25, 0.5, 0.25};
constant float2x2 turn = float2x2(0.0, 1.0, -1.0, 0.0);
constant int grid[2][3] = {{1, 2, 3}, {4, 5, 6}};
constant shapes::Colour favourite = shapes::Colour::green;
static constant float3 sun = normalize(float3(1, 2, 3));

float over(float x) { return x; }
float over(float2 x) { return x.x; }
int over(int x) { return x + 1; }

fragment float4 f(float4 p [[position]]) {
    using namespace shapes;
    Ball ball = Ball::unit();
    ball.move(float3(p.xy, 0)).move(float3(1));
    Complex c = 2.0 * (Complex{1, 2} * Complex{p.x, p.y} + -Complex{3, 4});
    auto add = [=](int i) { return p.x * float(i); };
    float outer = 0;
    auto collect = [&outer](float x) thread { outer += x; };
    collect(twice(2.0f));
    collect(twice(3));
    Stack<float3, 4> stack;
    stack.push(ball.centre);
    stack.push(sun);
    array<float, 3> values = {1, 2, 3};
    float sum = total(values) + least(3.0f, p.x, 1.0f) + float(Power<5>::value) + sumOf(add, 4);
    for (float w : weights)
        sum += w;
    switch (favourite) {
    case Colour::red: sum += 1; break;
    case Colour::green: sum += 2;
    case Colour::blue: sum += 3; break;
    }
    Kind kind = p.x > 1 ? box : circle;
    sum += float(kind) + float(int(favourite)) + inner::scaled(ball(p.xyz)) + over(float2(c)) + over(3);
    pair<float> q(1, 2);
    colour result = colour(q, c[1], sum + outer);
    result.xy = turn * result.xy;
    result += float4(stack.top(), float(grid[1][int(p.x) % 3]));
    if (c == Complex{0, 0}) discard_fragment();
    return result;
}
