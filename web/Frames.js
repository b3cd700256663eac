// The frames of an episode: the steps or the surface that its kind has, and the final pass. A frame
// depends on its moment, its size and the values; only feedback also depends on the frame before.
import { Grid } from "./Grid.js";
import { Inputs } from "./Inputs.js";
import { stillMoment } from "./Moments.js";
import { Particles, stepsPerSubmission } from "./Particles.js";
import { Pipelines } from "./Pipelines.js";
import { Records } from "./Records.js";

/** @typedef {import("./EpisodeDocument.js").EpisodeDocument} EpisodeDocument */
/** @typedef {import("./Moments.js").Moment} Moment */
/** @typedef {import("./Values.js").Values} Values */
/** @typedef {{width: number, height: number}} Size */

/** As many steps as the longest time of a frame has (Clock.js). */
const mostStepsPerFrame = 6;

/** More missing steps than these are performed before the frame instead of during the next ones. */
const mostMissingSteps = 60;

export class Frames {
    /**
     * Makes all pipelines. Throws PageError.
     * @param {GPUDevice} device
     * @param {EpisodeDocument} document
     * @param {GPUTextureFormat} format of the textures that frames are drawn into
     */
    static async make(device, document, format) {
        const pipelines = new Pipelines(device, document);
        const [final, particles, grid] = await Promise.all([
            pipelines.render("tw_vertex", "tw_fragment", { format }),
            document.kind === "particles" ? Particles.make(pipelines) : null,
            document.kind === "grid" ? Grid.make(pipelines) : null
        ]);
        return new Frames(pipelines, format, final, particles, grid);
    }

    /**
     * @param {Pipelines} pipelines
     * @param {GPUTextureFormat} format
     * @param {Awaited<ReturnType<Pipelines["render"]>>} final
     * @param {Particles | null} particles
     * @param {Grid | null} grid
     */
    constructor(pipelines, format, final, particles, grid) {
        const { device, document } = pipelines;
        this.device = device;
        this.pipelines = pipelines;
        this.format = format;
        this.final = final;
        this.particles = particles;
        this.grid = grid;
        this.inputs = document.usesInputs ? new Inputs(device, format) : null;
        this.keepsFrames = document.readsPrevious;
        this.records = new Records(device, document.params.length);
        this.lastTime = -Infinity;
    }

    /**
     * Whether particles lack so many steps, after a jump in time or in another size, that the frame
     * would show another time.
     * @param {Moment} moment
     * @param {Size} size
     */
    isBehind(moment, size) {
        this.particles?.fit(size);
        return (this.particles?.stepsUntil(moment.time) ?? 0) > mostMissingSteps;
    }

    /**
     * Draws a frame. Particles perform at most a few of the steps that are missing.
     * @param {GPUTexture} target of the format
     * @param {Moment} moment
     * @param {Values} values
     * @param {number} limit steps at most
     */
    draw(target, moment, values, limit = mostStepsPerFrame) {
        const { width, height } = target;
        const size = { width, height };
        const commands = this.device.createCommandEncoder();
        this.records.restart();
        if (moment.time < this.lastTime)
            this.inputs?.restart();
        this.lastTime = moment.time;
        this.particles?.fit(size);
        this.particles?.advance(commands, moment, values, this.records, limit);
        const pair = this.records.of(moment, values, moment.time, size);
        this.finish(commands, target, size, pair);
        this.device.queue.submit([commands.finish()]);
    }

    /**
     * @param {GPUCommandEncoder} commands
     * @param {GPUTexture} target
     * @param {Size} size
     * @param {import("./Records.js").RecordPair} pair
     */
    finish(commands, target, size, pair) {
        this.grid?.fit(size);
        const kept = this.keepsFrames ? this.inputs : null;
        kept?.fit(size);
        const picture = this.grid?.draw(commands, pair) ?? this.particles?.picture();
        const fragment = this.inputs?.arguments(pair) ?? {
            buffers: [pair.uniforms, pair.params],
            textures: [picture]
        };
        const drawn = kept?.frame() ?? target;
        const pass = commands.beginRenderPass({
            colorAttachments: [
                { view: drawn.createView(), loadOp: "clear", storeOp: "store", clearValue: [0, 0, 0, 1] }
            ]
        });
        this.final.draw(pass, { fragment }, 3);
        pass.end();
        if (kept) {
            commands.copyTextureToTexture({ texture: drawn }, { texture: target }, size);
            kept.advance();
        }
    }

