// A maze: every cell opens one of two walls, so the whole is a tree; a light walks on it.
// @param cells 22 6 60
// @param wall 0.14 0.05 0.3

uint mixed(uint2 q) {
    uint n = q.x * 0x8da6b343u + q.y * 0xd8163841u;
    n ^= n >> 16;
    n *= 0x7feb352du;
    n ^= n >> 15;
    n *= 0x846ca68bu;
    return n ^ (n >> 16);
}

// Whether the cell opens its upper wall (else its right one). The border has no choice.
bool opensUp(int2 cell, int2 size) {
    if (cell.x == size.x - 1)
        return true;
    if (cell.y == size.y - 1)
        return false;
    return (mixed(uint2(cell + 16)) & 1u) != 0u;
}

bool isWall(int2 cell, float2 f, int2 size, float wall) {
    bool up = opensUp(cell, size);
    bool isTop = f.y > 1.0 - wall, isRight = f.x > 1.0 - wall;
    if (isTop && isRight)
        return true;
    if (isTop)
        return !up || cell.y == size.y - 1;
    if (isRight)
        return up || cell.x == size.x - 1;
    return cell.x < 0 || cell.y < 0;
}

// The number of steps from a cell to the end of the tree, the upper right corner.
int way(int2 cell, int2 size) {
    int count = 0;
    for (int i = 0; i < 96; i++) {
        if (cell.x == size.x - 1 && cell.y == size.y - 1)
            break;
        if (opensUp(cell, size))
            cell.y++;
        else
            cell.x++;
        count++;
    }
    return count;
}

float3 paint(float x) {
    return 0.5 + 0.5 * cos(float3(0.0, 0.9, 1.9) + x * 6.2831853);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float aspect = u.resolution.x / u.resolution.y;
    int2 size = int2(int(p.cells * aspect), int(p.cells));
    float2 q = (uv * 1.04 - 0.02) * float2(size);
    int2 cell = int2(floor(q));
    float2 f = fract(q);
    if (cell.x < 0 || cell.y < 0 || cell.x >= size.x || cell.y >= size.y)
        return float4(0.12, 0.1, 0.12, 1.0);
    if (isWall(cell, f, size, p.wall)) {
        float2 e = abs(f - 0.5);
        float light = 0.75 + 0.25 * smoothstep(0.5, 0.35, min(e.x, e.y));
        return float4(float3(0.17, 0.15, 0.2) * light, 1.0);
    }
    int steps = way(cell, size);
    float3 ground = paint(float(steps) * 0.015) * 0.55 + 0.25;
    float pulse = fract(float(steps) * 0.04 + u.time * 0.4);
    ground *= 0.8 + 0.5 * smoothstep(0.85, 1.0, pulse);
    float shadow = 1.0;
    if (isWall(cell, f + float2(0.0, 0.12), size, p.wall) || isWall(cell, f + float2(0.1, 0.0), size, p.wall))
        shadow = 0.7;
    int2 walker = int2(int(u.time * 2.0) % max(size.x / 2, 1), 2);
    float near = 10.0;
    for (int i = 0; i < 80; i++) {
        float2 d = q - (float2(walker) + 0.5 - 0.5 * p.wall);
        near = min(near, dot(d, d));
        if (walker.x == size.x - 1 && walker.y == size.y - 1)
            break;
        if (opensUp(walker, size))
            walker.y++;
        else
            walker.x++;
    }
    float3 colour = ground * shadow;
    colour = mix(colour, float3(1.0, 0.95, 0.7), smoothstep(0.09, 0.02, near));
    return float4(colour, 1.0);
}
