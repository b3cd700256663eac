// Towers on a grid at night: one ray walks from cell to cell and tests one box in each.
// @param height 3.0 0.5 6
// @param lit 0.35 0 1

float hash(float2 q) {
    float3 a = fract(q.xyx * float3(0.1031, 0.1131, 0.0973));
    a += dot(a, a.yzx + 19.19);
    return fract((a.x + a.y) * a.z);
}

float3 windows(float3 hit, float3 normal, float2 cell, float lit) {
    if (normal.y > 0.5)
        return float3(0.03, 0.03, 0.04);
    float along = abs(normal.x) > 0.5 ? hit.z : hit.x;
    float2 pane = float2(along, hit.y) * float2(10.0, 8.0);
    float2 id = floor(pane), inside = fract(pane) - 0.5;
    float frame = step(abs(inside.x), 0.3) * step(abs(inside.y), 0.32);
    float on = step(hash(id + cell * 17.0), lit);
    float3 lamp = mix(float3(1.0, 0.75, 0.4), float3(0.6, 0.8, 1.0), hash(id + 3.1));
    return float3(0.05, 0.05, 0.07) + frame * mix(float3(0.02, 0.03, 0.05), lamp, on);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    float3 eye = float3(u.time * 0.7, 4.2, u.time * 0.5);
    float3 ray = normalize(float3(at.x * 0.9 + 0.6, at.y * 0.8 - 0.55, 1.3 - at.x * 0.4));
    float3 colour = mix(float3(0.1, 0.05, 0.12), float3(0.01, 0.01, 0.04), clamp(ray.y * 3.0 + 0.5, 0.0, 1.0));
    float2 cell = floor(eye.xz);
    float2 direction = sign(ray.xz), inverse = 1.0 / ray.xz;
    float t = 0.0;
    for (int i = 0; i < 60; i++) {
        float2 far = (cell + max(direction, 0.0) - eye.xz) * inverse;
        float leave = min(far.x, far.y);
        float tall = p.height * (0.15 + hash(cell) * hash(cell + 7.3));
        float3 extent = float3(0.38, tall, 0.38);
        float3 local = eye - float3(cell.x + 0.5, 0.0, cell.y + 0.5);
        float3 m = 1.0 / ray, n = m * local, k = abs(m) * extent;
        float3 t1 = -n - k, t2 = -n + k;
        float enter = max(max(t1.x, t1.y), t1.z), exit = min(min(t2.x, t2.y), t2.z);
        if (enter < exit && exit > 0.0) {
            float3 normal = -sign(ray) * step(t1.yzx, t1) * step(t1.zxy, t1);
            float3 hit = local + ray * enter;
            float fog = exp(-0.03 * enter);
            colour = mix(colour, windows(hit, normal, cell, p.lit), fog);
            break;
        }
        float ground = -eye.y / ray.y;
        if (ray.y < 0.0 && ground < leave) {
            float2 street = abs(fract(eye.xz + ray.xz * ground) - 0.5);
            float line = smoothstep(0.48, 0.49, max(street.x, street.y));
            colour = mix(colour, float3(0.04) + line * float3(0.5, 0.4, 0.1), exp(-0.03 * ground));
            break;
        }
        if (far.x < far.y)
            cell.x += direction.x;
        else
            cell.y += direction.y;
        t = leave;
        if (t > 45.0 || (ray.y > 0.0 && eye.y + ray.y * t > 7.0))
            break;
    }
    return float4(pow(colour, float3(0.7)), 1.0);
}
