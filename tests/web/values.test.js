// The values of keys. tests/web/values.json has those of the C++ players, which a test of
// TarnwickWeb compares and writes.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { Values, valueAt } from "../../web/Values.js";

const read = name => JSON.parse(readFileSync(new URL(name, import.meta.url), "utf8"));
const { tracks, times } = read("keys.json");

test("keys have the same values as in the other players", () => {
    const expected = read("values.json");
    assert.deepEqual(Object.keys(expected).sort(), Object.keys(tracks).sort());
    for (const [name, keys] of Object.entries(tracks))
        times.forEach((time, index) =>
            assert.equal(valueAt(keys, time), Math.fround(expected[name][index]), `${name} at ${time}`)
        );
});

const param = (name, value, keys = []) => ({ name, value, min: 0, max: 10, detail: "", keys });

test("a chosen value replaces base value and keys until it is taken back", () => {
    const moving = [{ time: 0, value: 1, ease: "linear" }, { time: 2, value: 3, ease: "linear" }];
    const values = new Values([param("still", 0.1), param("constructor", 5, moving)]);
    assert.deepEqual([...values.record(1)], [Math.fround(0.1), 2]);
    assert.deepEqual([...values.baseRecord()], [Math.fround(0.1), 5]);
    assert.ok(values.areMoving);
    values.choose(1, 9);
    assert.deepEqual([...values.record(1)], [Math.fround(0.1), 9]);
    assert.deepEqual([...values.baseRecord()], [Math.fround(0.1), 9]);
    assert.ok(!values.areMoving);
    values.choose(1, undefined);
    assert.equal(values.record(1)[1], 2);
});

test("a record without parameters has one number", () => {
    assert.deepEqual([...new Values([]).record(0)], [0]);
});
