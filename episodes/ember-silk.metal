// Ember Silk
//
// @episode 1 Ember Silk
// @still 45
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
// columns: (cos, sin), (-sin, cos), here for about 12 degrees.
constant float2x2 turn = float2x2(float2(0.978, 0.208), float2(-0.208, 0.978));

// Where one veil hangs and what it looks like there.
struct Veil {
    float height; // of its bright edge
    float sheen;  // how much it faces us, 0 to 1
};

Veil veilAt(float x, float t, float phase, float folds) {
    // Two sines with periods that do not fit each other: the curve never repeats visibly.
    float slow = sin(x * 1.35 * folds + t * 0.31 + phase);
    float fast = sin(x * 2.85 * folds - t * 0.47 + phase * 2.3 + slow);
    Veil veil;
    veil.height = 0.19 * slow + 0.07 * fast;
    veil.sheen = 0.60 + 0.40 * slow * (0.9 - 0.6 * fast);
    return veil;
}

// Light around an edge at distance d: above it a long glow, below it a quick end.
float fold(float d) {
    return exp2(d > 0.0 ? -7.0 * d : 90.0 * d);
}

// The two ends of a veil's colours: in the cloth and at its brightest.
struct Dye {
    float3 deep, bright;
    float3 at(float light) const { return mix(deep, bright, light); }
};

// Night blue to moonlight, or ember to gold; `warmth` slides between the two.
Dye dyeOf(float warmth) {
    float w = smoothstep(0.0, 1.0, warmth);
    return Dye{mix(float3(0.03, 0.09, 0.30), float3(0.62, 0.07, 0.03), w),
               mix(float3(0.40, 0.70, 1.00), float3(1.00, 0.66, 0.26), w)};
}

// A cheap hash without sines: the same number for the same cell on every GPU.
float hash(float2 cell) {
    float3 q = fract(float3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

// Embers: one candidate in each cell of a grid that slowly rises; most cells stay empty.
float emberLight(float2 q, float t) {
    float2 at = q * 8.0 + float2(0.3 * sin(q.y * 3.0 + t * 0.2), -t * 0.25);
    float2 cell = floor(at);
    float seed = hash(cell);
    float2 centre = 0.3 + 0.4 * float2(fract(seed * 71.7), fract(seed * 413.1));
    float2 away = at - cell - centre;
    float square = dot(away, away);
    float life = saturate(seed * 5.0 - 3.9);
    float pulse = 0.5 + 0.5 * sin(t * (0.6 + seed) + seed * 40.0);
    return life * pulse * (0.0009 / (square + 0.0007)) * smoothstep(0.07, 0.0, square);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    // The shorter side of the picture is 1 long, whatever its shape.
    float2 q = (uv - 0.5) * u.resolution / min(u.resolution.x, u.resolution.y);
    float t = u.time * p.speed;

    float3 colour = mix(float3(0.010, 0.014, 0.045), float3(0.030, 0.008, 0.020), uv.y);
    // The first veil is turned backwards, so that the last ones stand upright across it.
    float2 at = float2(q.x * 0.90 + q.y * 0.44, q.y * 0.90 - q.x * 0.44);
    for (int i = 0; i < veils; i++) {
        float depth = float(i) / float(veils - 1); // 0 at the back, 1 in front
        Veil veil = veilAt(at.x, t + depth * 9.0, float(i) * 1.9, p.folds);
        float light = fold(at.y - veil.height + 0.17 - 0.05 * float(i)) * veil.sheen;
        Dye dye = dyeOf(p.warmth + 0.9 * (depth - 0.45));
        // The body of the cloth, and the fine bright line of its edge.
        float square = light * light;
        colour += dye.at(0.20 + 0.35 * light) * (light * (0.24 + 0.24 * depth));
        colour += dye.bright * (square * square * (0.35 + 0.60 * depth));
        at = turn * at;
    }
    colour += float3(0.95, 0.55, 0.20) * (emberLight(q, t) * p.sparks);

    // Highlights roll off instead of clipping, the corners rest in shade, and a little noise hides
    // the steps of 8-bit colour.
    colour = 1.0 - exp(-1.6 * colour);
    colour *= 1.0 - 0.9 * dot(uv - 0.5, uv - 0.5);
    colour += (hash(uv * u.resolution) - 0.5) / 255.0;
    return float4(colour, 1.0);
}
