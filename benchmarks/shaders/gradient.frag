vec4 shade(vec2 uv) {
    vec3 top = vec3(0.10, 0.20, 0.45), bottom = vec3(0.95, 0.60, 0.30);
    float swing = 0.5 + 0.5 * sin(u.time * p.speed + uv.x * 3.0);
    return vec4(mix(bottom, top, clamp(uv.y + 0.2 * swing, 0.0, 1.0)), 1.0);
}
