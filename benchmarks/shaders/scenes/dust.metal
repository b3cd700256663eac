// Small points, one to three pixels wide, in a slow whirl: 32 bytes each.
// @particles 1000000
// @param drift 0.35 0 2
// @param pull 0.6 0 2
// @param stay 0.9 0 1
// @param shine 0.6 0 8
struct Particle {
    float2 position; // uv
    float2 velocity; // uv a second
    float heat;
    float size; // of the picture's height
    float age;  // seconds
    uint seed;
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
    uint a = scrambled(id), b = scrambled(a + 1u), c = scrambled(b + 1u);
    Particle q;
    q.position = float2(unit(a), unit(b));
    q.velocity = float2(0.0);
    q.heat = 0.0;
    q.size = (1.0 + 2.0 * unit(c)) / 720.0;
    q.age = 0.0;
    q.seed = c;
    return q;
}

void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {
    float2 whirl = float2(sin(q.position.y * 9.0 + u.time), cos(q.position.x * 9.0 - u.time * 0.7));
    float2 force = p.drift * whirl - p.pull * (q.position - 0.5);
    q.velocity = (q.velocity + force * u.timeDelta) * 0.995;
    q.position = fract(q.position + q.velocity * u.timeDelta);
    q.heat = mix(q.heat, min(length(q.velocity) * 4.0, 1.0), 0.1);
    q.age += u.timeDelta;
}

float3 place(Particle q, constant Uniforms& u, constant Params& p) {
    return float3(q.position, q.size);
}

float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) {
    float3 ember = float3(0.08, 0.02, 0.005), gold = float3(0.06, 0.05, 0.03);
    return float4(mix(ember, gold, q.heat), 0.05);
}

float4 fade(float2 uv, Trails previous, constant Uniforms& u, constant Params& p) {
    return previous.at(0.5 + (uv - 0.5) * 0.998) * p.stay;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails trails) {
    return float4(1.0 - exp(-trails.at(uv).rgb * p.shine), 1.0);
}
