// Decides the size of the pictures of a page by the time that they take.

const slowFrame = 0.1; // seconds
const framesToJudge = 6; // in sequence
const leastScale = 0.25;
const longestFrame = 1; // seconds, at the least scale
const fastFrame = slowFrame / 8; // a picture of twice the sides takes four times as long
const framesToTrust = 120; // in sequence

export class Pace {
    constructor() {
        this.scale = 1; // of the picture's sides
        this.slow = 0;
        this.fast = 0;
        this.isTooSlow = false;
    }

    /** @param {number} seconds from the start of a frame until it is complete */
    note(seconds) {
        this.slow = seconds > slowFrame ? this.slow + 1 : 0;
        this.fast = seconds < fastFrame ? this.fast + 1 : 0;
        if (this.fast >= framesToTrust) {
            this.fast = 0;
            this.scale = Math.min(1, this.scale * 2); // the device was busy with something else
        }
        if (this.slow < framesToJudge)
            return;
        this.slow = 0;
        if (this.scale > leastScale)
            this.scale /= 2;
        else
            this.isTooSlow = seconds > longestFrame;
    }
}
