#!/usr/bin/env python3
"""Runs random programs in a browser and natively, and compares their results.

random_test.py TARNWICK WRITER COMPILER SOURCE SEEDS

WRITER is random-programs-text, COMPILER a compiler of C++, SOURCE the root of the sources, and SEEDS
a range A..B. Even seeds run in a kernel, odd ones in a fragment function, and programs of groups
always in a kernel (tests/TarnwickMSL/RandomPrograms/Metal.h). Every value is exact, so the results
must be equal. Left out and counted are programs that the compiler refuses, and those with samplers
that WebGPU lacks. The status is 1 if a program differs, and 77 if there is no browser.
"""

import collections
import ctypes
import os
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(__file__))
import browser  # noqa: E402
from programs import compiled, entry_named, with_declared  # noqa: E402

INPUTS, SIDE, GROUP = 256, 16, 64
BATCH = 100  # programs in one native library
LIMIT = 120  # seconds of the browser for a program

# Programs that the software adapter compiles for minutes.
SLOW = {333, 380}

# What the native code reads too (RandomPrograms/Shim/NativeTextures.h), made once for all programs.
WORLD = """
(() => {
    const textures = [
        {dimension: "1d", size: [16]},
        {size: [8, 4], mipLevelCount: 3, isReal: true},
        {size: [4, 4, 3], isReal: true},
        {dimension: "3d", size: [4, 4, 4], isSigned: true},
        {size: [8, 1, 2]},
        {size: [16, 16], isBoard: true},
    ];
    const numberOf = (x, y, slice, level) => 1 + x + 10 * y + 100 * slice + 2000 * level;
    const at = (size, level) => Math.max(size >> level, 1);
    globalThis.worldTexture = index => {
        const {dimension = "2d", size, mipLevelCount = 1, isReal, isSigned, isBoard} =
            textures[index];
        const format = isBoard ? "r32uint" : isReal ? "rgba32float" :
                       isSigned ? "rgba32sint" : "rgba32uint";
        const texture = device.createTexture({dimension, size, mipLevelCount, format,
            usage: GPUTextureUsage.TEXTURE_BINDING | GPUTextureUsage.COPY_DST |
                   (isBoard ? GPUTextureUsage.STORAGE_BINDING : 0)});
        const lanes = isBoard ? 1 : 4, planes = size[2] ?? 1;
        for (let level = 0; level < mipLevelCount; ++level) {
            const width = at(size[0], level), height = at(size[1] ?? 1, level);
            const numbers = [];
            for (let slice = 0; slice < planes; ++slice)
                for (let y = 0; y < height; ++y)
                    for (let x = 0; x < width; ++x)
                        for (let lane = 0; lane < lanes; ++lane)
                            numbers.push(numberOf(x, y, slice, level) + lane);
            const data = isReal ? new Float32Array(numbers) : new Uint32Array(numbers);
            device.queue.writeTexture({texture, mipLevel: level}, data,
                {bytesPerRow: 4 * lanes * width, rowsPerImage: height}, [width, height, planes]);
        }
        return texture.createView({dimension: index === 4 ? "2d-array" : undefined});
    };
    globalThis.readTextures = Array.from(textures.keys(), worldTexture);
    globalThis.bufferOf = (bytes, usage) => device.createBuffer({size: bytes, usage:
        GPUBufferUsage.STORAGE | GPUBufferUsage.COPY_SRC | GPUBufferUsage.COPY_DST | usage});
    const words = new Uint32Array(256);
    words.forEach((_, index) => words[index] = Math.imul(index, 2246822519) ^ 0x5bd1e995);
    globalThis.constantWords = bufferOf(1024, GPUBufferUsage.UNIFORM);
    device.queue.writeBuffer(constantWords, 0, words);
})()
"""

