vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * 2.0 * u.resolution / u.resolution.y;
    vec3 sum = vec3(0.05, 0.02, 0.08);
    for (int i = 0; i < 20; i++) {
        float a = fract(sin(float(i) * 12.9898) * 43758.5453);
        float b = fract(sin(float(i) * 78.233 + 1.0) * 43758.5453);
        float c = fract(sin(float(i) * 39.425 + 2.0) * 43758.5453);
        vec2 at = vec2(mod(a * 4.0 + u.time * (0.1 + 0.2 * b), 4.0) - 2.0, b * 2.0 - 1.0 + 0.1 * sin(u.time + a * 6.0));
        float radius = 0.08 + 0.2 * c;
        float d = length(q - at);
        float disc = smoothstep(radius, radius - p.blur, d);
        float rim = smoothstep(0.02, 0.0, abs(d - radius + p.blur));
        vec3 colour = mix(vec3(0.9, 0.4, 0.2), vec3(0.2, 0.5, 0.9), a);
        sum += colour * (disc * 0.25 + rim * 0.4) * (0.4 + 0.6 * b);
    }
    return vec4(sum, 1.0);
}
