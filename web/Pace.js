// Decides the size of the pictures of a page by the time that they take.

const slowFrame = 0.1; // seconds
const framesToJudge = 6; // in sequence
const leastScale = 0.25;
const longestFrame = 1; // seconds, at the least scale

export class Pace {
    constructor() {
        this.scale = 1; // of the picture's sides
        this.slow = 0;
        this.isTooSlow = false;
    }

    /** @param {number} seconds from the start of a frame until it is complete */
    note(seconds) {
        this.slow = seconds > slowFrame ? this.slow + 1 : 0;
        if (this.slow < framesToJudge)
            return;
        this.slow = 0;
        if (this.scale > leastScale)
            this.scale /= 2;
        else
            this.isTooSlow = seconds > longestFrame;
    }
}
