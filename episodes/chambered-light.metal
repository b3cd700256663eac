// Chambered Light
//
// @episode 8 Chambered Light
// @grid 162
// @still 9
// @length 60
// @teaches One grid as many surfaces: a shell, its walls and its rims, cut from each other by discarding what lies between
// @category Nature
// @tags spiral, shell, mesh, iridescence
//
// A nautilus, cut in half. It grows by the same factor with every turn, so one formula makes all of
// it: a half tube around a spiral, and behind the animal, which lives in the last room, the walls of
// the rooms that it has left. A light wanders through them from the first to the last.

// @param wander 0.5 0.0 2.0 How fast the light goes from room to room
// @param glow 1.0 0.0 2.0 How bright it is
// @param pearl 0.7 0.0 1.5 Colours of the mother-of-pearl
// @param sway 0.6 0.0 1.5 How far the shell turns
// @param key 0.7 0.0 1.5 Light from outside

struct Vertex {
    float4 position [[position]];
    float3 place;   // in the shell's own space, cut along z = 0
    float3 normal;  // the same, towards the open side
    float3 toEye;   // the same
    float3 key;     // the same: the direction of the light from outside
    float3 up;      // the same
    float room;     // counted from the first; whole numbers are walls
    float2 part;    // 0 and 1 by turns in each direction; between two surfaces it is neither
    float kind;     // tube, its rim, wall, its rim
    float height;   // of the tube here, to measure distances by
};

constant float cells = 162.0;      // of the directive above
constant float growth = 0.183;     // of the logarithm of the size, in each radian
constant float tube = 0.51;        // radius of the tube beside that of the spiral
constant float flat_ = 0.86;       // of its depth
constant float first = -20.2;      // the angle where the shell begins; it ends at 0
constant float lastWall = -2.35;   // from here on the animal lives
constant float step_ = 0.34;       // angle from one wall to the next
constant int walls = 32;

// The rows of the grid, as parts: the tube, the rim of its cut, walls and rims of walls in four
// blocks each, with a row between parts that is not shown.
constant float tubeRows = 66.0;
constant float rimRows = 6.0;
constant float wallRows = 11.0;
constant float edgeRows = 8.0;

