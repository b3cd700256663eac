// The particles of an episode, moved in steps of 1/60 second, and the trails that they leave. The
// same time always shows the same picture: a step depends on nothing but its number.
import { stepAt, stepMoment, stepRate } from "./Moments.js";
import { PageError } from "./PageError.js";
import { uniformBuffer } from "./Pipelines.js";

/** @typedef {import("./Pipelines.js").Pipelines} Pipelines */
/** @typedef {import("./Values.js").Values} Values */
/** @typedef {import("./Records.js").Records} Records */
/** @typedef {import("./Moments.js").Moment} Moment */
/** @typedef {{width: number, height: number}} Size */

const trailsFormat = "rgba16float";
/** A point of WebGPU has one pixel, so the compiler makes two triangles of each. */
const verticesPerPoint = 6;
/** Bounds the memory of one submission. */
export const stepsPerSubmission = 120;

/** Lights add up, in colours and alpha. */
const adding = /** @type {const} */ ({
    color: { operation: "add", srcFactor: "one", dstFactor: "one" },
    alpha: { operation: "add", srcFactor: "one", dstFactor: "one" }
});

/** @param {Pipelines} pipelines */
async function particlePipelines(pipelines) {
    const [spawn, update, fade, dots] = await Promise.all([
        pipelines.kernel("tw_spawn"),
        pipelines.kernel("tw_update"),
        pipelines.render("tw_vertex", "tw_fade", { format: trailsFormat }),
        pipelines.render("tw_dot_vertex", "tw_dot_fragment", { format: trailsFormat, blend: adding })
    ]);
    return { spawn, update, fade, dots };
}

export class Particles {
    /** @param {Pipelines} pipelines */
    static async make(pipelines) {
        return new Particles(pipelines, await particlePipelines(pipelines));
    }

    /**
     * @param {Pipelines} pipelines
     * @param {Awaited<ReturnType<typeof particlePipelines>>} made
     */
    constructor(pipelines, made) {
        const { device, document } = pipelines;
        this.device = device;
        this.made = made;
        this.count = document.particles;
        this.stride = document.stride;
        this.particles = device.createBuffer({
            size: Math.ceil((document.particles * document.stride) / 4) * 4,
            usage: GPUBufferUsage.STORAGE
        });
        this.countRecord = uniformBuffer(device, 4);
        device.queue.writeBuffer(this.countRecord, 0, new Uint32Array([this.count]));
        this.viewport = uniformBuffer(device, 8);
        this.step = -1;
        /** @type {Size} */
        this.size = { width: 0, height: 0 };
        /** @type {GPUTexture[]} */
        this.trails = [];
        this.current = 0;
    }

    /** @param {Size} size pixels; another size begins the simulation again */
    fit(size) {
        if (this.size.width === size.width && this.size.height === size.height)
            return;
        this.destroyTrails();
        this.size = { ...size };
        this.writeViewport();
        this.trails = [0, 1].map(() =>
            this.device.createTexture({
                size,
                format: trailsFormat,
                usage: GPUTextureUsage.RENDER_ATTACHMENT | GPUTextureUsage.TEXTURE_BINDING
            })
        );
        this.step = -1;
    }

    /**
     * The number of steps up to that of a time, from the spawning if it is before the last step.
     * @param {number} time seconds
     */
    stepsUntil(time) {
        const target = stepAt(time);
        return target < this.step ? target + 1 : target - this.step;
    }

    /** The trails after the last step. */
    picture() {
        return this.trails[this.current].createView();
    }

    /**
     * Performs steps up to that of `moment`, at most `limit`. A moment before the last step begins
     * again from the spawning. Returns whether all steps are done.
     * @param {GPUCommandEncoder} commands
     * @param {Moment} moment
     * @param {Values} values
     * @param {Records} records
     * @param {number} limit
     */
    advance(commands, moment, values, records, limit) {
        const target = stepAt(moment.time);
        if (target < this.step)
            this.step = -1;
        for (let done = 0; this.step < target && done < limit; ++done)
            this.perform(commands, moment, values, records);
        return this.step >= target;
    }

    /**
     * @param {GPUCommandEncoder} commands
     * @param {Moment} moment
     * @param {Values} values
     * @param {Records} records
     */
    perform(commands, moment, values, records) {
        const step = this.step + 1;
        if (step > 0xffffffff)
            throw new PageError("refused", "The episode has played longer than its steps can be counted.");
        // Without keys the values are those of the frame, which are the same.
        const pair = records.of(stepMoment(step, moment.mouse), values, step / stepRate, this.size);
        const target = step === 0 ? this.current : 1 - this.current;
        this.move(commands, step, pair);
        this.paint(commands, step, pair, this.trails[target]);
        this.current = target;
        this.step = step;
    }

    /**
     * Spawns the particles in step 0, updates them in all others.
     * @param {GPUCommandEncoder} commands
     * @param {number} step
     * @param {import("./Records.js").RecordPair} pair
     */
    move(commands, step, { uniforms, params }) {
        const pass = commands.beginComputePass();
        if (step === 0)
            this.made.spawn.dispatch(pass, { buffers: [this.particles, params, this.countRecord] }, this.count);
        else
            this.made.update.dispatch(
                pass,
                { buffers: [this.particles, uniforms, params, this.countRecord] },
                this.count
            );
        pass.end();
    }

    /**
     * Draws the last trails through the episode's `fade`, then adds a point for each particle.
     * @param {GPUCommandEncoder} commands
     * @param {number} step
     * @param {import("./Records.js").RecordPair} pair
     * @param {GPUTexture} target
     */
    paint(commands, step, { uniforms, params }, target) {
        const pass = commands.beginRenderPass({
            colorAttachments: [
                { view: target.createView(), loadOp: "clear", storeOp: "store", clearValue: [0, 0, 0, 0] }
            ]
        });
        if (step > 0)
            this.made.fade.draw(
                pass,
                { fragment: { buffers: [uniforms, params], textures: [this.picture()] } },
                3
            );
        const dot = { buffers: [this.particles, uniforms, params], viewport: this.viewport };
        this.made.dots.draw(pass, { vertex: dot, fragment: dot }, verticesPerPoint * this.count);
        pass.end();
    }

    /**
     * Goes on with the particles of another program and their trails, if their number and size are
     * the same. That program then has those of this one. Returns whether it goes on.
     * @param {Particles} other
     */
    follow(other) {
        if (other.count !== this.count || other.stride !== this.stride)
            return false;
        [this.particles, other.particles] = [other.particles, this.particles];
        [this.trails, other.trails] = [other.trails, this.trails];
        this.size = { ...other.size };
        this.writeViewport();
        this.step = other.step;
        this.current = other.current;
        return true;
    }

    writeViewport() {
        const { width, height } = this.size;
        this.device.queue.writeBuffer(this.viewport, 0, new Float32Array([width, height]));
    }

    destroyTrails() {
        this.trails.forEach(each => each.destroy());
        this.trails = [];
    }

    destroy() {
        this.destroyTrails();
        [this.particles, this.countRecord, this.viewport].forEach(each => each.destroy());
    }
}
