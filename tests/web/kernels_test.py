#!/usr/bin/env python3
"""Runs the kernels of the corpus in a browser and compares their numbers.

kernels_test.py TARNWICK FILE...

What a program promises stands in the comments at its head (tests/TarnwickMSL/CorpusProgram.h).
Programs that draw, that write textures or that take attributes are left out and counted, as are those
that the compiler refuses and those that are known to need more. The status is 1 if a number is
wrong, and 77 if there is no browser.
"""

import os
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(__file__))
import browser  # noqa: E402
from corpus import (NUMBERS, TEXTURES, WORDS, Program, floats_of, is_near,  # noqa: E402
                    words_of)
from programs import KNOWN, compiled, entry_named, source_of, with_declared  # noqa: E402

# Runs the dispatches one after the other and gives the words of `out`.
RUN = """
async (given) => {
    const buffers = given.buffers.map(bufferOf);
    device.pushErrorScope("validation");
    for (const run of given.runs) {
        const module = device.createShaderModule({code: run.code});
        const pipeline = await device.createComputePipelineAsync(
            {layout: "auto", compute: {module, constants: run.constants}});
        const entries = run.resources.map(each =>
            ({binding: each.binding, resource: resourceOf(each, buffers, run.grid)}));
        const encoder = device.createCommandEncoder();
        const pass = encoder.beginComputePass();
        pass.setPipeline(pipeline);
        if (entries.length)
            pass.setBindGroup(0, device.createBindGroup(
                {layout: pipeline.getBindGroupLayout(0), entries}));
        pass.dispatchWorkgroups(...run.groups);
        pass.end();
        device.queue.submit([encoder.finish()]);
    }
    const size = buffers[0].size;
    const copy = device.createBuffer({size, usage: GPUBufferUsage.MAP_READ |
                                                   GPUBufferUsage.COPY_DST});
    const encoder = device.createCommandEncoder();
    encoder.copyBufferToBuffer(buffers[0], 0, copy, 0, size);
    device.queue.submit([encoder.finish()]);
    const error = await device.popErrorScope();
    if (error)
        throw new Error(error.message);
    await copy.mapAsync(GPUMapMode.READ);
    return [...new Uint32Array(copy.getMappedRange())];
}
"""


def overrides_of(entry, program, threadgroup):
    """The values of the override constants that the text declares, by number."""
    values = {1: threadgroup[0], 2: threadgroup[1], 3: threadgroup[2]}
    for constant in entry["functionConstants"]:
        numbers = constant["specialisationConstants"]
        given = program.constants.get(constant["name"])
        for component, value in enumerate(given or []):
            values[numbers["first"] + component] = value
        values[numbers["presence"]] = int(given is not None)
    return with_declared(entry, values)


def run_of(document, program, kernel, grid, threadgroup):
    entry = entry_named(document, kernel)
    return {"code": entry["wgsl"]["text"],
            "resources": program.resources(entry),
            "grid": [*grid, 0] * 3,
            "groups": [-(-size // threads) for size, threads in zip(grid, threadgroup)],
            "constants": overrides_of(entry, program, threadgroup)}


def faults(program, words):
    """The first numbers that are not as promised."""
    wrong = [f"out[{place}] is {number:.9g}, not {wanted:.9g}"
             for place, (number, wanted) in enumerate(zip(floats_of(words), program.expected))
             if not is_near(number, wanted, program.within)]
    return wrong[:3]


def main():
    if not browser.find():
        print("No browser (chromium, chromium-driver) is here: no kernel runs.")
        return 77
    tarnwick, files = sys.argv[1], sys.argv[2:]
    right, wrong, refused, other = 0, 0, 0, 0
    with browser.Browser() as page:
        page.evaluate(TEXTURES)
        for path in files:
            name = os.path.splitext(os.path.basename(path))[0]
            program = Program(path)
            if program.lacks or program.draws or not program.expected or name in KNOWN:
                other += 1
                continue
            document, _ = compiled(tarnwick, source_of(tarnwick, path))
            if document is None:
                refused += 1
                continue
            if not program.can_run(document):
                other += 1
                continue
            try:
                words = page.call(RUN, {
                    "buffers": [[0x7fc00000] * NUMBERS, words_of(range(NUMBERS)), [0] * WORDS],
                    "runs": [run_of(document, program, *each) for each in program.runs]})
                found = faults(program, words)
            except browser.BrowserError as error:
                found = [str(error)]
            right += not found
            wrong += bool(found)
            for each in found:
                print(f"{name}: {each}", flush=True)
    print(f"{right} programs give their numbers, {wrong} do not; {refused} are refused, "
          f"{other} are of other kinds.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
