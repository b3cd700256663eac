// Names for types: using, typedef, of templates, of arrays, inside records (1.5.2).
// @expects 1 2 | 3 3 3 | 6 | 12 | 4
#include <metal_stdlib>
using namespace metal;

using Colour = float4;
typedef float Row[3];
template <typename T> using Pair = vec<T, 2>;
template <int N> using Floats = array<float, N>;
struct Mesh {
    using Index = ushort;
    typedef float3 Corner;
    Index count;
};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Pair<float> p(in[1], in[2]);
    out[0] = p.x; out[1] = p.y;
    Colour c = Colour(in[3]);
    out[2] = c.r; out[3] = c.g; out[4] = c.a;
    Row row = {1, 2, 3};
    out[5] = row[0] + row[1] + row[2];
    Mesh::Corner corner = Mesh::Corner(3, 4, 5);
    Mesh mesh{Mesh::Index(in[0])};
    out[6] = corner.x + corner.y + corner.z + mesh.count;
    Floats<4> floats = {1, 1, 1, 1};
    float sum = 0;
    for (float f : floats) sum += f;
    out[7] = sum;
}
