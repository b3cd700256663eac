"""Programs of the corpus and what they promise (tests/TarnwickMSL/CorpusProgram.h), as far as a
browser can run them."""

import math
import struct

NUMBERS, WORDS = 256, 1024

# Numbered textures (tests/TarnwickMSL/NumberedTextures.h) and samplers. A depth is drawn, because
# WebGPU does not copy to depths.
TEXTURES = """
(() => {
    const numberOf = (x, y, slice, level) => 1 + x + 10 * y + 100 * slice + 2000 * level;
    const formats = {float: "rgba32float", half: "rgba16float", int: "rgba32sint",
        uint: "rgba32uint", short: "rgba16sint", ushort: "rgba16uint", depth: "depth32float",
        r32uint: "r32uint", r32int: "r32sint"};
    const extent = (size, level) => Math.max(size >> level, 1);
    const halfOf = number => { // of whole numbers below 65536
        const exponent = Math.floor(Math.log2(number));
        return ((exponent + 15) << 10) + Math.round((number / 2 ** exponent - 1) * 1024);
    };
    const depthCode = `
        @group(0) @binding(0) var<uniform> base: vec4u;
        @vertex fn corner(@builtin(vertex_index) id: u32) -> @builtin(position) vec4f {
            return vec4f(select(-1.0, 3.0, id == 1), select(-1.0, 3.0, id == 2), 0, 1);
        }
        @fragment fn depth(@builtin(position) at: vec4f) -> @builtin(frag_depth) f32 {
            let place = vec2u(at.xy);
            return f32(base.x + place.x + 10 * place.y) / 8192;
        }`;
    const drawDepths = (texture, level, slice) => {
        const module = device.createShaderModule({code: depthCode});
        const pipeline = device.createRenderPipeline({layout: "auto", vertex: {module},
            fragment: {module, targets: []}, depthStencil: {format: "depth32float",
                depthWriteEnabled: true, depthCompare: "always"}});
        const base = device.createBuffer({size: 16,
            usage: GPUBufferUsage.UNIFORM | GPUBufferUsage.COPY_DST});
        device.queue.writeBuffer(base, 0, new Uint32Array([numberOf(0, 0, slice, level), 0, 0, 0]));
        const encoder = device.createCommandEncoder();
        const pass = encoder.beginRenderPass({colorAttachments: [], depthStencilAttachment: {
            view: texture.createView({dimension: "2d", baseMipLevel: level, mipLevelCount: 1,
                                      baseArrayLayer: slice, arrayLayerCount: 1}),
            depthLoadOp: "clear", depthStoreOp: "store", depthClearValue: 0}});
        pass.setPipeline(pipeline);
        pass.setBindGroup(0, device.createBindGroup({layout: pipeline.getBindGroupLayout(0),
            entries: [{binding: 0, resource: {buffer: base}}]}));
        pass.draw(3);
        pass.end();
        device.queue.submit([encoder.finish()]);
    };
    const numberedTexture = ({shape, component, size, elements, levels}) => {
        const [width, height = 1, depth = 1] = size;
        const isSolid = shape === "3d";
        const layers = elements * (shape.startsWith("cube") ? 6 : 1);
        const texture = device.createTexture({
            dimension: shape === "1d" || isSolid ? shape : "2d", mipLevelCount: levels,
            size: [width, height, isSolid ? depth : layers], format: formats[component],
            usage: GPUTextureUsage.TEXTURE_BINDING | GPUTextureUsage.COPY_DST |
                   (component === "depth" ? GPUTextureUsage.RENDER_ATTACHMENT : 0)});
        const lanes = component.startsWith("r32") ? 1 : 4;
        const arrays = {float: Float32Array, half: Uint16Array, int: Int32Array,
            uint: Uint32Array, short: Int16Array, ushort: Uint16Array,
            r32uint: Uint32Array, r32int: Int32Array};
        for (let level = 0; level < levels; ++level) {
            const columns = extent(width, level), rows = extent(height, level);
            const planes = isSolid ? extent(depth, level) : layers;
            if (component === "depth") {
                for (let slice = 0; slice < planes; ++slice)
                    drawDepths(texture, level, slice);
                continue;
            }
            const numbers = [];
            for (let slice = 0; slice < planes; ++slice)
                for (let y = 0; y < rows; ++y)
                    for (let x = 0; x < columns; ++x)
                        for (let lane = 0; lane < lanes; ++lane)
                            numbers.push(numberOf(x, y, slice, level) + lane);
            const data = new arrays[component](
                component === "half" ? numbers.map(halfOf) : numbers);
            device.queue.writeTexture({texture, mipLevel: level}, data,
                {bytesPerRow: data.BYTES_PER_ELEMENT * lanes * columns, rowsPerImage: rows},
                [columns, rows, planes]);
        }
        return texture;
    };
    const dimensions = {"1d": "1d", "1d_array": "2d-array", "2d": "2d", "2d_array": "2d-array",
        "3d": "3d", cube: "cube", cube_array: "cube-array"};
    const viewOf = (texture, dimension) => texture.createView(
        {dimension, aspect: texture.format === "depth32float" ? "depth-only" : "all"});
    globalThis.bufferOf = words => {
        const buffer = device.createBuffer({size: 4 * words.length,
            usage: GPUBufferUsage.STORAGE | GPUBufferUsage.UNIFORM | GPUBufferUsage.COPY_SRC |
                   GPUBufferUsage.COPY_DST});
        device.queue.writeBuffer(buffer, 0, new Uint32Array(words));
        return buffer;
    };
    globalThis.resourceOf = ({kind, index, shape, texture, sampler}, buffers, grid) =>
        kind === "grid size" ? {buffer: bufferOf(grid)} :
        kind === "loop report" ? {buffer: bufferOf([0])} :
        kind === "sampled texture" ? viewOf(numberedTexture(texture), dimensions[shape]) :
        kind.includes("sampler") ? device.createSampler(sampler) : {buffer: buffers[index]};
})()
"""

