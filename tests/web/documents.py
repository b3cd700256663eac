"""Documents of episodes for the tests of the player, with functions written by hand.

Their pictures and sounds are known exactly, so a test of the player needs no compiler.
"""

VERTEX = """
struct Outputs {
    @builtin(position) position: vec4f,
    @location(0) uv: vec2f,
}

@vertex
fn main(@builtin(vertex_index) vertex: u32) -> Outputs {
    let p = vec2f(vec2u((vertex << 1u) & 2u, vertex & 2u));
    return Outputs(vec4f(p * 2.0 - 1.0, 0.0, 1.0), p);
}
"""

# Shows a texture, without a filter between its pixels.
PICTURE = """
@group(0) @binding(32) var picture: texture_2d<f32>;

@fragment
fn main(@builtin(position) at: vec4f) -> @location(0) vec4f {
    return textureLoad(picture, vec2u(at.xy), 0);
}
"""


def resource(kind, binding, index, written=False):
    return {"kind": kind, "binding": binding, "index": index, "written": written}


def function(stage, code, *resources, constants=()):
    return {"stage": stage, "code": code, "resources": list(resources),
            "constants": list(constants), "features": []}


def kernel(body, *resources):
    head = """
@id(1) override threads: u32 = 1u;
"""
    return function("kernel", head + body, *resources, constants=(1,))


def param(name, value, detail="", keys=()):
    return {"name": name, "value": value, "min": 0, "max": 1, "detail": detail, "keys": list(keys)}


def document(kind, functions, params=(), **more):
    made = {"version": 1, "kind": kind, "title": "Test", "teaches": "", "still": 2, "length": 60,
            "params": list(params), "usesInputs": False, "readsPrevious": False,
            "hasSound": False, "particles": 0, "stride": 0, "grid": 0, "hasBackground": False,
            "functions": {"tw_vertex": function("vertex", VERTEX), **functions}}
    return {**made, **more}


UNIFORMS, PARAMS = resource("uniform", 32, 0), resource("uniform", 33, 1)


def fragment(params=(param("blue", 0.25),), body="vec4f(uv, p[0].x, 1.0)"):
    """Red and green are uv from the lower left, blue is the first parameter. `u` is the record of
    the frame."""
    return document("fragment", {"tw_fragment": function("fragment", f"""
@group(0) @binding(32) var<uniform> u: array<vec4f, 2>;
@group(0) @binding(33) var<uniform> p: array<vec4f, 1>;

@fragment
fn main(@location(0) uv: vec2f) -> @location(0) vec4f {{
    let time = u[0].z;
    let mouse = u[1].xy;
    return {body};
}}
""", UNIFORMS, PARAMS)}, params)


def particles():
    """Two particles: squares of 4 pixels of 64, with a light of 1/4. The first stays in the lower
    left quarter; the second begins in the upper left one and moves a pixel to the right in each
    step. Half of the trails remains after a step."""
    memory = resource("memory", 0, 0, written=True)
    return document("particles", {
        "tw_spawn": kernel("""
@group(0) @binding(0) var<storage, read_write> ps: array<f32>;
@group(0) @binding(2) var<uniform> count: vec4u;

@compute @workgroup_size(threads)
fn main(@builtin(global_invocation_id) id: vec3u) {
    if (id.x < count.x) {
        ps[2u * id.x] = 16.0;
        ps[2u * id.x + 1u] = 16.0 + 32.0 * f32(id.x);
    }
}
""", memory, resource("uniform", 2, 2)),
        "tw_update": kernel("""
@group(0) @binding(0) var<storage, read_write> ps: array<f32>;
@group(0) @binding(1) var<uniform> u: array<vec4f, 2>;
@group(0) @binding(3) var<uniform> count: vec4u;

@compute @workgroup_size(threads)
fn main(@builtin(global_invocation_id) id: vec3u) {
    if (id.x < count.x) {
        ps[2u * id.x] += 60.0 * u[0].w * f32(id.x);
    }
}
""", memory, resource("uniform", 1, 1), resource("uniform", 3, 3)),
        "tw_fade": function("fragment", PICTURE.replace("at.xy), 0)", "at.xy), 0) * 0.5"),
                            resource("texture", 32, 0)),
        "tw_dot_vertex": function("vertex", """
@group(0) @binding(0) var<storage, read> ps: array<f32>;
@group(0) @binding(9) var<uniform> viewport: vec4f;

@vertex
fn main(@builtin(vertex_index) vertex: u32) -> @builtin(position) vec4f {
    let id = vertex / 6u;
    let corner = array(0u, 1u, 2u, 1u, 3u, 2u)[vertex % 6u];
    let at = vec2f(vec2u(corner & 1u, corner >> 1u)) * 2.0 - 1.0;
    let place = (vec2f(ps[2u * id], ps[2u * id + 1u]) + at * 2.0) / viewport.xy;
    return vec4f(place * 2.0 - 1.0, 0.0, 1.0);
}
""", resource("memory", 0, 0), resource("viewportSize", 9, 0)),
        "tw_dot_fragment": function("fragment", """
@fragment
fn main() -> @location(0) vec4f {
    return vec4f(0.25);
}
"""),
        "tw_fragment": function("fragment", PICTURE, resource("texture", 32, 0)),
    }, particles=2, stride=8)


