// @param scale 3 1 10
// @param warp 1.2 0 3

float hash(float2 cell) {
    float3 q = fract(float3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

float noise(float2 q) {
    float2 cell = floor(q);
    float2 f = fract(q);
    f = f * f * (3.0 - 2.0 * f);
    return mix(mix(hash(cell), hash(cell + float2(1, 0)), f.x),
               mix(hash(cell + float2(0, 1)), hash(cell + float2(1, 1)), f.x), f.y);
}

constant float2x2 turn = float2x2(float2(1.6, 1.2), float2(-1.2, 1.6));

float fbm(float2 q) {
    float sum = 0.0, weight = 0.5;
    for (int i = 0; i < 5; i++) {
        sum += weight * noise(q);
        q = turn * q;
        weight *= 0.5;
    }
    return sum;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = uv * p.scale;
    float2 push = float2(fbm(q + u.time * 0.1), fbm(q + float2(5.2, 1.3)));
    float height = fbm(q + p.warp * push);
    float3 colour = mix(float3(0.05, 0.10, 0.20), float3(0.90, 0.70, 0.40), height);
    return float4(mix(colour, float3(0.7, 0.2, 0.1), push.y * push.y), 1.0);
}