ADDRESSES = {"clamp_to_edge": "clamp-to-edge", "repeat": "repeat",
             "mirrored_repeat": "mirror-repeat"}
COMPARES = {"less": "less", "less_equal": "less-equal", "greater": "greater",
            "greater_equal": "greater-equal", "equal": "equal", "not_equal": "not-equal",
            "always": "always", "never": "never"}


KINDS = {"uniform buffer", "storage buffer", "sampled texture", "sampler", "constexpr sampler",
         "grid size", "loop report"}


class Program:
    """The promises of one program."""

    def __init__(self, path):
        self.runs, self.expected, self.constants = [], [], {}
        self.draws, self.pixels, self.textures, self.samplers = [], [], {}, {}
        self.within = 1e-6
        self.samples = 1  # of a pixel
        self.lacks = False  # needs more than the tests give
        with open(path, encoding="utf-8") as file:
            for line in file:
                if line.startswith("// @"):
                    self._take(*line[4:].split())
        if not self.runs and not self.draws:
            self.runs = [("check", (1, 1, 1), (1, 1, 1))]

    def _take(self, word, *given):
        digits = filter(str.isdigit, given)
        if word == "expects":
            for number in given:
                count, star, value = number.rpartition("*")
                if number != "|":
                    self.expected += [math.nan if value == "?" else float(value)] * (
                        int(count) if star else 1)
        elif word == "within":
            self.within = float(given[0])
        elif word == "runs":
            sizes = [size_of(each) for each in given[1:3]] + [(1, 1, 1)] * 2
            self.runs.append((given[0], sizes[0], sizes[1]))
            self.lacks |= len(given) > 3
        elif word == "constant":
            self.constants[given[0]] = [number_of(each) for each in given[1:]]
        elif word == "texture":
            self._take_texture(*given)
        elif word == "sampler":
            self._take_sampler(int(given[0]), given[1:])
        elif word == "draws" and given[0] == "triangle" and set(given[1:]) <= {"samples", *digits}:
            self.draws.append([int(each) for each in given[1:] if each != "samples"])
            self.samples = 4 if "samples" in given else 1
        elif word == "pixel" and given[2] == ":":
            self.pixels.append((int(given[0]), int(given[1]), [float(each) for each in given[3:]]))
        elif word in ("draws", "attribute", "layout", "pixel", "target"):
            self.lacks = True

    def _take_texture(self, index, shape, component, size="1", elements="1", levels="1"):
        self.lacks |= shape == "buffer"
        self.textures[int(index)] = {
            "shape": shape, "component": component, "elements": int(elements),
            "size": [int(each) for each in size.split("x")], "levels": int(levels)}

    def _take_sampler(self, index, words):
        self.lacks |= "clamp_to_zero" in words
        address = next((ADDRESSES[each] for each in words if each in ADDRESSES), "clamp-to-edge")
        linear = "linear" if "linear" in words else "nearest"
        state = {"addressModeU": address, "addressModeV": address, "addressModeW": address,
                 "magFilter": linear, "minFilter": linear,
                 "mipmapFilter": "linear" if "mip_linear" in words else "nearest",
                 "lodMaxClamp": 1000 if any(each.startswith("mip") for each in words) else 0.25}
        for each in words:
            if each in COMPARES:
                state["compare"] = COMPARES[each]
        self.samplers[index] = state

    def resources(self, entry):
        """What the bindings of an entry point's text get: arguments of `resourceOf`."""
        return [{"binding": each["binding"], "kind": each["kind"], "index": each.get("index", 0),
                 "shape": each.get("texture", {}).get("shape"),
                 "texture": self.textures.get(each.get("index")),
                 "sampler": sampler_state(each["sampler"]) if "sampler" in each
                            else self._argument_state(each)} for each in entry["bindings"]]

    def _argument_state(self, binding):
        state = dict(self.samplers.get(binding.get("index"), {}))
        if not binding.get("compares"):
            state.pop("compare", None)
        return state

    def can_run(self, document):
        """Whether the tests have all resources of the program."""
        return not self.lacks and all(
            each["kind"] in KINDS and (each["kind"] != "sampled texture"
                                       or each["index"] in self.textures)
            for entry in document["entryPoints"] for each in entry["bindings"])