def grid():
    """Two cells by two: a surface of green over the right half and a quarter of a pixel more, and
    red behind it. Its background is blue."""
    corners = function("vertex", """
@group(0) @binding(0) var<uniform> u: array<vec4f, 2>;
@group(0) @binding(2) var<uniform> cells: vec4u;

struct Outputs {
    @builtin(position) position: vec4f,
    @location(0) colour: vec4f,
}

@vertex
fn main(@builtin(vertex_index) vertex: u32) -> Outputs {
    let square = vertex / 6u;
    let corner = array(vec2u(0, 0), vec2u(1, 0), vec2u(0, 1), vec2u(1, 0), vec2u(1, 1), vec2u(0, 1))[vertex % 6u];
    let cell = vec2u(square % cells.x, square / cells.x);
    // The first row of cells is green and near, the second red and far: both cover the same pixels.
    let isGreen = cell.y == 0u;
    let x = f32(cell.x + corner.x) / f32(cells.x);
    let left = 0.5 - 0.25 / u[0].x;
    let place = vec2f(left + x * (1.0 - left), f32(corner.y)) * 2.0 - 1.0;
    return Outputs(vec4f(place, select(0.75, 0.25, isGreen), 1.0),
                   select(vec4f(1, 0, 0, 1), vec4f(0, 1, 0, 1), isGreen));
}
""", resource("uniform", 0, 0), resource("uniform", 2, 2))
    return document("grid", {
        "tw_grid_vertex": corners,
        "tw_grid_fragment": function("fragment", """
@fragment
fn main(@location(0) colour: vec4f) -> @location(0) vec4f {
    return colour;
}
"""),
        "tw_background": function("fragment", """
@fragment
fn main() -> @location(0) vec4f {
    return vec4f(0, 0, 1, 1);
}
"""),
        "tw_fragment": function("fragment", PICTURE, resource("texture", 32, 0)),
    }, grid=2, hasBackground=True)


def feedback():
    """Each frame is brighter than the one before by 16 of 255."""
    code = PICTURE.replace("var picture", "var last").replace(
        "textureLoad(picture, vec2u(at.xy), 0)",
        "vec4f(select(vec3f(0.0), textureLoad(last, vec2u(at.xy), 0).rgb, "
        "textureDimensions(last).x > 1u) + 16.0 / 255.0, 1.0)")
    return document("fragment", {
        "tw_fragment": function("fragment", code, resource("texture", 32, 5))},
        usesInputs=True, readsPrevious=True)


def sound():
    """The fragment episode, with a sound: left is the time, right the first parameter."""
    made = fragment()
    made["hasSound"] = True
    made["functions"]["tw_sound"] = kernel("""
@group(0) @binding(0) var<storage, read_write> samples: array<vec2f>;
@group(0) @binding(1) var<uniform> moment: array<vec4f, 1>;
@group(0) @binding(2) var<uniform> p: array<vec4f, 1>;

@compute @workgroup_size(threads)
fn main(@builtin(global_invocation_id) id: vec3u) {
    if (id.x < bitcast<u32>(moment[0].z)) {
        samples[id.x] = vec2f(moment[0].x + f32(id.x) / moment[0].y, p[0].x);
    }
}
""", resource("memory", 0, 0, written=True), resource("uniform", 1, 1), resource("uniform", 2, 2))
    return made
