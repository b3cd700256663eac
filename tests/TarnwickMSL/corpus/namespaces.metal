// Nested namespaces, using, aliases of types, and statics of records.
// @expects 4 | 9 | 6 | 3.5
#include <metal_stdlib>
using namespace metal;

namespace shapes {
    namespace flat { float area(float side) { return side * side; } }
    constant float unit = 1.5;
    struct Disk { static float around(float r) { return 2.0 * r; } };
}
namespace sf = shapes::flat;
using Point = float2;
typedef float Scalar;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = shapes::flat::area(in[2]);
    {
        using namespace shapes::flat;
        out[1] = area(in[3]);
    }
    out[2] = shapes::Disk::around(in[3]);
    Point p = Point(in[1], in[2]) + shapes::unit;
    Scalar s = p.y + sf::area(0.0);
    out[3] = s;
}
