// The time of an episode that is played, in seconds from its beginning.

/** A longer pause between two frames is none of the episode's time: the computer slept. */
const longestStep = 0.1;

export class Clock {
    /** @param {number} time */
    constructor(time = 0) {
        this.time = time;
        this.isPlaying = false;
        /** @type {number | null} */
        this.last = null;
    }

    /** @param {number} now seconds of any steady clock */
    advance(now) {
        if (this.isPlaying && this.last !== null)
            this.time += Math.min(Math.max(0, now - this.last), longestStep);
        this.last = now;
        return this.time;
    }

    play() {
        this.isPlaying = true;
        this.last = null;
    }

    pause() {
        this.isPlaying = false;
    }

    /** @param {number} time */
    seek(time) {
        this.time = Math.max(0, time);
    }
}
