float hash(vec2 cell) {
    vec3 q = fract(vec3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

float motif(int kind, vec2 f, float t) {
    switch (kind) {
        case 0: return length(f) - 0.35;
        case 1: return max(abs(f.x), abs(f.y)) - 0.3;
        case 2: return abs(f.x + f.y) * 0.7071 - 0.1;
        case 3: return abs(length(f) - 0.3) - 0.05 - 0.03 * sin(t);
        case 4:
        case 5: return min(abs(f.x), abs(f.y)) - 0.08;
        case 6: f = abs(f); // falls through
        case 7: return length(f - 0.25) - 0.15;
        default: return 1.0;
    }
}

vec4 shade(vec2 uv) {
    vec2 q = uv * p.tiles * u.resolution / u.resolution.y;
    vec2 cell = floor(q), f = fract(q) - 0.5;
    float h = hash(cell);
    float d = motif(int(h * 9.0), f, u.time + h * 6.0);
    vec3 colour;
    switch (int(h * 53.0) % 4) {
        case 0: colour = vec3(0.9, 0.3, 0.2); break;
        case 1: colour = vec3(0.2, 0.6, 0.5); break;
        case 2: colour = vec3(0.9, 0.7, 0.3); break;
        default: colour = vec3(0.3, 0.3, 0.6);
    }
    float cover = smoothstep(0.02, -0.02, d);
    return vec4(mix(vec3(0.06, 0.06, 0.08), colour, cover), 1.0);
}
