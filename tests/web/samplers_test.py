#!/usr/bin/env python3
"""Samples numbered textures in a browser with samplers of every state, and compares the texels with
those of a reference.

samplers_test.py TARNWICK

WebGPU has neither borders nor samples of integers, so the texts compute them. The reference takes the
texels that the filters name one by one (Vulkan 1.3, 16.5 to 16.9). The status is 1 if a sample is
wrong, and 77 if there is no browser.
"""

import itertools
import math
import os
import random
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(__file__))
import browser  # noqa: E402
from corpus import TEXTURES, floats_of, sampler_state, words_of  # noqa: E402
from programs import compiled, entry_named, with_declared  # noqa: E402

SIZE, LEVELS = (8, 6), 3
BORDERS = {"transparent_black": [0, 0, 0, 0], "opaque_black": [0, 0, 0, 1],
           "opaque_white": [1, 1, 1, 1]}
ADDRESSES = ("clamp_to_edge", "repeat", "mirrored_repeat", "clamp_to_zero", "clamp_to_border")
POINTS = 64

RUN = """
async ({code, constants, resources, points}) => {
    const buffers = [bufferOf(points.map(() => 0)), bufferOf(points)];
    device.pushErrorScope("validation");
    const module = device.createShaderModule({code});
    const pipeline = await device.createComputePipelineAsync(
        {layout: "auto", compute: {module, constants}});
    const count = points.length / 4;
    const entries = resources.map(each => ({binding: each.binding,
        resource: resourceOf(each, buffers, [count, 1, 1, 0, count, 1, 1, 0, 1, 1, 1, 0])}));
    const encoder = device.createCommandEncoder();
    const pass = encoder.beginComputePass();
    pass.setPipeline(pipeline);
    pass.setBindGroup(0, device.createBindGroup({layout: pipeline.getBindGroupLayout(0), entries}));
    pass.dispatchWorkgroups(1);
    pass.end();
    const copy = device.createBuffer({size: 4 * points.length,
        usage: GPUBufferUsage.MAP_READ | GPUBufferUsage.COPY_DST});
    encoder.copyBufferToBuffer(buffers[0], 0, copy, 0, 4 * points.length);
    device.queue.submit([encoder.finish()]);
    const error = await device.popErrorScope();
    if (error)
        throw new Error(error.message);
    await copy.mapAsync(GPUMapMode.READ);
    return [...new Uint32Array(copy.getMappedRange())];
}
"""


class Mode:
    """The state of a sampler, and what it samples."""

    def __init__(self, address, filters, mip, kind="float", border="opaque_white", coord="normalized",
                 offset=(0, 0), gathers=False):
        self.address = address  # of both axes
        self.filters = filters  # that magnifies, that minifies
        self.mip, self.kind, self.border, self.coord = mip, kind, border, coord
        self.offset, self.gathers = offset, gathers

    def __str__(self):
        return " ".join(map(str, vars(self).values()))

    def kernel(self, name):
        (s, t), (mag, minify), (x, y) = self.address, self.filters, self.offset
        how = (f"gather(s, at[i].xy, int2({x}, {y}), component::y)" if self.gathers else
               f"sample(s, at[i].xy, level(at[i].z), int2({x}, {y}))")
        return (f"kernel void {name}(device float4* out [[buffer(0)]], const device float4* at "
                f"[[buffer(1)]], texture2d<{self.kind}> image [[texture(0)]], "
                "uint i [[thread_position_in_grid]]) {\n"
                f"    constexpr sampler s(coord::{self.coord}, s_address::{s}, t_address::{t}, "
                f"mag_filter::{mag}, min_filter::{minify}, mip_filter::{self.mip}, "
                f"border_color::{self.border});\n    out[i] = float4(image.{how});\n}}\n")

    def texel(self, x, y, level):
        """The texel at a place of a level that may be outside."""
        place = []
        for at, size, address in zip((x, y), extent(level), self.address):
            if address == "repeat":
                at %= size
            elif address == "mirrored_repeat":
                at = min(at % (2 * size), 2 * size - 1 - at % (2 * size))
            elif address == "clamp_to_edge":
                at = min(max(at, 0), size - 1)
            elif not 0 <= at < size:
                isZero = "clamp_to_zero" in self.address
                return BORDERS["transparent_black" if isZero else self.border]
            place.append(at)
        return [1 + place[0] + 10 * place[1] + 2000 * level + lane for lane in range(4)]

    def of_level(self, u, v, level, filtering):
        """The sample of one level."""
        x, y = (at * size + shift for at, size, shift in zip((u, v), extent(level), self.offset))
        if filtering == "nearest":
            return self.texel(math.floor(x), math.floor(y), level)
        left, top = math.floor(x - 0.5), math.floor(y - 0.5)
        rows = [mixed(self.texel(left, row, level), self.texel(left + 1, row, level), x - 0.5 - left)
                for row in (top, top + 1)]
        return mixed(*rows, y - 0.5 - top)

    def is_exact(self):
        return self.gathers or (self.filters == ("nearest",) * 2 and self.mip != "linear")

    def largest(self, lod):
        """The largest number in a level that the sample takes: weights may have 8 bits (Vulkan 1.3,
        16.9)."""
        level = 0 if self.mip == "none" else min(max(math.ceil(lod), 0), LEVELS - 1)
        return 64 + 2000 * level

    def sample(self, u, v, lod):
        """What the kernel must give."""
        if self.coord == "pixel":
            u, v = u / SIZE[0], v / SIZE[1]
        if self.gathers:
            left, top = (math.floor(at * size - 0.5) + shift
                         for at, size, shift in zip((u, v), SIZE, self.offset))
            return [self.texel(left + x, top + y, 0)[1]
                    for x, y in ((0, 1), (1, 1), (1, 0), (0, 0))]
        filtering = self.filters[lod > 0]
        lod = min(max(lod, 0), 0 if self.mip == "none" else LEVELS - 1)
        if self.mip != "linear":
            return self.of_level(u, v, math.ceil(lod + 0.5) - 1, filtering)
        lower = math.floor(lod)
        return mixed(self.of_level(u, v, lower, filtering),
                     self.of_level(u, v, min(lower + 1, LEVELS - 1), filtering), lod - lower)


