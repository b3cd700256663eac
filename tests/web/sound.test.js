// The pieces of a sound follow each other without a gap.
import assert from "node:assert/strict";
import { test } from "node:test";
import { SoundPlayer, sampleRate } from "../../web/Sound.js";

/** A context of Web Audio that notes what is scheduled. */
class Context {
    currentTime = 0;
    state = "running";
    destination = {};
    scheduled = [];

    createGain() {
        return { gain: { value: 1 }, connect() {} };
    }

    createBuffer(channels, length) {
        const data = Array.from({ length: channels }, () => new Float32Array(length));
        return { length, getChannelData: channel => data[channel] };
    }

    createBufferSource() {
        const source = {
            connect() {},
            stop: () => (source.isStopped = true),
            start: (at, offset) => this.scheduled.push({ at, offset, source })
        };
        return source;
    }
}

/** Its samples are their own numbers; `last` ends the sound after so many pieces. */
function numberedKernel(pieces, whenDone) {
    return {
        async samples(start, count) {
            if (pieces-- === 0)
                whenDone();
            const first = Math.round(start * sampleRate);
            return Float32Array.from({ length: 2 * count }, (_, at) => first + Math.floor(at / 2));
        }
    };
}

test("each sample is heard at its own time", async () => {
    const context = new Context();
    let player;
    const times = [];
    const end = () => {
        context.currentTime = 2.5;
        times.push(player.time);
        player.stop();
        times.push(player.time);
        context.currentTime = 2;
    };
    player = new SoundPlayer(numberedKernel(3, end), context);
    const begin = 7;
    context.currentTime = 2;
    await player.start(begin, {});
    assert.equal(context.scheduled.length, 3);
    assert.deepEqual(times, [begin + 0.5, null]);
    let next = null;
    for (const { at, offset, source } of context.scheduled) {
        const heard = Math.round(at * sampleRate);
        assert.ok(Math.abs(heard - at * sampleRate) < 1e-6);
        assert.equal(next ?? heard, heard);
        next = heard + source.buffer.length;
        const sample = source.buffer.getChannelData(1)[0] + offset * sampleRate;
        assert.equal(sample - heard, (begin - context.currentTime) * sampleRate);
        assert.ok(source.isStopped);
    }
});

test("sound that is too late is left out", () => {
    const context = new Context();
    const player = new SoundPlayer(numberedKernel(0), context);
    context.currentTime = 1.5;
    player.schedule(new Float32Array(2 * sampleRate), 1);
    player.schedule(new Float32Array(2 * sampleRate), 0);
    assert.deepEqual(
        context.scheduled.map(({ at, offset }) => [at, offset]),
        [[1.5, 0.5]]
    );
});