    /**
     * Performs all steps before the time, and waits for the device after each part of them. `goOn`
     * ends the work by returning false.
     * @param {Moment} moment
     * @param {Values} values
     * @param {Size} size
     * @param {() => boolean} goOn
     */
    async warm(moment, values, size, goOn = () => true) {
        this.particles?.fit(size);
        for (let isDone = !this.particles; !isDone && goOn(); ) {
            const commands = this.device.createCommandEncoder();
            this.records.restart();
            isDone = this.particles?.advance(commands, moment, values, this.records, stepsPerSubmission) ?? true;
            this.device.queue.submit([commands.finish()]);
            await this.device.queue.onSubmittedWorkDone();
        }
    }

    /**
     * The still at a time: rows of pixels from the top, four bytes each, in the order red, green,
     * blue, alpha. Particles go on from there.
     * @param {number} time seconds
     * @param {Values} values
     * @param {Size} size
     */
    async still(time, values, size) {
        const moment = stillMoment(time);
        this.inputs?.restart();
        await this.warm(moment, values, size);
        const target = this.device.createTexture({
            size,
            format: this.format,
            usage:
                GPUTextureUsage.RENDER_ATTACHMENT | GPUTextureUsage.COPY_SRC | GPUTextureUsage.COPY_DST
        });
        this.draw(target, moment, values);
        this.inputs?.restart();
        const pixels = await readPixels(this.device, target, this.format);
        target.destroy();
        return pixels;
    }

    /**
     * Goes on with the state of another program after its last frame, as far as both have it: the
     * particles, the frame before, and what the inputs are. Particles of another kind begin anew.
     * The other program must not be drawn any more.
     * @param {Frames} other
     */
    follow(other) {
        if (this.inputs && other.inputs)
            [this.inputs, other.inputs] = [other.inputs, this.inputs];
        if (!this.particles || (other.particles && this.particles.follow(other.particles)))
            this.lastTime = other.lastTime;
    }

    destroy() {
        this.pipelines.destroy();
        this.records.destroy();
        this.particles?.destroy();
        this.grid?.destroy();
        this.inputs?.destroy();
    }
}

/**
 * @param {GPUDevice} device
 * @param {GPUTexture} texture
 * @param {GPUTextureFormat} format
 */
async function readPixels(device, texture, format) {
    const { width, height } = texture;
    const rowBytes = Math.ceil((width * 4) / 256) * 256;
    const buffer = device.createBuffer({
        size: rowBytes * height,
        usage: GPUBufferUsage.COPY_DST | GPUBufferUsage.MAP_READ
    });
    const commands = device.createCommandEncoder();
    commands.copyTextureToBuffer({ texture }, { buffer, bytesPerRow: rowBytes }, { width, height });
    device.queue.submit([commands.finish()]);
    await buffer.mapAsync(GPUMapMode.READ);
    const rows = new Uint8Array(buffer.getMappedRange());
    const pixels = new Uint8ClampedArray(width * height * 4);
    for (let row = 0; row < height; ++row)
        pixels.set(rows.subarray(row * rowBytes, row * rowBytes + width * 4), row * width * 4);
    buffer.destroy();
    if (format === "bgra8unorm")
        for (let at = 0; at < pixels.length; at += 4)
            [pixels[at], pixels[at + 2]] = [pixels[at + 2], pixels[at]];
    for (let at = 3; at < pixels.length; at += 4)
        pixels[at] = 255;
    return pixels;
}