# Runs the entry points of one program and gives its words.
RUN = """
async ({entries, constants, states, inputs, side, group}) => {
    const results = bufferOf(4 * (inputs + 1), 0), memory = bufferOf(inputs * 4096, 0);
    const report = bufferOf(4, 0), grid = bufferOf(48, GPUBufferUsage.UNIFORM);
    device.queue.writeBuffer(grid, 0, new Uint32Array(
        [inputs, 1, 1, 0, inputs, 1, 1, 0, inputs / group, 1, 1, 0]));
    const resourceOf = ({binding, kind, index}) =>
        kind === "grid size" ? {buffer: grid} : kind === "loop report" ? {buffer: report} :
        kind.includes("sampler") ? device.createSampler(states[binding]) :
        kind.includes("texture") ? (index === 5 ? worldTexture(5) : readTextures[index]) :
        {buffer: [results, memory, constantWords][index]};
    device.pushErrorScope("validation");
    const modules = entries.map(({text}) => device.createShaderModule({code: text}));
    const bindings = entries.flatMap(each => each.bindings)
        .map(each => ({binding: each.binding, resource: resourceOf(each)}));
    const encoder = device.createCommandEncoder();
    const bind = (pass, pipeline) => {
        pass.setPipeline(pipeline);
        if (bindings.length)
            pass.setBindGroup(0, device.createBindGroup(
                {layout: pipeline.getBindGroupLayout(0), entries: bindings}));
    };
    const copy = bufferOf(4 * inputs * 16, 0);
    if (entries.length === 1) {
        const pipeline = await device.createComputePipelineAsync(
            {layout: "auto", compute: {module: modules[0], constants: constants[0]}});
        const pass = encoder.beginComputePass();
        bind(pass, pipeline);
        pass.dispatchWorkgroups(inputs / group);
        pass.end();
    } else {
        const pipeline = await device.createRenderPipelineAsync({layout: "auto",
            vertex: {module: modules[0]},
            fragment: {module: modules[1], targets: [{format: "r32uint"}]}});
        const target = device.createTexture({size: [side, side], format: "r32uint",
            usage: GPUTextureUsage.RENDER_ATTACHMENT | GPUTextureUsage.COPY_SRC});
        const pass = encoder.beginRenderPass({colorAttachments: [{view: target.createView(),
            loadOp: "clear", storeOp: "store", clearValue: [0, 0, 0, 0]}]});
        bind(pass, pipeline);
        pass.draw(3);
        pass.end();
        encoder.copyTextureToBuffer({texture: target}, {buffer: copy, bytesPerRow: 256},
                                    [side, side]);
    }
    const read = device.createBuffer({size: 4 * (inputs * 16 + 2),
        usage: GPUBufferUsage.MAP_READ | GPUBufferUsage.COPY_DST});
    const isKernel = entries.length === 1;
    encoder.copyBufferToBuffer(isKernel ? results : copy, 0, read, 0,
                               isKernel ? 4 * (inputs + 1) : 4 * inputs * 16);
    encoder.copyBufferToBuffer(report, 0, read, 4 * (inputs * 16 + 1), 4);
    device.queue.submit([encoder.finish()]);
    const error = await device.popErrorScope();
    if (error)
        throw new Error(error.message);
    await read.mapAsync(GPUMapMode.READ);
    const words = new Uint32Array(read.getMappedRange());
    if (words[inputs * 16 + 1])
        throw new Error("The program ran out of its loop budget.");
    const given = isKernel ? [...words.slice(0, inputs + 1)] :
        Array.from({length: inputs}, (_, at) => words[Math.floor(at / side) * 64 + at % side]);
    read.destroy();
    for (const buffer of [results, memory, report, grid, copy])
        buffer.destroy();
    return given;
}
"""


class Refused(Exception):
    """WGSL or WebGPU lacks what the program needs."""


ADDRESSES = {"clamp_to_edge": "clamp-to-edge", "repeat": "repeat",
             "mirrored_repeat": "mirror-repeat"}


def sampler_state(sampler):
    """WebGPU's state of a sampler, whose filters are all `nearest`."""
    modes = [ADDRESSES[each] for each in sampler["address"]]
    return dict(zip(("addressModeU", "addressModeV", "addressModeW"), modes))


def with_one_channel(text):
    """The text with one channel of the texture that is written: WGSL can read no more of it."""
    read = "world.board.read(world.place)"
    return text.replace(read, f"uint4({read}.x, 0u, 0u, 1u)")


def written(writer, form, first, last):
    """What random-programs-text prints for the seeds."""
    done = subprocess.run([writer, form, f"{first}..{last}"], stdout=subprocess.PIPE, check=True)
    return with_one_channel(done.stdout.decode())


