// A print of a sunset in float16_t precision: contrast, grain, halation and a light leak.

float16_t luminance(f16vec3 c) {
    return dot(c, f16vec3(0.2126hf, 0.7152hf, 0.0722hf));
}

f16vec3 curve(f16vec3 x) {
    f16vec3 a = x * (x * 2.51hf + 0.03hf);
    f16vec3 b = x * (x * 2.43hf + 0.59hf) + 0.14hf;
    return clamp(a / b, f16vec3(0.0hf), f16vec3(1.0hf));
}

f16vec3 saturated(f16vec3 c, float16_t amount) {
    float16_t y = luminance(c);
    return mix(f16vec3(y), c, f16vec3(amount));
}

f16vec3 split(f16vec3 c, f16vec3 shadows, f16vec3 lights) {
    float16_t y = luminance(c);
    f16vec3 tint = mix(shadows, lights, f16vec3(smoothstep(0.2hf, 0.8hf, y)));
    return c * (1.0hf + 0.25hf * (tint - 0.5hf));
}

float wave(float x, float time) {
    return 0.02 * sin(x * 9.0 + time) + 0.012 * sin(x * 23.0 - time * 1.7) + 0.006 * sin(x * 51.0 + time * 2.3);
}

f16vec3 scene(vec2 q, float time) {
    vec2 sun = vec2(0.15, 0.06);
    float d = length(q - sun);
    f16vec3 colour = mix(f16vec3(1.4hf, 0.7hf, 0.3hf), f16vec3(0.25hf, 0.3hf, 0.6hf), f16vec3(float16_t(smoothstep(-0.05, 0.5, q.y))));
    colour += f16vec3(2.0hf, 1.4hf, 0.8hf) * float16_t(smoothstep(0.09, 0.08, d));
    colour += f16vec3(0.9hf, 0.4hf, 0.15hf) * float16_t(0.1 / (0.15 + d));
    for (int i = 0; i < 4; i++) {
        float f = float(i);
        float level = 0.02 - 0.09 * f + wave(q.x * (1.5 - 0.2 * f) + f * 2.0, time * (0.3 + 0.3 * f)) * (1.0 + f);
        float16_t cover = float16_t(smoothstep(0.004, -0.004, q.y - level));
        float16_t glint = float16_t(pow(max(sin(q.x * 60.0 + q.y * 200.0 + time * 3.0 + f * 2.0), 0.0), 12.0) * exp(-20.0 * (q.x - sun.x) * (q.x - sun.x)));
        f16vec3 sea = mix(f16vec3(0.55hf, 0.35hf, 0.3hf), f16vec3(0.03hf, 0.06hf, 0.1hf), f16vec3(float16_t(f) * 0.33hf));
        colour = mix(colour, sea + glint * f16vec3(1.2hf, 0.8hf, 0.4hf), f16vec3(cover));
    }
    return colour;
}

float16_t noise(vec2 pixel, float seed) {
    return float16_t(fract(sin(dot(pixel, vec2(12.9898, 78.233)) + seed) * 43758.5453));
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0);
    f16vec3 colour = scene(q, u.time);
    f16vec3 halo = f16vec3(0.0hf);
    for (int i = 0; i < 6; i++) {
        float a = float(i) * 1.0471976;
        f16vec3 c = scene(q + 0.03 * vec2(cos(a), sin(a)), u.time);
        halo += max(c - f16vec3(1.0hf), f16vec3(0.0hf));
    }
    colour += halo * f16vec3(0.16hf, 0.05hf, 0.02hf);
    colour *= float16_t(exp2(p.stops));
    colour = curve(colour);
    colour = saturated(colour, 1.2hf);
    colour = split(colour, f16vec3(0.4hf, 0.5hf, 0.7hf), f16vec3(0.7hf, 0.55hf, 0.35hf));
    float16_t y = luminance(colour);
    float16_t n = noise(floor(uv * u.resolution), floor(u.time * 24.0)) - 0.5hf;
    colour += f16vec3(n * float16_t(p.grain) * (1.0hf - y) * 2.0hf);
    float16_t leak = float16_t(smoothstep(0.35, 0.0, uv.x + 0.1 * sin(uv.y * 4.0 + u.time)) * 0.35);
    colour += leak * f16vec3(1.0hf, 0.35hf, 0.1hf);
    float16_t vignette = float16_t(1.0 - 0.7 * dot(q, q));
    colour *= vignette;
    return vec4(vec3(clamp(colour, f16vec3(0.0hf), f16vec3(1.0hf))), 1.0);
}
