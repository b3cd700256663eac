vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * 2.0 * u.resolution / u.resolution.y;
    vec2 first = q;
    vec3 sum = vec3(0.0);
    for (float i = 0.0; i < 4.0; i++) {
        q = fract(q * p.zoom) - 0.5;
        float d = length(q) * exp(-length(first));
        vec3 colour = 0.5 + 0.5 * cos(6.28318 * (length(first) + i * 0.4 + u.time * 0.4 + vec3(0.263, 0.416, 0.557)));
        d = abs(sin(d * 8.0 + u.time) / 8.0);
        d = pow(0.01 / d, 1.2);
        sum += colour * d;
    }
    return vec4(sum, 1.0);
}