def native_trials(writer, compiler, source, first, last, folder):
    """The function of the seeds' native code: nativeTrial of RandomPrograms/Native.h."""
    text = written(writer, "native", first, last)
    path = os.path.join(folder, f"native{first}")
    with open(path + ".cpp", "w", encoding="utf-8") as file:
        file.write(text)
    subprocess.run([compiler, "-std=c++20", "-w", "-O0", "-ffp-contract=off", "-fwrapv", "-shared",
                    "-fPIC", "-I", source, path + ".cpp", "-o", path + ".so"], check=True)
    return ctypes.CDLL(path + ".so").nativeTrial


def expected_of(trial, program, width):
    numbers = (ctypes.c_uint32 * (INPUTS + 1))()
    trial(ctypes.c_uint64(program), ctypes.c_uint32(width), numbers)
    return list(numbers)[:INPUTS]


def results_of(page, tarnwick, text, is_kernel):
    document, message = compiled(tarnwick, text.encode())
    if document is None:
        if "WGSL has no" in message:
            raise Refused(message)
        raise browser.BrowserError(message)
    names = ["trial_kernel"] if is_kernel else ["trial_vertex", "trial_fragment"]
    entries = [entry_named(document, name) for name in names]
    return page.call(RUN, {
        "entries": [{"text": each["wgsl"]["text"], "bindings": [
            {"binding": one["binding"], "kind": one["kind"], "index": one.get("index", 0)}
            for one in each["bindings"]]} for each in entries],
        "states": {one["binding"]: sampler_state(one["sampler"]) for each in entries
                   for one in each["bindings"] if "sampler" in one},
        "constants": [with_declared(each, {1: GROUP, 2: 1, 3: 1}) for each in entries],
        "inputs": INPUTS, "side": SIDE, "group": GROUP})


def difference(page, tarnwick, writer, seed, trial, program):
    """What differs, in a sentence; empty if nothing does."""
    text = written(writer, "metal", seed, seed)
    is_kernel = seed % 2 == 0 or "GROUP_PROGRAM" in text
    given = results_of(page, tarnwick, text, is_kernel)
    width = given[INPUTS] if "GROUP_PROGRAM" in text else 0
    wanted = expected_of(trial, program, width)
    wrong = [at for at in range(INPUTS) if given[at] != wanted[at]]
    if not wrong:
        return ""
    at = wrong[0]
    return (f"input {at} gives {given[at]}, native code {wanted[at]} ({len(wrong)} of {INPUTS} "
            "inputs differ).")


def open_page():
    page = browser.Browser(limit=LIMIT)
    page.run(WORLD)
    return page


def run_batch(page, tools, first, last, folder, counts):
    """Returns the page for the next batch: a browser that a program keeps busy is replaced."""
    tarnwick, writer, compiler, source = tools
    trial = native_trials(writer, compiler, source, first, last, folder)
    for seed in range(first, last + 1):
        try:
            if seed in SLOW:
                raise Refused("The software adapter takes too long.")
            found = difference(page, tarnwick, writer, seed, trial, seed - first)
        except Refused as error:
            counts[str(error)] += 1
            continue
        except browser.BrowserError as error:
            found = str(error)
            page.close()
            page = open_page()
        counts["wrong" if found else "right"] += 1
        if found:
            print(f"seed {seed}: {found}", flush=True)
    return page


def main():
    if not browser.find():
        print("No browser (chromium, chromium-driver) is here: no program runs.")
        return 77
    *tools, seeds = sys.argv[1:]
    first, last = (int(each) for each in seeds.split(".."))
    counts = collections.Counter()
    page = open_page()
    with tempfile.TemporaryDirectory() as folder:
        for start in range(first, last + 1, BATCH):
            page = run_batch(page, tools, start, min(start + BATCH - 1, last), folder, counts)
            print(f"{counts['right']} of {sum(counts.values())} so far", file=sys.stderr, flush=True)
    page.close()
    right, wrong = counts.pop("right", 0), counts.pop("wrong", 0)
    for message, count in counts.items():
        print(f"{count} are left out: {message}")
    print(f"{right} of {right + wrong} programs agree; {sum(counts.values())} are left out.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
