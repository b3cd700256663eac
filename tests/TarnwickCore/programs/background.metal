// @grid 8
// @particles 1000
struct Vertex { float4 position [[position]]; float height; };
Vertex corner(float2 grid, constant Uniforms& u, constant Params& p) {
    return Vertex{float4(grid * 2.0 - 1.0, 0.5, 1.0), grid.x};
}
float4 shade(Vertex v, constant Uniforms& u, constant Params& p) { return float4(v.height); }
float4 background(float2 uv, constant Uniforms& u, constant Params& p) { return float4(0.1); }
