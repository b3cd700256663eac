// @param rounds 6 1 16

uint mixed(uint v) {
    v = v * 747796405u + 2891336453u;
    uint word = ((v >> ((v >> 28u) + 4u)) ^ v) * 277803737u;
    return (word >> 22u) ^ word;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    uint2 pixel = uint2(uv * u.resolution) / 8u;
    uint state = pixel.x + pixel.y * 1920u + u.frame;
    uint bits = 0u;
    for (int i = 0; i < int(p.rounds); i++) {
        state = mixed(state);
        bits ^= state << (uint(i) & 7u);
        bits += popcount(state) * 16777259u;
    }
    uint3 rgb = uint3(bits, bits >> 8u, bits >> 16u) & 255u;
    return float4(float3(rgb) / 255.0, 1.0);
}
