// The spectrum over logarithmic frequencies and the levels that an episode reads from sound, the same
// as in the other players of Tarnwick (TarnwickCore/Live/AudioAnalyzer.h), except for the rounding of
// the transform.

/** Samples of each analysis. */
export const analysisWindow = 2048;
/** Values of the spectrum. */
export const spectrumBins = 256;

const outputs = analysisWindow / 2; // used frequencies of the transform
const lowestFrequency = 30;
const highestFrequency = 16000;
/** Hz; low, mid and high are between neighbours. */
const bandEdges = [20, 250, 2000, 12000];

/** @typedef {{first: number, end: number}} Range of outputs, [first, end) */

/**
 * The transform of real samples in place: a power of two of complex numbers.
 * @param {Float64Array} real
 * @param {Float64Array} imaginary
 */
function transform(real, imaginary) {
    const { length } = real;
    for (let at = 1, reversed = 0; at < length; ++at) {
        let bit = length >> 1;
        for (; reversed & bit; bit >>= 1)
            reversed ^= bit;
        reversed ^= bit;
        if (at < reversed)
            [real[at], real[reversed]] = [real[reversed], real[at]];
    }
    for (let half = 1; half < length; half *= 2)
        for (let turn = 0; turn < half; ++turn) {
            const angle = (-Math.PI * turn) / half;
            const cosine = Math.cos(angle);
            const sine = Math.sin(angle);
            for (let low = turn; low < length; low += 2 * half) {
                const high = low + half;
                const a = real[high] * cosine - imaginary[high] * sine;
                const b = real[high] * sine + imaginary[high] * cosine;
                real[high] = real[low] - a;
                imaginary[high] = imaginary[low] - b;
                real[low] += a;
                imaginary[low] += b;
            }
        }
}

/**
 * The decibels of an amplitude: 0 is -70, 1 is -6. Silence gives 0.
 * @param {number} amplitude
 */
function decibels(amplitude) {
    return amplitude > 0 ? Math.min(1, Math.max(0, (20 * Math.log10(amplitude) + 70) / 64)) : 0;
}

/** Values rise within 10 ms and fall within 0.25 s. */
export class SoundAnalysis {
    /** @param {number} rate samples per second, above 31.2 kHz */
    constructor(rate) {
        this.rate = rate;
        this.spectrum = new Float32Array(spectrumBins);
        this.bands = new Float32Array(4); // low, mid, high, level
        this.hann = Float64Array.from(
            { length: analysisWindow },
            (_, n) => 0.5 * (1 - Math.cos((2 * Math.PI * n) / analysisWindow))
        );
        this.real = new Float64Array(analysisWindow);
        this.imaginary = new Float64Array(analysisWindow);
        this.magnitudes = new Float64Array(outputs);
        this.binRanges = Array.from({ length: spectrumBins }, (_, bin) => this.binRange(bin));
        this.bandRanges = [0, 1, 2].map(band => this.bandRange(bandEdges[band], bandEdges[band + 1]));
    }

    /**
     * At least one output for each bin, never the constant term.
     * @param {number} bin
     * @returns {Range}
     */
    binRange(bin) {
        const span = Math.log(highestFrequency / lowestFrequency);
        const output = /** @param {number} edge */ edge => {
            const hertz = Math.exp((edge * span) / spectrumBins + Math.log(lowestFrequency));
            return Math.floor(Math.min((hertz * analysisWindow) / this.rate, outputs + 1));
        };
        const first = Math.max(output(bin), 1);
        return { first, end: Math.min(Math.max(first + 1, output(bin + 1)), outputs) };
    }

    /**
     * @param {number} from Hz
     * @param {number} to Hz
     * @returns {Range}
     */
    bandRange(from, to) {
        const firstFrom = /** @param {number} hertz */ hertz => {
            let k = 1;
            while (k < outputs && (this.rate * k) / analysisWindow < hertz)
                ++k;
            return k;
        };
        return { first: firstFrom(from), end: firstFrom(to) };
    }

    /**
     * Moves the values towards those of the samples.
     * @param {Float32Array} samples analysisWindow of them, the means of left and right
     * @param {number} elapsed seconds
     */
    analyse(samples, elapsed) {
        this.measure(samples);
        const attack = 1 - Math.exp(-elapsed / 0.01);
        const release = 1 - Math.exp(-elapsed * 4);
        /** @type {(values: Float32Array, at: number, target: number) => void} */
        const move = (values, at, target) => {
            values[at] += (target - values[at]) * (values[at] < target ? attack : release);
        };
        this.binRanges.forEach((range, bin) => move(this.spectrum, bin, decibels(this.peak(range))));
        this.bandRanges.forEach((range, band) => move(this.bands, band, decibels(this.sum(range))));
        const power = samples.reduce((sum, sample) => sum + sample * sample, 0);
        move(this.bands, 3, decibels(Math.sqrt(power / samples.length) * 1.414));
    }

    /** @param {Float32Array} samples */
    measure(samples) {
        const { real, imaginary, hann, magnitudes } = this;
        real.forEach((_, n) => (real[n] = samples[n] * hann[n]));
        imaginary.fill(0);
        transform(real, imaginary);
        // The window halves the amplitude, and half of it is in the negative frequencies.
        magnitudes.forEach((_, k) => (magnitudes[k] = Math.hypot(real[k], imaginary[k]) * (4 / analysisWindow)));
    }

    /** @param {Range} range */
    peak({ first, end }) {
        let greatest = 0;
        for (let k = first; k < end; ++k)
            greatest = Math.max(greatest, this.magnitudes[k]);
        return greatest;
    }

    /**
     * The amplitude of the sum of the powers.
     * @param {Range} range
     */
    sum({ first, end }) {
        let squares = 0;
        for (let k = first; k < end; ++k)
            squares += this.magnitudes[k] ** 2;
        return Math.sqrt(squares);
    }
}