def sampler_state(sampler):
    """WebGPU's state of a sampler of the program. Without levels 0.25 still minifies."""
    u, v, w = (ADDRESSES[each] for each in sampler["address"])
    least, most = sampler["lodClamp"]
    state = {"addressModeU": u, "addressModeV": v, "addressModeW": w,
             "magFilter": sampler["magFilter"], "minFilter": sampler["minFilter"],
             "mipmapFilter": "linear" if sampler["mipFilter"] == "linear" else "nearest",
             "lodMinClamp": least, "lodMaxClamp": 0.25 if sampler["mipFilter"] == "none" else most}
    if sampler["compare"] != "none":
        state["compare"] = COMPARES[sampler["compare"]]
    return state


def size_of(text):
    numbers = [int(each) for each in text.split("x")]
    return tuple(numbers + [1] * (3 - len(numbers)))


def number_of(word):
    return {"true": 1, "false": 0}.get(word, None) if word in ("true", "false") else float(word)


def words_of(numbers):
    return list(struct.unpack(f"<{len(numbers)}I", struct.pack(f"<{len(numbers)}f", *numbers)))


def floats_of(words):
    return list(struct.unpack(f"<{len(words)}f", struct.pack(f"<{len(words)}I", *words)))


def is_near(number, wanted, within):
    return (math.isnan(wanted) or number == wanted
            or abs(number - wanted) <= within * max(abs(wanted), 1))
