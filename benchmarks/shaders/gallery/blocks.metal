// A world of blocks: the ray steps from block to block, and leaves as soon as one is full.
// @param density 0.45 0.1 0.9
// @param speed 1.0 0 4

uint mixed(uint3 q) {
    uint n = q.x * 73856093u ^ q.y * 19349663u ^ q.z * 83492791u;
    n ^= n >> 13;
    n *= 0x5bd1e995u;
    return n ^ (n >> 15);
}

float ground(float2 q) {
    return 2.0 * sin(q.x * 0.18) * cos(q.y * 0.15) + 1.2 * sin(q.x * 0.07 + q.y * 0.11);
}

bool isFull(int3 block, float density) {
    float level = ground(float2(block.xz));
    if (float(block.y) > level + 3.0)
        return false;
    if (float(block.y) < level - 1.0)
        return true;
    uint n = mixed(uint3(block + 4096));
    return float(n & 1023u) < density * 1023.0;
}

float3 colourOf(int3 block) {
    uint n = mixed(uint3(block + 4096));
    switch (n >> 29) {
    case 0u: return float3(0.55, 0.35, 0.2);
    case 1u:
    case 2u: return float3(0.35, 0.55, 0.2);
    case 3u: return float3(0.5, 0.5, 0.52);
    case 7u: return float3(0.85, 0.7, 0.3);
    default: return float3(0.3, 0.45, 0.2);
    }
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    float3 eye = float3(u.time * p.speed, 7.5, 0.5 + u.time * 0.3);
    float3 ray = normalize(float3(at.x + 0.3, at.y - 0.5, 1.4));
    float3 sky = mix(float3(0.75, 0.85, 0.95), float3(0.35, 0.55, 0.85), clamp(ray.y * 2.0 + 0.4, 0.0, 1.0));
    int3 block = int3(floor(eye));
    int3 direction = int3(sign(ray));
    float3 delta = abs(1.0 / ray);
    float3 side = (float3(direction) * (float3(block) - eye) + float3(direction) * 0.5 + 0.5) * delta;
    int axis = 0;
    float t = 0.0;
    for (int i = 0; i < 70; i++) {
        if (isFull(block, p.density)) {
            float3 hit = eye + ray * t;
            float3 within = hit - float3(block);
            float2 face = axis == 0 ? within.yz : (axis == 1 ? within.xz : within.xy);
            float2 border = smoothstep(0.0, 0.06, face) * smoothstep(0.0, 0.06, 1.0 - face);
            float light = axis == 1 ? 1.0 : (axis == 0 ? 0.7 : 0.55);
            bool shaded = isFull(block + int3(0, 1, 0), p.density) || isFull(block + int3(1, 2, 0), p.density);
            if (shaded && axis == 1)
                light = 0.5;
            float3 colour = colourOf(block) * light * (0.75 + 0.25 * border.x * border.y);
            return float4(mix(sky, colour, exp(-0.0016 * t * t)), 1.0);
        }
        if (side.x < side.y && side.x < side.z) {
            t = side.x;
            side.x += delta.x;
            block.x += direction.x;
            axis = 0;
        } else if (side.y < side.z) {
            t = side.y;
            side.y += delta.y;
            block.y += direction.y;
            axis = 1;
        } else {
            t = side.z;
            side.z += delta.z;
            block.z += direction.z;
            axis = 2;
        }
        if (t > 45.0)
            break;
    }
    return float4(sky, 1.0);
}
