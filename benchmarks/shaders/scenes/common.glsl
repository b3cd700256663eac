#version 450
// What every stage of a hand-written scene begins with. `count` is that of the particles, or of a
// grid's squares a side; `picture` is the trails or the resolved grid. Coordinates of pictures run
// from the upper left.
layout(push_constant) uniform Frame {
    vec2 resolution;
    float time;
    float timeDelta;
    vec2 mouse;
    uint frame;
    uint count;
    vec4 params;
} frame;
layout(set = 0, binding = 1) uniform sampler2D picture;

#if defined(SPAWN) || defined(UPDATE)
layout(local_size_x = 256) in;
#define PARTICLE_ACCESS
#else
#define PARTICLE_ACCESS readonly
#endif

#ifdef FULL_SCREEN
layout(location = 0) out vec2 at;
void main() {
    at = vec2((gl_VertexIndex << 1) & 2, gl_VertexIndex & 2);
    gl_Position = vec4(at * 2.0 - 1.0, 0.0, 1.0);
}
#endif
