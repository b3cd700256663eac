// The times of frames and steps, and the record `Uniforms` of each.

/** Particles move so many times per second of the episode's time. */
export const stepRate = 60;

/** Frames per second of `frame` and `timeDelta`, as in a saver. */
export const frameRate = 30;

/**
 * The moment of a frame or of a step of a simulation.
 * @typedef {object} Moment
 * @property {number} time      seconds
 * @property {number} timeDelta seconds since the frame before
 * @property {number} frame
 * @property {[number, number] | null} mouse pixels; null: the middle of the picture
 */

/**
 * The frame of a saver at that time.
 * @param {number} time seconds
 * @param {Moment["mouse"]} mouse
 * @returns {Moment}
 */
export function playedMoment(time, mouse = null) {
    return {
        time,
        timeDelta: 1 / frameRate,
        frame: Math.floor(Math.max(0, time * frameRate)),
        mouse
    };
}

/**
 * The frame of a still at that time.
 * @param {number} time seconds
 * @returns {Moment}
 */
export function stillMoment(time) {
    return { ...playedMoment(time), timeDelta: 0 };
}

/**
 * @param {number} step
 * @param {Moment["mouse"]} mouse
 * @returns {Moment}
 */
export function stepMoment(step, mouse) {
    return { time: step / stepRate, timeDelta: 1 / stepRate, frame: step, mouse };
}

/**
 * The step nearest to a time, halves up; 0 for times below 0.
 * @param {number} time seconds
 */
export function stepAt(time) {
    const steps = Math.fround(time) * stepRate;
    const whole = Math.floor(steps);
    return steps > 0 ? (steps - whole >= 0.5 ? whole + 1 : whole) : 0;
}

/**
 * The record: float2 resolution, float time, float timeDelta, float2 mouse, uint frame, uint pad.
 * @param {Moment} moment
 * @param {number} width  pixels
 * @param {number} height pixels
 */
export function uniformRecord(moment, width, height) {
    const record = new ArrayBuffer(32);
    const floats = new Float32Array(record);
    const [x, y] = moment.mouse ?? [width * 0.5, height * 0.5];
    floats.set([width, height, moment.time, moment.timeDelta, x, y]);
    new Uint32Array(record)[6] = moment.frame;
    return record;
}
