// The records that the stages of a pass read: Uniforms and Params. The passes of one submission may
// belong to different steps, so each moment has records of its own until the next submission.
import { uniformRecord } from "./Moments.js";
import { uniformBuffer } from "./Pipelines.js";

/** @typedef {import("./Moments.js").Moment} Moment */
/** @typedef {import("./Values.js").Values} Values */

/** @typedef {{uniforms: GPUBuffer, params: GPUBuffer}} RecordPair */

export class Records {
    /**
     * @param {GPUDevice} device
     * @param {number} paramCount
     */
    constructor(device, paramCount) {
        this.device = device;
        this.paramBytes = 4 * Math.max(1, paramCount);
        /** @type {RecordPair[]} */
        this.pairs = [];
        this.used = 0;
    }

    /** Call it after the passes that read the records were submitted. */
    restart() {
        this.used = 0;
    }

    destroy() {
        this.pairs.forEach(({ uniforms, params }) => {
            uniforms.destroy();
            params.destroy();
        });
    }

    /**
     * The records of a moment.
     * @param {Moment} moment
     * @param {Values} values
     * @param {number} valuesTime seconds: the time of the values
     * @param {{width: number, height: number}} size pixels
     */
    of(moment, values, valuesTime, { width, height }) {
        const pair = (this.pairs[this.used] ??= {
            uniforms: uniformBuffer(this.device, 32),
            params: uniformBuffer(this.device, this.paramBytes)
        });
        ++this.used;
        this.device.queue.writeBuffer(pair.uniforms, 0, uniformRecord(moment, width, height));
        this.device.queue.writeBuffer(pair.params, 0, values.record(valuesTime));
        return pair;
    }
}
