// The sound of an episode: the kernel's samples, computed ahead of the sound that is heard, in pieces
// that follow each other without a gap.
import { uniformBuffer } from "./Pipelines.js";

/** @typedef {import("./Pipelines.js").Pipelines} Pipelines */
/** @typedef {import("./Values.js").Values} Values */

export const sampleRate = 48000;
const bytesPerSample = 8; // left and right, a float each

/** Computes samples. One call at a time. */
export class SoundKernel {
    /** @param {Pipelines} pipelines */
    static async make(pipelines) {
        return new SoundKernel(pipelines, await pipelines.kernel("tw_sound"));
    }

    /**
     * @param {Pipelines} pipelines
     * @param {Awaited<ReturnType<Pipelines["kernel"]>>} kernel
     */
    constructor(pipelines, kernel) {
        this.device = pipelines.device;
        this.kernel = kernel;
        this.moment = uniformBuffer(this.device, 16);
        this.params = uniformBuffer(this.device, 4 * Math.max(1, pipelines.document.params.length));
    }

    destroy() {
        this.moment.destroy();
        this.params.destroy();
    }

    /**
     * The samples from `start` on: left and right in turn, from -1 to 1.
     * @param {number} start seconds
     * @param {number} count
     * @param {Values} values
     */
    async samples(start, count, values) {
        const size = count * bytesPerSample;
        const { device } = this;
        const out = device.createBuffer({ size, usage: GPUBufferUsage.STORAGE | GPUBufferUsage.COPY_SRC });
        const read = device.createBuffer({ size, usage: GPUBufferUsage.MAP_READ | GPUBufferUsage.COPY_DST });
        const record = new ArrayBuffer(16);
        new Float32Array(record).set([start, sampleRate]);
        new Uint32Array(record)[2] = count;
        device.queue.writeBuffer(this.moment, 0, record);
        device.queue.writeBuffer(this.params, 0, values.baseRecord());
        const commands = device.createCommandEncoder();
        const pass = commands.beginComputePass();
        this.kernel.dispatch(pass, { buffers: [out, this.moment, this.params] }, count);
        pass.end();
        commands.copyBufferToBuffer(out, 0, read, 0, size);
        device.queue.submit([commands.finish()]);
        await read.mapAsync(GPUMapMode.READ);
        const samples = new Float32Array(read.getMappedRange()).slice();
        read.destroy();
        out.destroy();
        return samples;
    }
}

const pieceSamples = sampleRate / 4;
const aheadSeconds = 0.75;

/** Plays the sound through a context of Web Audio while the episode is played. */
export class SoundPlayer {
    /**
     * @param {SoundKernel} kernel
     * @param {BaseAudioContext} context of sampleRate
     */
    constructor(kernel, context) {
        this.kernel = kernel;
        this.context = context;
        this.output = context.createGain(); // before the volume
        this.gain = context.createGain();
        this.output.connect(this.gain);
        this.gain.connect(context.destination);
        /** @type {Set<AudioBufferSourceNode>} */
        this.sources = new Set();
        this.run = 0;
        /** @type {number | null} seconds of the context at the time 0 of the episode */
        this.origin = null;
    }

    /** The time of the episode that is heard, in seconds; null while nothing is played. */
    get time() {
        return this.origin === null || this.context.state !== "running"
            ? null
            : this.context.currentTime - this.origin;
    }

    /** @param {number} volume linear, from 0 to 1 */
    setVolume(volume) {
        this.gain.gain.value = volume;
    }

    /**
     * Plays from a time of the episode on, until stop() or the next start. Sound that is too late
     * is left out, so that sound and picture stay together.
     * @param {number} time seconds of the episode, now
     * @param {Values} values
     */
    async start(time, values) {
        this.stop();
        const run = this.run;
        const latency = 0.1;
        const begin = this.context.currentTime + latency;
        this.origin = this.context.currentTime - time;
        for (let piece = 0; run === this.run; ++piece) {
            const offset = (piece * pieceSamples) / sampleRate;
            const samples = await this.kernel.samples(time + latency + offset, pieceSamples, values);
            if (run !== this.run)
                return;
            this.schedule(samples, begin + offset);
            const lead = begin + offset - this.context.currentTime;
            if (lead > aheadSeconds)
                await new Promise(resolve => setTimeout(resolve, 1000 * (lead - aheadSeconds / 2)));
        }
    }

    /**
     * @param {Float32Array} samples
     * @param {number} at seconds of the context
     */
    schedule(samples, at) {
        const late = Math.max(0, Math.ceil((this.context.currentTime - at) * sampleRate));
        if (late >= samples.length / 2)
            return;
        const source = this.context.createBufferSource();
        source.buffer = stereoBuffer(this.context, samples);
        source.connect(this.output);
        source.onended = () => this.sources.delete(source);
        source.start(at + late / sampleRate, late / sampleRate);
        this.sources.add(source);
    }

    /** Ends the sound. The kernel computes no more. */
    close() {
        this.stop();
        this.output.disconnect();
        this.gain.disconnect();
        this.kernel.destroy();
    }

    stop() {
        ++this.run;
        this.origin = null;
        for (const source of this.sources)
            source.stop();
        this.sources.clear();
    }
}

/**
 * @param {BaseAudioContext} context
 * @param {Float32Array} samples left and right in turn
 */
function stereoBuffer(context, samples) {
    const buffer = context.createBuffer(2, samples.length / 2, sampleRate);
    for (const side of [0, 1]) {
        const channel = buffer.getChannelData(side);
        for (let sample = 0; sample < channel.length; ++sample)
            channel[sample] = samples[2 * sample + side];
    }
    return buffer;
}
