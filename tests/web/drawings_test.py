#!/usr/bin/env python3
"""Draws the drawings of the corpus in a browser and compares their pixels.

drawings_test.py TARNWICK FILE...

What a program promises stands in the comments at its head (tests/TarnwickMSL/CorpusProgram.h): some
pixels of 8 x 8. Programs that draw with depth, patches, attributes or other targets are left out and
counted, as are those that the compiler refuses. The status is 1 if a pixel is wrong, and 77
if there is no browser.
"""

import os
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(__file__))
import browser  # noqa: E402
from corpus import NUMBERS, TEXTURES, WORDS, Program, is_near, words_of  # noqa: E402
from programs import compiled, source_of, with_declared  # noqa: E402

SIDE = 8
SAMPLES, DRAWS_POINTS = 5, 6  # numbers of overrides (sampleCountConstant, drawsPointsConstant)

# Draws once and gives the rows of the target's pixels, as texts, because JSON has no NaN.
RUN = """
async ({side, samples, stages, draws, buffers: words}) => {
    const format = samples > 1 ? "rgba16float" : "rgba32float"; // that has samples
    const buffers = words.map(bufferOf);
    device.pushErrorScope("validation");
    const [vertex, fragment] = stages.map(({code, constants}) =>
        ({module: device.createShaderModule({code}), constants}));
    const pipeline = await device.createRenderPipelineAsync({layout: "auto", vertex,
        fragment: {...fragment, targets: [{format}]}, multisample: {count: samples}});
    const entries = stages.flatMap(each => each.resources).map(each =>
        ({binding: each.binding, resource: resourceOf(each, buffers)}));
    const [target, resolved] = [samples, 1].map(sampleCount => device.createTexture({
        size: [side, side], format, sampleCount, usage: GPUTextureUsage.RENDER_ATTACHMENT |
            (sampleCount > 1 ? 0 : GPUTextureUsage.COPY_SRC)}));
    const encoder = device.createCommandEncoder();
    const pass = encoder.beginRenderPass({colorAttachments: [{view: target.createView(),
        resolveTarget: samples > 1 ? resolved.createView() : undefined, loadOp: "clear",
        storeOp: "store", clearValue: [0, 0, 0, 0]}]});
    pass.setPipeline(pipeline);
    if (entries.length)
        pass.setBindGroup(0, device.createBindGroup(
            {layout: pipeline.getBindGroupLayout(0), entries}));
    for (const counts of draws)
        pass.draw(...counts);
    pass.end();
    const copy = device.createBuffer({size: side * 256,
        usage: GPUBufferUsage.MAP_READ | GPUBufferUsage.COPY_DST});
    encoder.copyTextureToBuffer({texture: samples > 1 ? resolved : target},
                                {buffer: copy, bytesPerRow: 256}, [side, side]);
    device.queue.submit([encoder.finish()]);
    const error = await device.popErrorScope();
    if (error)
        throw new Error(error.message);
    await copy.mapAsync(GPUMapMode.READ);
    const bytes = copy.getMappedRange();
    return Array.from({length: side}, (_, row) =>
        [...(samples > 1 ? new Float16Array(bytes, row * 256, 4 * side)
                         : new Float32Array(bytes, row * 256, 4 * side))].map(String));
}
"""


def stage_of(document, program, stage):
    entry = next(each for each in document["entryPoints"] if each["stage"] == stage)
    return {"code": entry["wgsl"]["text"], "resources": program.resources(entry),
            "constants": with_declared(entry, {SAMPLES: program.samples, DRAWS_POINTS: 0})}


def drawn(page, document, program):
    """The pixels, row by row, four numbers each."""
    rows = page.call(RUN, {
        "side": SIDE, "samples": program.samples, "draws": program.draws,
        "stages": [stage_of(document, program, each) for each in ("vertex", "fragment")],
        "buffers": [[0x7fc00000] * NUMBERS, words_of(range(NUMBERS)), [0] * WORDS]})
    return [[float(each.replace("Infinity", "inf")) for each in row] for row in rows]


def faults(program, rows):
    """The pixels that are not as promised."""
    wrong = []
    for x, y, wanted in program.pixels:
        color = rows[y][4 * x:4 * x + 4]
        if not all(map(is_near, color, wanted, [program.within] * 4)):
            wrong.append(f"pixel {x} {y} is {color}, not {wanted}")
    return wrong


def main():
    if not browser.find():
        print("No browser (chromium) is here: nothing is drawn.")
        return 77
    tarnwick, files = sys.argv[1], sys.argv[2:]
    right = wrong = refused = other = 0
    with browser.Browser() as page:
        features = page.evaluate("[...device.features]")
        page.evaluate(TEXTURES)
        for path in files:
            name = os.path.splitext(os.path.basename(path))[0]
            program = Program(path)
            if program.lacks or not program.pixels or program.expected:
                other += 1
                continue
            document, _ = compiled(tarnwick, source_of(tarnwick, path))
            if document is None:
                refused += 1
                continue
            if not program.can_run(document) or any(
                    each not in features for entry in document["entryPoints"]
                    for each in entry["wgsl"]["features"]):
                other += 1
                continue
            try:
                found = faults(program, drawn(page, document, program))
            except browser.BrowserError as error:
                found = [str(error)]
            right += not found
            wrong += bool(found)
            for each in found:
                print(f"{name}: {each}", flush=True)
    print(f"{right} programs give their pixels, {wrong} do not; {refused} are refused, "
          f"{other} are of other kinds.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
