float hash(vec2 cell) {
    vec3 q = fract(vec3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

float noise(vec2 q) {
    vec2 cell = floor(q);
    vec2 f = fract(q);
    f = f * f * (3.0 - 2.0 * f);
    return mix(mix(hash(cell), hash(cell + vec2(1, 0)), f.x),
               mix(hash(cell + vec2(0, 1)), hash(cell + vec2(1, 1)), f.x), f.y);
}

const mat2 turn = mat2(1.6, 1.2, -1.2, 1.6);

float fbm(vec2 q) {
    float sum = 0.0, weight = 0.5;
    for (int i = 0; i < 5; i++) {
        sum += weight * noise(q);
        q = turn * q;
        weight *= 0.5;
    }
    return sum;
}

vec4 shade(vec2 uv) {
    vec2 q = uv * p.scale;
    vec2 push = vec2(fbm(q + u.time * 0.1), fbm(q + vec2(5.2, 1.3)));
    float height = fbm(q + p.warp * push);
    vec3 colour = mix(vec3(0.05, 0.10, 0.20), vec3(0.90, 0.70, 0.40), height);
    return vec4(mix(colour, vec3(0.7, 0.2, 0.1), push.y * push.y), 1.0);
}
