uint mixed(uint v) {
    v = v * 747796405u + 2891336453u;
    uint word = ((v >> ((v >> 28u) + 4u)) ^ v) * 277803737u;
    return (word >> 22u) ^ word;
}

vec4 shade(vec2 uv) {
    uvec2 pixel = uvec2(uv * u.resolution) / 8u;
    uint state = pixel.x + pixel.y * 1920u + u.frame;
    uint bits = 0u;
    for (int i = 0; i < int(p.rounds); i++) {
        state = mixed(state);
        bits ^= state << (uint(i) & 7u);
        bits += uint(bitCount(state)) * 16777259u;
    }
    uvec3 rgb = uvec3(bits, bits >> 8u, bits >> 16u) & 255u;
    return vec4(vec3(rgb) / 255.0, 1.0);
}
