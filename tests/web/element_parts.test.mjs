// Parts of the custom element that need no browser: the pool of GL contexts, and the touches and strokes that a script
// of the page makes.

import assert from "node:assert/strict";
import { createRequire } from "node:module";
import { join } from "node:path";
import { test } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";

const top = fileURLToPath(new URL("../..", import.meta.url));
const { build } = createRequire(join(top, "web/package.json"))("esbuild");

/** Bundles a script of the element and imports it. */
async function importPart(name) {
    const outfile = join(top, "build/element-tests", `${name}.mjs`);
    const entryPoints = [join(top, "web/element", `${name}.ts`)];
    await build({ entryPoints, outfile, bundle: true, format: "esm", logLevel: "error" });
    return import(pathToFileURL(outfile));
}

test("the eight elements that were used last have a GL context, and water on a canvas of the page keeps its context", async () => {
    const { contextPool } = await importPart("context_pool");
    const open = new Set();
    const makeClient = (name) => ({ keepsContext: name === 0, open: () => open.add(name), close: () => open.delete(name) });
    const clients = Array.from({ length: 12 }, (_, name) => makeClient(name));
    clients.forEach((client) => contextPool.request(client));
    assert.deepEqual([...open], [0, 1, 2, 3, 4, 5, 6, 7]);
    contextPool.request(clients[9]); // a second request changes nothing
    contextPool.use(clients[1]);
    contextPool.use(clients[10]); // takes the context of 2: 0 keeps its context, and 1 was used later
    assert.deepEqual([...open].sort((a, b) => a - b), [0, 1, 3, 4, 5, 6, 7, 10]);
    contextPool.release(clients[3]);
    contextPool.release(clients[9]);
    contextPool.release(clients[4]);
    open.delete(3); // in the element, a client closes its context before it releases it
    open.delete(4);
    assert.deepEqual([...open].sort((a, b) => a - b), [0, 1, 5, 6, 7, 8, 10, 11]);
    contextPool.release(clients[5]);
    open.delete(5);
    assert.ok(open.has(2) && open.size === 8, "an element whose context the pool took must later get a free context");
});

test("a stroke of a script moves by equal steps, one in each frame, and a touch of the user cancels the remaining steps", async () => {
    const { FingerQueue } = await importPart("finger_queue");
    const queue = new FingerQueue();
    const calls = [];
    const finger = {
        press: ({ x, y }, pressure) => calls.push(["press", x, y, pressure]),
        move: ({ x, y }) => calls.push(["move", x, y]),
        lift: ({ x, y }) => calls.push(["lift", x, y]),
    };
    const path = [{ x: 0, y: 0 }, { x: 10, y: 0 }, { x: 10, y: 30 }];
    const ended = queue.addStroke(path, { duration: 5000 / 60, pressure: 0.3 });
    while (!queue.isEmpty) {
        queue.step(finger);
    }
    await ended;
    const expected = [["press", 0, 0, 0.3], ["move", 10, 0], ["move", 10, 10], ["move", 10, 20], ["move", 10, 30], ["lift", 10, 30]];
    assert.deepEqual(calls, expected);
    const dropped = queue.addDrop({ x: 1, y: 2 });
    queue.step(finger);
    queue.clear();
    await dropped; // must resolve although the touch was cancelled
    queue.step(finger);
    assert.deepEqual(calls.slice(6), [["press", 1, 2, undefined]]);
    assert.equal((queue.addStroke([{ x: 5, y: 5 }], {}), queue.step(finger), calls.at(-1)[1]), 5); // a stroke of one point
});
