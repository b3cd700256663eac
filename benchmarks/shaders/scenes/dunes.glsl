#define height frame.params.x
#define roll frame.params.y
#define tilt frame.params.z
#define haze frame.params.w

#ifdef GRID_VERTEX
layout(location = 0) out vec3 normal;
layout(location = 1) out vec2 at;
layout(location = 2) out float depth;

float rise(vec2 at, float time) {
    float h = sin(at.x * 7.0 + time) * cos(at.y * 5.0 - 0.6 * time);
    h += 0.5 * sin(at.x * 17.0 - at.y * 11.0 + 1.3 * time);
    return h + 0.25 * sin(at.x * 31.0 + at.y * 37.0 - 1.7 * time);
}

void main() {
    // Corners of a square's two triangles, a bit each: x is 1 at 1, 3 and 4, y at 2, 4 and 5.
    uint square = uint(gl_VertexIndex) / 6u, corner = uint(gl_VertexIndex) - square * 6u;
    uint row = square / frame.count;
    uvec2 whole = uvec2(square - row * frame.count, row) + ((uvec2(0x1a, 0x34) >> corner) & 1u);
    vec2 grid = vec2(whole) / float(frame.count);
    float time = frame.time * roll, step = 1.0 / 512.0;
    float here = height * rise(grid, time);
    float right = height * rise(grid + vec2(step, 0.0), time);
    float ahead = height * rise(grid + vec2(0.0, step), time);
    vec3 place = vec3((grid.x - 0.5) * 3.2, here, (grid.y - 0.5) * 3.2);
    float c = cos(tilt), s = sin(tilt);
    vec3 seen = vec3(place.x, c * place.y + s * place.z - 0.1, c * place.z - s * place.y + 2.6);
    gl_Position = vec4(seen.x * 1.6 * frame.resolution.y / frame.resolution.x, -seen.y * 1.6,
                       seen.z * 1.02 - 0.2, seen.z);
    normal = normalize(vec3(here - right, step * 3.2, here - ahead));
    at = grid;
    depth = seen.z;
}
#endif

#ifdef GRID_FRAGMENT
layout(location = 0) in vec3 normal;
layout(location = 1) in vec2 at;
layout(location = 2) in float depth;
layout(location = 0) out vec4 colour;
void main() {
    float light = clamp(dot(normalize(normal), vec3(0.48, 0.6, 0.64)), 0.0, 1.0);
    float stripes = 0.9 + 0.1 * sin(at.x * 200.0) * sin(at.y * 200.0);
    vec3 sand = mix(vec3(0.16, 0.06, 0.05), vec3(0.95, 0.62, 0.32), light) * stripes;
    vec3 hazy = mix(sand, vec3(0.5, 0.4, 0.45), 1.0 - exp(-haze * max(depth - 1.2, 0.0)));
    colour = vec4(hazy, 1.0);
}
#endif

#ifdef BACKGROUND
layout(location = 0) in vec2 at;
layout(location = 0) out vec4 colour;
void main() { colour = vec4(mix(vec3(0.5, 0.4, 0.45), vec3(0.12, 0.14, 0.3), 1.0 - at.y), 1.0); }
#endif

#ifdef FINAL
layout(location = 0) in vec2 at;
layout(location = 0) out vec4 colour;
void main() { colour = texture(picture, at); }
#endif
