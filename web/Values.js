// The values of an episode's parameters at a time: base values, keys, and what the visitor set.
//
// The values are floats of 32 bits. Each operation is rounded to one, as in the other players of
// Tarnwick, so that a key has the same value everywhere.

/** @typedef {import("./EpisodeDocument.js").Key} Key */
/** @typedef {import("./EpisodeDocument.js").Param} Param */

const single = Math.fround;

/**
 * @param {Key["ease"]} ease
 * @param {number} u from 0 to 1
 */
function weight(ease, u) {
    switch (ease) {
        case "linear":
            return u;
        case "hold":
            return 0;
        default:
            return single(single(u * u) * single(3 - single(2 * u)));
    }
}

/**
 * The value of a track at a time.
 * @param {Key[]} keys at least one, ascending in time
 * @param {number} time seconds
 */
export function valueAt(keys, time) {
    const first = keys[0];
    const last = keys[keys.length - 1];
    if (time <= first.time)
        return single(first.value);
    if (time >= last.time)
        return single(last.value);
    let low = 0;
    let high = keys.length - 1;
    while (high - low > 1) {
        const middle = (low + high) >> 1;
        if (keys[middle].time <= time)
            low = middle;
        else
            high = middle;
    }
    const from = keys[low];
    const to = keys[high];
    const span = to.time - from.time;
    if (!(span > 0))
        return single(to.value);
    const u = single((time - from.time) / span);
    const change = single(single(to.value) - single(from.value));
    return single(single(from.value) + single(change * weight(from.ease, u)));
}

export class Values {
    /** @param {Param[]} params */
    constructor(params) {
        this.params = params;
        /** @type {Map<number, number>} by index of the parameter */
        this.chosen = new Map();
    }

    /** Whether time alone changes a value. */
    get areMoving() {
        return this.params.some((param, index) => param.keys.length > 0 && !this.chosen.has(index));
    }

    /**
     * The value that the visitor chose, in place of base value and keys; undefined: those again.
     * @param {number} index
     * @param {number | undefined} value
     */
    choose(index, value) {
        if (value === undefined)
            this.chosen.delete(index);
        else
            this.chosen.set(index, single(value));
    }

    /**
     * The values of other parameters, where what the visitor chose stays with the names.
     * @param {Param[]} params
     */
    following(params) {
        const next = new Values(params);
        params.forEach(({ name, min, max }, index) => {
            const chosen = this.chosen.get(this.params.findIndex(each => each.name === name));
            if (chosen !== undefined)
                next.choose(index, Math.min(Math.max(chosen, min), max));
        });
        return next;
    }

    /** @param {number} index */
    isChosen(index) {
        return this.chosen.has(index);
    }

    /**
     * @param {number} index
     * @param {number} time seconds
     */
    valueOf(index, time) {
        const chosen = this.chosen.get(index);
        if (chosen !== undefined)
            return chosen;
        const { keys, value } = this.params[index];
        return keys.length > 0 ? valueAt(keys, time) : single(value);
    }

    /**
     * The record `Params` at a time: a float for each parameter, at least one.
     * @param {number} time seconds
     */
    record(time) {
        return this.floats(index => this.valueOf(index, time));
    }

    /** The record without keys, which do not apply to sound. */
    baseRecord() {
        return this.floats(index => this.chosen.get(index) ?? this.params[index].value);
    }

    /** @param {(index: number) => number} value */
    floats(value) {
        const floats = new Float32Array(Math.max(1, this.params.length));
        this.params.forEach((_, index) => (floats[index] = value(index)));
        return floats;
    }
}
