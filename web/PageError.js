// The error of a page: a sentence that its visitor reads.

/**
 * Why an episode is not drawn.
 * - document: what the page was given is no episode that this player knows.
 * - absent: the browser or the computer has no WebGPU.
 * - lost: the device is gone.
 * - refused: the device refuses the program, or has too little memory.
 * @typedef {"document" | "absent" | "lost" | "refused"} Cause
 */

export class PageError extends Error {
    /**
     * @param {Cause} cause
     * @param {string} sentence
     */
    constructor(cause, sentence) {
        super(sentence);
        this.name = "PageError";
        this.reason = cause;
    }
}