def extent(level):
    return [max(size >> level, 1) for size in SIZE]


def mixed(a, b, part):
    return [x + (y - x) * part for x, y in zip(a, b)]


def modes():
    both = list(itertools.product(("nearest", "linear"), repeat=2))
    yield from (Mode((a, a), (f, f), m) for a in ADDRESSES for f in ("nearest", "linear")
                for m in ("none", "nearest", "linear"))
    yield from (Mode(("clamp_to_border", "repeat"), f, m, border="opaque_black")
                for f in both for m in ("none", "nearest", "linear"))
    yield Mode(("clamp_to_zero", "clamp_to_border"), ("linear", "linear"), "none")
    yield Mode(("clamp_to_zero",) * 2, ("linear",) * 2, "none", coord="pixel")
    yield Mode(("clamp_to_border",) * 2, ("linear",) * 2, "linear", offset=(2, -1))
    yield from (Mode((a, b), ("nearest",) * 2, m, kind=kind, border="transparent_black",
                     offset=(-1, 2))
                for kind in ("int", "uint") for a, b in itertools.pairwise(ADDRESSES)
                for m in ("none", "nearest"))
    yield from (Mode((a, b), ("linear",) * 2, "none", kind=kind, gathers=True, offset=(1, 0),
                     border="opaque_black" if kind == "float" else "transparent_black")
                for kind in ("float", "int") for a, b in itertools.pairwise(ADDRESSES[2:]))


def points(mode):
    """Coordinates and levels, away from the places where a filter may round either way."""
    chance = random.Random(1)
    scale = SIZE if mode.coord == "pixel" else (1, 1)
    found = []
    while len(found) < POINTS:
        u, v = chance.uniform(-0.8, 1.8), chance.uniform(-0.8, 1.8)
        lod = chance.choice((-1, 0, 0.3, 0.8, 1, 1.7, 2, 5))
        if all(0.02 < at * size * 2 % 1 < 0.98 for level in range(LEVELS)
               for at, size in zip((u, v), extent(level))):
            found.append((u * scale[0], v * scale[1], lod))
    return found


def faults(page, document, name, mode):
    entry, at = entry_named(document, name), points(mode)
    texture = {"shape": "2d", "component": mode.kind, "size": SIZE, "elements": 1, "levels": LEVELS}
    words = page.call(RUN, {
        "code": entry["wgsl"]["text"], "constants": with_declared(entry, {1: POINTS, 2: 1, 3: 1}),
        "resources": [{"binding": each["binding"], "kind": each["kind"],
                       "index": each.get("index", 0), "shape": "2d", "texture": texture,
                       "sampler": sampler_state(each["sampler"]) if "sampler" in each else {}}
                      for each in entry["bindings"]],
        "points": words_of([number for u, v, lod in at for number in (u, v, lod, 0)])})
    given = floats_of(words)
    wrong = []
    for place, point in enumerate(at):
        wanted, seen = mode.sample(*point), given[4 * place:4 * place + 4]
        near = 0.01 if mode.is_exact() else mode.largest(point[2]) / 256
        if any(abs(a - b) > near for a, b in zip(wanted, seen)):
            wrong.append(f"{mode}: {point} gives {seen}, not {wanted}")
    return wrong


def main():
    if not browser.find():
        print("No browser (chromium) is here: nothing is sampled.")
        return 77
    every = list(modes())
    source = "#include <metal_stdlib>\nusing namespace metal;\n" + "".join(
        mode.kernel(f"check{number}") for number, mode in enumerate(every))
    document, message = compiled(sys.argv[1], source.encode())
    if document is None:
        print(message)
        return 1
    wrong = 0
    with browser.Browser() as page:
        page.evaluate(TEXTURES)
        for number, mode in enumerate(every):
            found = faults(page, document, f"check{number}", mode)
            wrong += bool(found)
            if found:
                print(f"{len(found)} of {POINTS}: {found[0]}", flush=True)
    print(f"{len(every) - wrong} samplers give their texels, {wrong} do not.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
