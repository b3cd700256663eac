// A rolling surface seen from above its edge, lit from one side, before a sky.
// @grid 512
// @param height 0.16 0 1
// @param roll 0.4 0 2
// @param tilt 0.55 0 1.5
// @param haze 0.5 0 2
struct Vertex {
    float4 position [[position]];
    float3 normal;
    float2 at;
    float depth;
};

float rise(float2 at, float time) {
    float h = sin(at.x * 7.0 + time) * cos(at.y * 5.0 - 0.6 * time);
    h += 0.5 * sin(at.x * 17.0 - at.y * 11.0 + 1.3 * time);
    return h + 0.25 * sin(at.x * 31.0 + at.y * 37.0 - 1.7 * time);
}

Vertex corner(float2 grid, constant Uniforms& u, constant Params& p) {
    float time = u.time * p.roll, step = 1.0 / 512.0;
    float here = p.height * rise(grid, time);
    float right = p.height * rise(grid + float2(step, 0.0), time);
    float ahead = p.height * rise(grid + float2(0.0, step), time);
    float3 place = float3((grid.x - 0.5) * 3.2, here, (grid.y - 0.5) * 3.2);
    float c = cos(p.tilt), s = sin(p.tilt);
    float3 seen = float3(place.x, c * place.y + s * place.z - 0.1, c * place.z - s * place.y + 2.6);
    Vertex v;
    v.position = float4(seen.x * 1.6 * u.resolution.y / u.resolution.x, seen.y * 1.6,
                        seen.z * 1.02 - 0.2, seen.z);
    v.normal = normalize(float3(here - right, step * 3.2, here - ahead));
    v.at = grid;
    v.depth = seen.z;
    return v;
}

float4 shade(Vertex v, constant Uniforms& u, constant Params& p) {
    float light = saturate(dot(normalize(v.normal), float3(0.48, 0.6, 0.64)));
    float stripes = 0.9 + 0.1 * sin(v.at.x * 200.0) * sin(v.at.y * 200.0);
    float3 sand = mix(float3(0.16, 0.06, 0.05), float3(0.95, 0.62, 0.32), light) * stripes;
    float3 c = mix(sand, float3(0.5, 0.4, 0.45), 1.0 - exp(-p.haze * max(v.depth - 1.2, 0.0)));
    return float4(c, 1.0);
}

float4 background(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(mix(float3(0.5, 0.4, 0.45), float3(0.12, 0.14, 0.3), uv.y), 1.0);
}
