// Hexagons with coordinates and distances to their sides; waves run from cell to cell.

const vec2 stride = vec2(1.0, 1.7320508);

vec4 hexagon(vec2 q) {
    vec2 a = mod(q, stride) - stride * 0.5;
    vec2 b = mod(q + stride * 0.5, stride) - stride * 0.5;
    vec2 local = dot(a, a) < dot(b, b) ? a : b;
    return vec4(local, q - local);
}

float side(vec2 local) {
    vec2 d = abs(local);
    return 0.5 - max(dot(d, stride * 0.5), d.x);
}

float hash(vec2 q) {
    vec3 a = fract(q.xyx * 0.1031);
    a += dot(a, a.yzx + 33.33);
    return fract((a.x + a.y) * a.z);
}

vec4 shade(vec2 uv) {
    float aspect = u.resolution.x / u.resolution.y;
    vec2 q = uv * vec2(aspect, 1.0) * p.cells + 40.0;
    vec4 hex = hexagon(q);
    vec2 id = floor(hex.zw * 2.0 + 0.5);
    float d = side(hex.xy);
    vec2 middle = (uv - 0.5) * vec2(aspect, 1.0);
    vec2 cellAt = (hex.zw - 40.0) / p.cells - 0.5 * vec2(aspect, 1.0);
    float random = hash(id);
    float travel = length(cellAt) * 14.0 - u.time * p.wave;
    float raised = 0.5 + 0.5 * sin(travel + random * 0.8);
    float angle = atan(hex.y, hex.x);
    float facet = floor((angle + 3.1415927) / 1.0471976);
    float light = 0.6 + 0.4 * cos(facet * 1.0471976 - 0.9);
    float rim = smoothstep(0.03, 0.06, d) * smoothstep(0.16, 0.13, d);
    float core = smoothstep(0.13, 0.16, d);
    vec3 honey = mix(vec3(0.75, 0.4, 0.05), vec3(1.0, 0.8, 0.25), raised);
    vec3 colour = vec3(0.1, 0.05, 0.01);
    colour = mix(colour, honey * light * 0.8, rim);
    colour = mix(colour, honey * (0.6 + 0.4 * raised), core);
    float dot_ = smoothstep(0.02, 0.0, abs(length(hex.xy) - 0.22 * raised));
    colour += dot_ * 0.25 * core;
    if (random > 0.82) {
        float fill = smoothstep(0.0, 0.3, raised) * core;
        float swirl = 0.5 + 0.5 * sin(angle * 3.0 + length(hex.xy) * 30.0 - u.time * 2.0);
        colour = mix(colour, vec3(0.9, 0.95, 0.85) * (0.7 + 0.3 * swirl), fill * 0.7);
    } else if (random < 0.12) {
        colour *= 1.0 - 0.75 * core;
    }
    colour *= 1.15 - 0.6 * dot(middle, middle);
    return vec4(colour, 1.0);
}
