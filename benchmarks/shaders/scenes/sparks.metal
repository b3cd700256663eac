// Soft discs about eight pixels wide, thrown up in three dimensions: 64 bytes each.
// @particles 100000
// @param gravity 1.2 0 4
// @param spread 0.5 0 2
// @param stay 0.82 0 1
// @param shine 1.2 0 8
struct Particle {
    float3 position; // of a room 2 wide and high, the eye 3 before its middle
    float3 velocity; // a second
    float4 colour;
    float age;  // seconds
    float life; // seconds
    float size; // of the picture's height at the middle of the room
    float spin; // radians a second, around the fountain
};

uint scrambled(uint x) {
    x = (x ^ (x >> 16)) * 0x7feb352du;
    x = (x ^ (x >> 15)) * 0x846ca68bu;
    return x ^ (x >> 16);
}

float unit(uint x) {
    return float(x >> 8) / 16777216.0;
}

Particle spawn(uint id, constant Params& p) {
    uint a = scrambled(id), b = scrambled(a + 1u), c = scrambled(b + 1u), d = scrambled(c + 1u);
    float angle = unit(a) * 6.2831853, out = sqrt(unit(b));
    Particle q;
    q.position = float3(2.4 * (unit(d) - 0.5), 1.6 * (unit(c) - 0.5), 1.6 * (unit(b) - 0.5));
    q.velocity = float3(cos(angle) * out * p.spread, 1.0 + unit(c), sin(angle) * out * p.spread);
    q.colour = float4(0.05, 0.02 + 0.03 * unit(d), 0.04 * unit(c), 0.05);
    q.age = unit(d) * 2.0;
    q.life = 2.0 + unit(a);
    q.size = (7.0 + 2.0 * unit(b)) / 720.0;
    q.spin = unit(c) - 0.5;
    return q;
}

void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {
    float turn = q.spin * u.timeDelta;
    float c = cos(turn), s = sin(turn);
    q.velocity.y -= p.gravity * u.timeDelta;
    q.velocity.xz = float2(c * q.velocity.x - s * q.velocity.z, s * q.velocity.x + c * q.velocity.z);
    q.position += q.velocity * u.timeDelta;
    if (q.position.y < -1.0) {
        q.position.y = -2.0 - q.position.y;
        q.velocity.y = -0.8 * q.velocity.y;
    }
    q.age += u.timeDelta;
    q.age = q.age > q.life ? 0.0 : q.age;
    q.colour.w = 0.05 * (1.0 - q.age / q.life);
}

float3 place(Particle q, constant Uniforms& u, constant Params& p) {
    float near = 3.0 / (3.0 + q.position.z);
    float2 at = q.position.xy * near;
    at.x *= u.resolution.y / u.resolution.x;
    return float3(0.5 + 0.5 * at, q.size * near);
}

float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) {
    float glow = saturate(1.0 - dot(at, at));
    return q.colour * (glow * glow * (0.2 + 10.0 * q.colour.w));
}

float4 fade(float2 uv, Trails previous, constant Uniforms& u, constant Params& p) {
    return previous.at(uv) * p.stay;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails trails) {
    return float4(1.0 - exp(-trails.at(uv).rgb * p.shine), 1.0);
}
