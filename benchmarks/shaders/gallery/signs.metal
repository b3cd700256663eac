// A sheet of small signs from distances, one in each cell, chosen by a switch of twelve.
// @param cells 6 2 14
// @param outline 0.03 0 0.1

constant float pi = 3.1415927;

float2 turned(float2 q, float a) {
    float c = cos(a), s = sin(a);
    return float2(c * q.x - s * q.y, s * q.x + c * q.y);
}

float box(float2 q, float2 size) {
    float2 d = abs(q) - size;
    return length(max(d, 0.0)) + min(max(d.x, d.y), 0.0);
}

float star(float2 q, float r, int points, float inner) {
    float sector = pi / float(points);
    float a = atan2(q.x, q.y) + 2.0 * pi;
    a = fmod(a, 2.0 * sector) - sector;
    float2 at = length(q) * float2(cos(a), abs(sin(a)));
    float2 outer = r * float2(cos(sector), sin(sector));
    float2 in_ = r * inner * float2(1.0, 0.0);
    float2 edge = outer - in_, d = at - in_;
    float h = clamp(dot(d, edge) / dot(edge, edge), 0.0, 1.0);
    float side = sign(d.x * edge.y - d.y * edge.x);
    return length(d - edge * h) * side;
}

float heart(float2 q) {
    q.x = abs(q.x);
    q.y += 0.25;
    if (q.y + q.x > 0.5) {
        float2 d = q - float2(0.25 * 0.8, 0.42);
        return length(d) - 0.25;
    }
    float2 a = q - float2(0.0, 0.65), b = q - 0.5 * max(q.x + q.y, 0.0);
    return sqrt(min(dot(a, a), dot(b, b))) * sign(q.x - q.y) * 0.9;
}

float sign_(float2 q, int kind, float time) {
    switch (kind) {
    case 0: return length(q) - 0.3;
    case 1: return star(q, 0.34, 5, 0.45);
    case 2: return heart(q * 1.2) / 1.2;
    case 3: return max(length(q) - 0.32, 0.3 - length(q - float2(0.14, 0.06)));
    case 4: return min(box(q, float2(0.3, 0.09)), box(q, float2(0.09, 0.3)));
    case 5: {
        float2 t = turned(q, 0.7853982);
        return min(box(t, float2(0.32, 0.07)), box(t, float2(0.07, 0.32)));
    }
    case 6: {
        float2 h = abs(q);
        return max(h.x * 0.866 + h.y * 0.5, h.y) - 0.27;
    }
    case 7: {
        float shaft = box(q + float2(0.08, 0.0), float2(0.2, 0.06));
        float tip = max(abs(q.y) + q.x - 0.32, 0.08 - q.x);
        return min(shaft, tip * 0.7071);
    }
    case 8: return abs(length(q) - 0.24) - 0.07;
    case 9: {
        float d = box(q, float2(0.28, 0.2)) - 0.03;
        float flap = abs(q.y - 0.2 + abs(q.x) * 0.75) - 0.015;
        return max(d, -flap);
    }
    case 10: {
        float a = atan2(q.y, q.x) + time * 0.5;
        float teeth = 0.26 + 0.04 * smoothstep(-0.3, 0.3, sin(a * 8.0));
        return max(length(q) - teeth, 0.1 - length(q));
    }
    default: {
        float bulb = length(q - float2(0.0, 0.06)) - 0.2;
        float foot = box(q + float2(0.0, 0.2), float2(0.08, 0.1));
        return min(bulb, foot);
    }
    }
}

uint mixed(int2 cell) {
    uint n = uint(cell.x + 100) * 0x1b873593u + uint(cell.y + 100) * 0xcc9e2d51u;
    n ^= n >> 16;
    n *= 0x85ebca6bu;
    return n ^ (n >> 13);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = uv * float2(u.resolution.x / u.resolution.y, 1.0) * p.cells;
    int2 cell = int2(floor(q));
    uint n = mixed(cell);
    float2 local = fract(q) - 0.5;
    float beat = 1.0 + 0.06 * sin(u.time * 2.0 + float(n & 63u));
    local = turned(local, 0.15 * sin(u.time + float(n & 31u))) / beat;
    int kind = int(n % 12u);
    float d = sign_(local, kind, u.time);
    float soft = p.cells / u.resolution.y;
    float3 ground = 0.75 + 0.2 * cos(float3(0.0, 2.0, 4.0) + float((n >> 8) & 7u));
    float3 paint = 0.45 + 0.4 * cos(float3(1.0, 3.0, 5.0) + float((n >> 12) & 15u));
    float2 e = abs(fract(q) - 0.5);
    float tile = smoothstep(0.49, 0.46, max(e.x, e.y));
    float3 colour = ground * (0.8 + 0.2 * tile);
    float shadow = sign_(local - float2(0.02, -0.03), kind, u.time);
    colour *= 0.7 + 0.3 * smoothstep(-0.02, 0.06, shadow);
    colour = mix(colour, float3(0.15, 0.12, 0.18), smoothstep(soft, -soft, d - p.outline));
    colour = mix(colour, paint * (1.0 + 0.3 * local.y), smoothstep(soft, -soft, d));
    float inner = smoothstep(soft, -soft, abs(d + 0.05) - 0.006);
    colour = mix(colour, paint * 1.3, inner * 0.5);
    return float4(colour, 1.0);
}
