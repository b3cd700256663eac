vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * u.resolution / u.resolution.y * 6.0;
    float t = u.time * p.speed;
    float a = atan(q.y, q.x), r = length(q);
    float v = sin(q.x + t) + sin(q.y * 1.3 - t) + sin((q.x + q.y) * 0.7 + t * 1.7);
    v += cos(r * 3.0 - t * 2.0) + sin(a * 5.0 + r + t);
    v += tan(clamp(v * 0.2, -1.2, 1.2)) + asin(clamp(v * 0.2, -1.0, 1.0));
    vec3 colour = 0.5 + 0.5 * sin(v + vec3(0.0, 2.1, 4.2));
    return vec4(colour * exp2(-0.1 * r) * (0.6 + 0.4 * tanh(r)), 1.0);
}