float hash(float2 cell) {
    float3 q = fract(float3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

float noise(float2 q) {
    float2 cell = floor(q);
    float2 f = q - cell;
    float2 s = f * f * (3.0 - 2.0 * f);
    float2 e = float2(0.0, 1.0);
    return mix(mix(hash(cell), hash(cell + e.yx), s.x),
               mix(hash(cell + e.xy), hash(cell + e.yy), s.x), s.y);
}

// A point of the shell: the spiral's angle, and a place in the tube's half disk around it: along
// the radius from -1 to 1, and depth from 0, at the cut, to 1.
float3 at(float angle, float along, float depth) {
    float size = exp(growth * angle);
    float radius = size * (1.0 + tube * along);
    return float3(cos(angle) * radius, sin(angle) * radius, -size * tube * flat_ * depth);
}

// Walls bend back in their middle.
float3 wallAt(float angle, float turn, float middle) {
    float bend = 0.20 * (1.0 - middle * middle);
    return at(angle - bend, cos(turn) * middle, sin(turn) * middle);
}

// One of the surfaces: x and y from 0 to 1 on it, and which wall where there are many.
float3 surface(int kind, float x, float y, float angle) {
    if (kind == 0) return at(mix(first, 0.0, x), cos(y * 3.14159265), sin(y * 3.14159265));
    if (kind == 1) {
        // The rim is a flat band along the cut, a little rounded.
        float a = mix(first, 0.0, x);
        float c = y * 2.0 - 1.0;
        float3 q = at(a, 1.0 + 0.035 * c, 0.0);
        q.z = exp(growth * a) * 0.022 * (1.0 - c * c);
        return q;
    }
    if (kind == 2) return wallAt(angle, x * 3.14159265, y);
    float s = x * 2.0 - 1.0;
    float c = y * 2.0 - 1.0;
    float3 q = wallAt(angle + 0.016 * c, s < 0.0 ? 3.14159265 : 0.0, abs(s));
    q.z = exp(growth * angle) * 0.014 * (1.0 - c * c);
    return q;
}

float2 rotate(float2 v, float a) {
    float c = cos(a), s = sin(a);
    return float2(v.x * c - v.y * s, v.x * s + v.y * c);
}

// The shell's place before the camera: it leans and turns slowly, and never shows its back.
float3 turned(float3 q, float t, constant Params& p) {
    q.xy = rotate(q.xy, 1.02 + 0.22 * p.sway * sin(t * 0.071));
    q.xz = rotate(q.xz, 0.62 * p.sway * sin(t * 0.19 + 0.5));
    q.yz = rotate(q.yz, 0.34 + 0.30 * p.sway * sin(t * 0.133));
    return q;
}

// And back: what stands in the room, as the shell sees it.
float3 turnedBack(float3 q, float t, constant Params& p) {
    q.yz = rotate(q.yz, -0.34 - 0.30 * p.sway * sin(t * 0.133));
    q.xz = rotate(q.xz, -0.62 * p.sway * sin(t * 0.19 + 0.5));
    q.xy = rotate(q.xy, -1.02 - 0.22 * p.sway * sin(t * 0.071));
    return q;
}

constant float3 eye = float3(0.0, 0.0, 5.0);

Vertex corner(float2 grid, constant Uniforms& u, constant Params& p) {
    float row = round(grid.y * cells), column = round(grid.x * cells);
    Vertex v;
    int kind = 0;
    float x = column / cells, y = 0.0, angle = 0.0;
    float block = tubeRows + 1.0 + rimRows + 2.0;
    if (row <= tubeRows) {
        y = row / tubeRows;
        v.part = float2(0.0);
    } else if (row < block) {
        kind = 1;
        y = min((row - tubeRows - 1.0) / rimRows, 1.0);
        v.part = float2(0.0, row < block - 1.0 ? 1.0 : 0.5);
    } else {
        // Eight walls side by side in a block of rows, each 19 cells wide.
        float rows = wallRows + 1.0 + edgeRows + 1.0;
        float which = floor((row - block) / rows);
        float inside = row - block - which * rows;
        float side = min(floor(column / 20.0), 7.0);
        x = min(column - side * 20.0, 19.0) / 19.0;
        float wall = which * 8.0 + side;
        angle = lastWall - step_ * wall;
        kind = inside <= wallRows ? 2 : 3;
        y = kind == 2 ? max(inside / wallRows, 0.02) : (inside - wallRows - 1.0) / edgeRows;
        v.part = fract(float2(side, float(kind)) * 0.5) * 2.0;
        if (wall >= float(walls) || angle < first) v.part = float2(0.5);
    }
    v.kind = float(kind);
    const float h = 0.004;
    v.place = surface(kind, x, y, angle);
    float3 dx = surface(kind, x + h, y, angle) - v.place;
    float3 dy = surface(kind, x, y + h, angle) - v.place;
    v.normal = normalize(cross(dx, dy) + 1e-9);
    float spiral = kind < 2 ? mix(first, 0.0, x) : angle - (kind == 2 ? 0.20 * (1.0 - y * y) : 0.0);
    v.room = (spiral - lastWall) / step_;
    v.height = exp(growth * spiral);
    if (kind == 2) v.room = (angle - lastWall) / step_;

    v.toEye = turnedBack(eye, u.time, p) - v.place;
    v.key = turnedBack(float3(-0.50, 0.68, 0.56), u.time, p);
    v.up = turnedBack(float3(0.0, 1.0, 0.0), u.time, p);
    float3 q = eye - turned(v.place - float3(0.27, 0.08, -0.10), u.time, p);
    q.xy = -q.xy;
    float2 f = 1.92 * min(u.resolution.x, u.resolution.y) / u.resolution * 2.0;
    v.position = float4(q.xy * f, q.z - 1.5, q.z);
    return v;
}

// How bright a room is: the light is in one, and two more follow it, fainter.
float lightIn(float room, float t, constant Params& p) {
    const float rooms = 46.0;
    float where = fract(t * p.wander * 0.055 + 0.62) * (rooms + 12.0) - rooms - 3.0;
    float d = room - where;
    float second = fract(t * p.wander * 0.055 + 0.12) * (rooms + 12.0) - rooms - 3.0;
    float e = room - second;
    return 1.2 * exp(-0.20 * d * d) + 0.30 * exp(-0.03 * d * d) + 0.85 * exp(-0.16 * e * e) + 0.05;
}

float3 finish(float3 colour, float2 pixel, constant Uniforms& u) {
    colour = 1.0 - exp(-1.9 * colour);
    colour = sqrt(colour * sqrt(colour)); // to the power of 3/4
    float2 uv = pixel / u.resolution - 0.5;
    colour *= 1.0 - 0.7 * dot(uv, uv);
    return colour + (hash(pixel) - 0.5) / 255.0;
}

float4 shade(Vertex v, constant Uniforms& u, constant Params& p) {
    if (any(abs(v.part - 0.5) < 0.4998)) discard_fragment();
    float t = u.time;
    bool wall = abs(v.kind - 2.0) < 0.5, edge = fract(v.kind * 0.5 + 0.1) > 0.5;
    float3 n = normalize(v.normal);
    float3 view = normalize(v.toEye);
    bool behind = dot(n, view) < 0.0;
    if (behind) n = -n;

    // Mother-of-pearl: layers of glass, each as thick as a wave of light is long. Their colour goes
    // with the angle, and with the lines of growth.
    float facing = dot(n, view);
    float lines = noise(float2(v.room * 9.0, v.place.z / v.height * 5.0));
    float layers = 1.6 * facing + 0.55 * lines + 0.35 * sin(v.room * 0.9) + v.place.z / v.height;
    float3 film = 0.5 + 0.5 * cos(6.2831853 * (layers * 1.25 + float3(0.0, 0.33, 0.67)));
    float3 albedo = mix(float3(0.86, 0.80, 0.74), 0.45 + 0.55 * film, 0.42 * p.pearl);
    albedo *= 0.90 + 0.10 * noise(float2(v.room * 40.0, 3.0));
    if (edge) albedo = float3(0.92, 0.82, 0.68) * (0.75 + 0.25 * noise(v.place.xy / v.height * 30.0));

    // The light of one's own room, and a little through the walls. It hangs in the middle of the
    // tube, where the wall behind it takes the most.
    float within = wall ? round(v.room) + (behind ? -0.5 : 0.5) : floor(v.room) + 0.5;
    bool home = within > 0.0; // the last room is one long one
    float hung = home ? 0.5 : within;
    float angle = lastWall + step_ * (home ? 1.9 : within);
    float size = exp(growth * angle);
    float3 lamp = float3(cos(angle), sin(angle), -0.20) * size;
    float3 way = (lamp - v.place) / (size * (home ? 0.75 : 0.36));
    float square = dot(way, way);
    float lit = lightIn(hung, t, p) * (home ? 0.45 : 1.0) * (0.35 + 0.65 * saturate(dot(n, way * rsqrt(square)) * 0.6 + 0.5)) / (0.40 + square);
    float through = 1.8 * lightIn(v.room, t, p);
    float3 warm = mix(float3(1.0, 0.46, 0.14), float3(1.0, 0.70, 0.36), saturate(lit));
    float deep = saturate(-v.place.z / (v.height * tube * flat_));
    float3 colour = albedo * warm * p.glow * (edge ? 0.10 * through : 1.5 * lit + 0.10 * through);

    // From outside: a large soft key from above, and the blue of the room, that reach less into the
    // depth. Small rooms are narrow.
    float3 key = v.key;
    float open = mix(1.0, 0.22, deep);
    float3 half_ = normalize(key + view);
    colour += albedo * float3(1.0, 0.93, 0.86) * p.key * (0.42 * saturate(dot(n, key) * 0.7 + 0.3) * open);
    colour += albedo * float3(0.10, 0.16, 0.26) * (0.5 + 0.5 * dot(n, v.up)) * open * 0.5;
    colour += mix(float3(1.0), film, 0.6) * p.key * pow(saturate(dot(n, half_)), edge ? 24.0 : 60.0) * 0.55 * open;
    colour += film * pow(1.0 - facing, 3.0) * 0.12 * p.pearl * (p.key + lit);
    return float4(finish(colour, v.position.xy, u), 1.0);
}

// Dark cloth far behind, with what light the shell throws on it.
float4 background(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * u.resolution / min(u.resolution.x, u.resolution.y);
    float drape = q.x * 3.1 + 1.3 * q.y + 1.6 * noise(q * float2(1.5, 0.8) + 4.0) + 0.5 * noise(q * 4.0);
    float fold = 0.5 + 0.5 * sin(drape * 2.0);
    float3 colour = mix(float3(0.006, 0.014, 0.020), float3(0.022, 0.072, 0.082), fold * fold);
    colour += float3(0.05, 0.13, 0.14) * pow(fold, 14.0) * 0.6; // velvet shines where it turns away
    colour *= smoothstep(-1.1, 0.9, q.y - 0.5 * q.x) * (0.9 + 0.2 * noise(q * 260.0));
    float shadow = smoothstep(0.22, 0.66, length(q - float2(0.05, -0.06)));
    colour *= mix(0.22, 1.0, shadow);
    colour += float3(0.10, 0.046, 0.018) * p.glow * exp(-3.0 * length(q)) * shadow * (0.4 + fold);
    return float4(finish(colour, float2(uv.x, 1.0 - uv.y) * u.resolution, u), 1.0);
}
