// A sheet of small signs from distances, one in each cell, chosen by a switch of twelve.

const float pi = 3.1415927;

vec2 turned(vec2 q, float a) {
    float c = cos(a), s = sin(a);
    return vec2(c * q.x - s * q.y, s * q.x + c * q.y);
}

float box(vec2 q, vec2 size) {
    vec2 d = abs(q) - size;
    return length(max(d, 0.0)) + min(max(d.x, d.y), 0.0);
}

float star(vec2 q, float r, int points, float inner) {
    float sector = pi / float(points);
    float a = atan(q.x, q.y) + 2.0 * pi;
    a = mod(a, 2.0 * sector) - sector;
    vec2 at = length(q) * vec2(cos(a), abs(sin(a)));
    vec2 outer = r * vec2(cos(sector), sin(sector));
    vec2 in_ = r * inner * vec2(1.0, 0.0);
    vec2 edge = outer - in_, d = at - in_;
    float h = clamp(dot(d, edge) / dot(edge, edge), 0.0, 1.0);
    float side = sign(d.x * edge.y - d.y * edge.x);
    return length(d - edge * h) * side;
}

float heart(vec2 q) {
    q.x = abs(q.x);
    q.y += 0.25;
    if (q.y + q.x > 0.5) {
        vec2 d = q - vec2(0.25 * 0.8, 0.42);
        return length(d) - 0.25;
    }
    vec2 a = q - vec2(0.0, 0.65), b = q - 0.5 * max(q.x + q.y, 0.0);
    return sqrt(min(dot(a, a), dot(b, b))) * sign(q.x - q.y) * 0.9;
}

float sign_(vec2 q, int kind, float time) {
    switch (kind) {
    case 0: return length(q) - 0.3;
    case 1: return star(q, 0.34, 5, 0.45);
    case 2: return heart(q * 1.2) / 1.2;
    case 3: return max(length(q) - 0.32, 0.3 - length(q - vec2(0.14, 0.06)));
    case 4: return min(box(q, vec2(0.3, 0.09)), box(q, vec2(0.09, 0.3)));
    case 5: {
        vec2 t = turned(q, 0.7853982);
        return min(box(t, vec2(0.32, 0.07)), box(t, vec2(0.07, 0.32)));
    }
    case 6: {
        vec2 h = abs(q);
        return max(h.x * 0.866 + h.y * 0.5, h.y) - 0.27;
    }
    case 7: {
        float shaft = box(q + vec2(0.08, 0.0), vec2(0.2, 0.06));
        float tip = max(abs(q.y) + q.x - 0.32, 0.08 - q.x);
        return min(shaft, tip * 0.7071);
    }
    case 8: return abs(length(q) - 0.24) - 0.07;
    case 9: {
        float d = box(q, vec2(0.28, 0.2)) - 0.03;
        float flap = abs(q.y - 0.2 + abs(q.x) * 0.75) - 0.015;
        return max(d, -flap);
    }
    case 10: {
        float a = atan(q.y, q.x) + time * 0.5;
        float teeth = 0.26 + 0.04 * smoothstep(-0.3, 0.3, sin(a * 8.0));
        return max(length(q) - teeth, 0.1 - length(q));
    }
    default: {
        float bulb = length(q - vec2(0.0, 0.06)) - 0.2;
        float foot = box(q + vec2(0.0, 0.2), vec2(0.08, 0.1));
        return min(bulb, foot);
    }
    }
}

uint mixed(ivec2 cell) {
    uint n = uint(cell.x + 100) * 0x1b873593u + uint(cell.y + 100) * 0xcc9e2d51u;
    n ^= n >> 16;
    n *= 0x85ebca6bu;
    return n ^ (n >> 13);
}

vec4 shade(vec2 uv) {
    vec2 q = uv * vec2(u.resolution.x / u.resolution.y, 1.0) * p.cells;
    ivec2 cell = ivec2(floor(q));
    uint n = mixed(cell);
    vec2 local = fract(q) - 0.5;
    float beat = 1.0 + 0.06 * sin(u.time * 2.0 + float(n & 63u));
    local = turned(local, 0.15 * sin(u.time + float(n & 31u))) / beat;
    int kind = int(n % 12u);
    float d = sign_(local, kind, u.time);
    float soft = p.cells / u.resolution.y;
    vec3 ground = 0.75 + 0.2 * cos(vec3(0.0, 2.0, 4.0) + float((n >> 8) & 7u));
    vec3 paint = 0.45 + 0.4 * cos(vec3(1.0, 3.0, 5.0) + float((n >> 12) & 15u));
    vec2 e = abs(fract(q) - 0.5);
    float tile = smoothstep(0.49, 0.46, max(e.x, e.y));
    vec3 colour = ground * (0.8 + 0.2 * tile);
    float shadow = sign_(local - vec2(0.02, -0.03), kind, u.time);
    colour *= 0.7 + 0.3 * smoothstep(-0.02, 0.06, shadow);
    colour = mix(colour, vec3(0.15, 0.12, 0.18), smoothstep(soft, -soft, d - p.outline));
    colour = mix(colour, paint * (1.0 + 0.3 * local.y), smoothstep(soft, -soft, d));
    float inner = smoothstep(soft, -soft, abs(d + 0.05) - 0.006);
    colour = mix(colour, paint * 1.3, inner * 0.5);
    return vec4(colour, 1.0);
}
