// What an episode with `Inputs` reads: the levels and the spectrum of the sound, the channels, and
// its previous frame. Without sound and channels it reads silence and black, as in a saver.
import { Channels, firstChannelTexture } from "./Channels.js";
import { uniformBuffer } from "./Pipelines.js";
import { spectrumBins } from "./SoundAnalysis.js";

/** @typedef {{width: number, height: number}} Size */

const audioBuffer = 2;
const previousTexture = 5;

/**
 * A number from 0 to 1 as a half float.
 * @param {number} value
 */
export function halfOf(value) {
    const least = 2 ** -14; // of the normal numbers
    if (value < least)
        return Math.round(value * 2 ** 24);
    const exponent = Math.floor(Math.log2(value));
    return ((exponent + 14) << 10) + Math.round(value * 2 ** (10 - exponent));
}

export class Inputs {
    /**
     * @param {GPUDevice} device
     * @param {GPUTextureFormat} format of the frames
     */
    constructor(device, format) {
        this.device = device;
        this.format = format;
        this.audio = uniformBuffer(device, 16);
        // Transparent black, as all new textures.
        this.blank = device.createTexture({
            size: [1, 1],
            format: "rgba8unorm",
            usage: GPUTextureUsage.TEXTURE_BINDING
        });
        this.channels = new Channels(device);
        // Episodes filter the spectrum, which not every device does with floats of 32 bits.
        this.hasFloats = device.features.has("float32-filterable");
        /** @type {GPUTexture | null} */
        this.spectrum = null;
        /** @type {Size} */
        this.size = { width: 0, height: 0 };
        /** @type {GPUTexture[]} */
        this.frames = [];
        this.next = 0;
        this.hasPrevious = false;
    }

    /** @param {import("./HeardSound.js").Heard | null} heard null: silence */
    hear(heard) {
        this.device.queue.writeBuffer(this.audio, 0, heard?.levels ?? new Float32Array(4));
        if (!heard && !this.spectrum)
            return;
        this.spectrum ??= this.device.createTexture({
            size: [spectrumBins, 1],
            format: this.hasFloats ? "r32float" : "r16float",
            usage: GPUTextureUsage.TEXTURE_BINDING | GPUTextureUsage.COPY_DST
        });
        const values = heard?.spectrum ?? new Float32Array(spectrumBins);
        this.device.queue.writeTexture(
            { texture: this.spectrum },
            this.hasFloats ? values : Uint16Array.from(values, halfOf),
            {},
            [spectrumBins, 1]
        );
    }

    /** @param {Size} size pixels; another size forgets the previous frame */
    fit(size) {
        if (this.size.width === size.width && this.size.height === size.height)
            return;
        this.destroyFrames();
        this.size = { ...size };
        this.frames = [0, 1].map(() =>
            this.device.createTexture({
                size,
                format: this.format,
                usage:
                    GPUTextureUsage.RENDER_ATTACHMENT |
                    GPUTextureUsage.TEXTURE_BINDING |
                    GPUTextureUsage.COPY_SRC
            })
        );
        this.hasPrevious = false;
    }

    /** The texture that the next frame is drawn into. */
    frame() {
        return this.frames[this.next];
    }

    /** The frame that was drawn is the previous one of the next. */
    advance() {
        this.next = 1 - this.next;
        this.hasPrevious = true;
    }

    /** There is no previous frame after a jump in time. */
    restart() {
        this.hasPrevious = false;
    }

    /**
     * The arguments of the final pass.
     * @param {import("./Records.js").RecordPair} records
     */
    arguments({ uniforms, params }) {
        const blank = this.blank.createView();
        const textures = Array.from({ length: previousTexture + 1 }, () => blank);
        if (this.spectrum)
            textures[0] = this.spectrum.createView();
        this.channels.textures.forEach((texture, channel) => {
            if (texture)
                textures[firstChannelTexture + channel] = texture.createView();
        });
        if (this.hasPrevious)
            textures[previousTexture] = this.frames[1 - this.next].createView();
        const buffers = [uniforms, params];
        buffers[audioBuffer] = this.audio;
        return { buffers, textures };
    }

    destroyFrames() {
        this.frames.forEach(each => each.destroy());
        this.frames = [];
    }

    destroy() {
        this.destroyFrames();
        this.channels.destroy();
        this.spectrum?.destroy();
        this.blank.destroy();
        this.audio.destroy();
    }
}
