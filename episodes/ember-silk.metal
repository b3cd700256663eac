// Ember Silk
//
// @episode 1 Ember Silk
// @still 12
// @length 60
// @teaches Painting with distance: one falloff, sharp on one side and soft on the other, makes cloth
// @category Quiet
// @tags glow, sine, calm
//
// Folded veils of warm light drift over a night-blue ground. Nothing is drawn here but distances to
// a few curves; the trick is that light falls off quickly on one side of each curve and slowly on
// the other, which the eye reads as a fold in hanging cloth.

// @param speed 0.5 0.0 2.0 How fast the veils move
// @param folds 1.0 0.3 2.5 How tightly the cloth is folded
// @param warmth 0.62 0.0 1.0 From moonlight to firelight
// @param sparks 0.6 0.0 1.0 Embers that rise through the cloth

constant int veils = 5;

// Each veil is turned a little against the one before it. A rotation is a constant matrix of
// columns: (cos, sin), (-sin, cos), here for about 21 degrees.
constant float2x2 turn = float2x2(float2(0.934, 0.357), float2(-0.357, 0.934));

// Where one veil hangs and what it looks like there.
struct Veil {
    float height;  // of its bright edge
    float sheen;   // how much it faces us, 0 to 1
};

Veil veilAt(float x, float t, float phase, float folds) {
    // Two sines with periods that do not fit each other: the curve never repeats visibly.
    float slow = sin(x * 1.35 * folds + t * 0.31 + phase);
    float fast = sin(x * 2.85 * folds - t * 0.47 + phase * 2.3 + slow);
    Veil veil;
    veil.height = 0.20 * slow + 0.075 * fast;
    veil.sheen = 0.55 + 0.45 * sin(x * 0.9 + phase * 3.1 - t * 0.21);
    return veil;
}

// Light around an edge at distance d: above it a long glow, below it a quick end.
float fold(float d) {
    return d > 0.0 ? exp2(-6.5 * d) : exp2(70.0 * d);
}

// Night blue through ember and gold to white-hot; `warmth` slides the whole ramp.
float3 ramp(float x, float warmth) {
    float3 cold = mix(float3(0.05, 0.10, 0.24), float3(0.46, 0.66, 0.95), x);
    float3 warm = mix(float3(0.42, 0.06, 0.05), float3(1.00, 0.62, 0.22), x);
    return mix(cold, warm, warmth);
}

// A cheap hash without sines: the same number for the same cell on every GPU.
float hash(float2 cell) {
    float3 q = fract(float3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

// Embers: one candidate in each cell of a grid that slowly rises, most cells stay empty.
float emberLight(float2 q, float t) {
    float2 at = q * 7.0 + float2(0.25 * sin(q.y * 3.0 + t * 0.2), -t * 0.22);
    float2 cell = floor(at);
    float seed = hash(cell);
    float2 centre = 0.3 + 0.4 * float2(fract(seed * 71.7), fract(seed * 413.1));
    float d = length(at - cell - centre);
    float life = saturate(seed * 4.0 - 2.8);
    float pulse = 0.5 + 0.5 * sin(t * (0.6 + seed) + seed * 40.0);
    return life * pulse * (0.0022 / (d * d + 0.0016)) * smoothstep(0.30, 0.12, d);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    // The shorter side of the picture is 1 long, whatever its shape.
    float2 q = (uv - 0.5) * u.resolution / min(u.resolution.x, u.resolution.y);
    float t = u.time * p.speed;

    float3 colour = mix(float3(0.012, 0.016, 0.040), float3(0.030, 0.012, 0.022), uv.y);
    float2 at = q;
    for (int i = 0; i < veils; i++) {
        float depth = float(i) / float(veils - 1); // 0 at the back, 1 in front
        Veil veil = veilAt(at.x, t + depth * 9.0, float(i) * 1.9, p.folds);
        float light = fold(at.y - veil.height) * veil.sheen * (0.30 + 0.45 * depth);
        float heat = 0.25 + 0.75 * light;
        colour += ramp(heat, mix(p.warmth - 0.35, p.warmth + 0.30, depth)) * light * light * 1.6;
        colour += ramp(0.15, p.warmth) * light * 0.22;
        at = turn * at;
    }
    colour += ramp(0.9, p.warmth) * emberLight(q, t) * p.sparks;

    // Highlights roll off instead of clipping, the corners rest in shade, and a little noise hides
    // the steps of 8-bit colour.
    colour = 1.0 - exp(-1.25 * colour);
    colour *= 1.0 - 0.45 * dot(uv - 0.5, uv - 0.5) * 2.0;
    colour += (hash(uv * u.resolution) - 0.5) / 255.0;
    return float4(colour, 1.0);
}
