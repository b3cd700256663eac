// The analysis of sound. tests/web/spectrum.json has the values of the C++ players, which a test of
// TarnwickWeb compares.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { halfOf } from "../../web/Inputs.js";
import { SoundAnalysis, analysisWindow } from "../../web/SoundAnalysis.js";

/** Two tones above noise; the same samples as in the test of the C++ players. */
function testSound(count) {
    let state = 1;
    return Float32Array.from({ length: count }, (_, n) => {
        state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
        const turn = (2 * Math.PI * n) / 48000;
        return 0.5 * Math.sin(440 * turn) + 0.1 * Math.sin(5000 * turn) + (0.02 * state) / 2 ** 32;
    });
}

test("spectrum and levels are those of the other players", () => {
    const expected = JSON.parse(readFileSync(new URL("spectrum.json", import.meta.url), "utf8"));
    const analysis = new SoundAnalysis(48000);
    const sound = testSound(analysisWindow);
    analysis.analyse(sound, 1 / 60);
    analysis.analyse(sound.map(sample => sample / 8), 0.1);
    for (const name of ["spectrum", "bands"]) {
        assert.equal(analysis[name].length, expected[name].length);
        analysis[name].forEach((value, at) =>
            assert.ok(Math.abs(value - expected[name][at]) < 1e-4, `${name} ${at}: ${value}`)
        );
    }
});

test("halves are the nearest", () => {
    const rows = [[0, 0], [1, 0x3c00], [0.5, 0x3800], [1 / 3, 0x3555], [0.9997, 0x3bff], [0.99999, 0x3c00],
                  [2 ** -14, 0x400], [2 ** -24, 1], [2 ** -26, 0]];
    for (const [value, half] of rows)
        assert.equal(halfOf(value), half, `of ${value}`);
});
