// Times of frames and steps, the clock of a page, and the size of its pictures.
import assert from "node:assert/strict";
import { test } from "node:test";
import { Clock } from "../../web/Clock.js";
import { playedMoment, stepAt, stepMoment, stillMoment, uniformRecord } from "../../web/Moments.js";
import { Pace } from "../../web/Pace.js";

test("a step is the nearest to the time, halves up", () => {
    const rows = [[-1, 0], [0, 0], [0.0083, 0], [0.5 / 60, 1], [1 / 60, 1], [0.125, 8], [10, 600]];
    for (const [time, step] of rows)
        assert.equal(stepAt(time), step, `at ${time}`);
    for (let step = 0; step < 40000; ++step)
        assert.equal(stepAt(stepMoment(step, null).time), step);
});

test("a frame has the number that a saver gives it", () => {
    assert.equal(playedMoment(2.5).frame, 75);
    assert.equal(playedMoment(0.99 / 30).frame, 0);
    assert.equal(stillMoment(8).timeDelta, 0);
});

test("the record of a frame has the layout of Uniforms", () => {
    const record = uniformRecord({ time: 2.5, timeDelta: 0.125, frame: 0x80000001, mouse: null }, 640, 360);
    assert.deepEqual([...new Float32Array(record, 0, 6)], [640, 360, 2.5, 0.125, 320, 180]);
    assert.deepEqual([...new Uint32Array(record, 24)], [0x80000001, 0]);
    const pointed = uniformRecord({ time: 0, timeDelta: 0, frame: 0, mouse: [3, 4] }, 640, 360);
    assert.deepEqual([...new Float32Array(pointed, 16, 2)], [3, 4]);
});

test("a clock leaves out the sleep of the computer, and pauses", () => {
    const clock = new Clock(1);
    clock.advance(5);
    clock.play();
    assert.equal(clock.advance(100), 1);
    assert.equal(clock.advance(100.0625), 1.0625);
    assert.equal(clock.advance(300), 1.0625 + 0.1);
    clock.pause();
    assert.equal(clock.advance(300.05), 1.0625 + 0.1);
    clock.seek(-4);
    assert.equal(clock.time, 0);
});

test("slow pictures become smaller, and only very slow ones are given up", () => {
    const pace = new Pace();
    const note = (seconds, times) => {
        for (let count = 0; count < times; ++count)
            pace.note(seconds);
    };
    note(0.01, 100);
    note(5, 5); // a few that compile or load
    note(0.01, 1);
    assert.equal(pace.scale, 1);
    note(0.2, 6);
    assert.equal(pace.scale, 0.5);
    note(0.02, 600); // fast, but no larger picture would be
    assert.equal(pace.scale, 0.5);
    note(0.01, 120);
    assert.equal(pace.scale, 1);
    note(0.01, 120);
    assert.equal(pace.scale, 1);
    note(0.2, 600);
    assert.equal(pace.scale, 0.25);
    assert.ok(!pace.isTooSlow);
    note(1.5, 6);
    assert.ok(pace.isTooSlow);
});
