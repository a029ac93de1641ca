// Helpers that open the page in a browser engine (see engines/engine.mjs), control it and read its frames.

import assert from "node:assert/strict";
import { mkdirSync } from "node:fs";
import { createServer } from "node:http";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { dirname, join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { engine } from "./engines/engine.mjs";

export { needs } from "./engines/engine.mjs";
export const { launch } = engine;

export const top = join(dirname(fileURLToPath(import.meta.url)), "../..");
export const file = process.env.VELMORA_PAGE ?? join(top, "build/web/velmora.html");
export const screenshotFolder = join(top, "build/page-shots");
mkdirSync(screenshotFolder, { recursive: true });

/** Default size of the page in CSS pixels. The environment variable sets another default, for example 390x844. */
export const pageSize = (process.env.VELMORA_PAGE_SIZE ?? "270x480").split("x").map(Number);

/** Script that adds the accessibility checker `axe` to a page. */
export const axe = readFileSync(createRequire(join(top, "web/package.json")).resolve("axe-core"), "utf8");

/**
 * Opens the page, waits for its first frame and fixes the quality at full detail. Collects console messages and
 * requests for `close`. `before` is a function that runs before the page's scripts. If `ready` is false, does not wait
 * for a frame and leaves adaptive quality on.
 */
export async function open(browser, options = {}) {
    const { size = pageSize, url = pathToFileURL(file).href, hash = "", before, ready = true, ...others } = options;
    const page = await browser.newPage({ size, before, ...others });
    page.address = `${url}?test${hash}`;
    await page.goto(page.address);
    if (ready) {
        await page.waitForFunction(() => window.velmora?.counts().frames > 0);
        await page.evaluate(() => window.velmora.fixQuality(0)); // software GL is slow and would lower the quality
    }
    return page;
}

/** Closes the page. Fails if the console has a message other than `excused`, or if the page requested another URL. */
export async function close(page, excused = /^$/) {
    await page.close();
    const files = page.requests.map((url) => url.split("#")[0]).filter((url) => !/^(data|blob):/.test(url));
    assert.deepEqual(page.consoleMessages.filter((line) => !excused.test(line)), []);
    assert.deepEqual([...new Set(files)], [page.address.split("#")[0]]);
}

/**
 * Serves the page from a local HTTP server, which sends no special headers. Returns `url` of the page, `outerUrl` of an
 * outer page, and `stop`, which stops the server. The outer page shows the page in a sandboxed iframe of 300 x 300
 * pixels that forbids full screen.
 */
export async function serve() {
    const outer = `<!doctype html><body style="height: 3000px">
        <iframe src="velmora.html?test" width="300" height="300" allow="fullscreen 'none'"
            sandbox="allow-scripts allow-same-origin"></iframe>`;
    const pages = { "/velmora.html": readFileSync(file), "/outer.html": outer };
    const server = createServer((request, response) => {
        const body = pages[request.url.split(/[?#]/)[0]];
        response.writeHead(body ? 200 : 404, { "Content-Type": "text/html" });
        response.end(body);
    });
    await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
    server.unref(); // otherwise a failed test would keep the process running
    const root = `http://127.0.0.1:${server.address().port}`;
    return { url: `${root}/velmora.html`, outerUrl: `${root}/outer.html`, stop: () => server.close() };
}

/**
 * Reads the pixels of the next frame whose number is at least `atFrame`. Frames are counted from the opening of the
 * page. `bytes` is RGBA, bottom row first. `pixel(x, y)` counts y from the top.
 */
export async function readFrame(page, atFrame = 0) {
    const encoded = await page.evaluate(
        (wanted) =>
            new Promise((resolve) => {
                const { velmora } = window;
                const stop = velmora.onFrame(() => {
                    if (velmora.counts().frames < wanted) {
                        return;
                    }
                    stop();
                    const { gl } = velmora;
                    const { width, height } = velmora.screen();
                    const bytes = new Uint8Array(width * height * 4);
                    gl.readPixels(0, 0, width, height, gl.RGBA, gl.UNSIGNED_BYTE, bytes);
                    let text = "";
                    for (let at = 0; at < bytes.length; at += 8192) {
                        text += String.fromCharCode(...bytes.subarray(at, at + 8192));
                    }
                    resolve({ width, height, bytes: btoa(text) });
                });
                velmora.noteInput();
            }),
        atFrame,
    );
    const { width, height } = encoded;
    const bytes = Buffer.from(encoded.bytes, "base64");
    const pixel = (x, y) => {
        const at = 4 * (width * (height - 1 - Math.round(y)) + Math.round(x));
        return [...bytes.subarray(at, at + 3)];
    };
    return { width, height, bytes, pixel };
}

/** Returns the mean colour difference of two frames within a box, 0 to 255. The box is in fractions of the frame. */
export function difference(one, other, [left, top, right, bottom] = [0, 0, 1, 1]) {
    const scale = [other.width / one.width, other.height / one.height];
    let sum = 0;
    let count = 0;
    for (let y = Math.ceil(top * one.height); y < Math.floor(bottom * one.height); ++y) {
        for (let x = Math.ceil(left * one.width); x < Math.floor(right * one.width); ++x) {
            const [a, b] = [one.pixel(x, y), other.pixel(x * scale[0], y * scale[1])];
            sum += a.reduce((part, value, at) => part + Math.abs(value - b[at]), 0) / 3;
            ++count;
        }
    }
    return sum / count;
}

/** Drags the mouse with the left button in `steps` moves. Waits for a frame after each move. */
export async function drag(page, from, to, steps = 12) {
    await page.mouse.move(...from);
    await page.mouse.down();
    for (let step = 1; step <= steps; ++step) {
        const part = step / steps;
        await page.mouse.move(from[0] + (to[0] - from[0]) * part, from[1] + (to[1] - from[1]) * part);
        await frames(page, 1);
    }
    await page.mouse.up();
}

/** Waits until the effect has drawn `count` more frames. */
export async function frames(page, count) {
    const start = await page.evaluate(() => window.velmora.counts().frames);
    await page.waitForFunction((end) => window.velmora.counts().frames >= end, start + count);
}

/** Waits until the page requests no more frames. */
export function waitUntilIdle(page) {
    return page.waitForFunction(() => window.velmora.isIdle());
}

/** Waits until the canvas is `width` pixels wide. */
export function waitForCanvasWidth(page, width) {
    return page.waitForFunction((wide) => document.getElementById("water").width === wide, width);
}

/** Returns the current settings. */
export function settings(page) {
    return page.evaluate(() => structuredClone(window.velmora.settings));
}

/** Changes settings, as the panel does. */
export function set(page, changes) {
    return page.evaluate((values) => void Object.assign(window.velmora.settings, values), changes);
}

/**
 * Runs in a page. Advances the page's clock by 1/60 s in each animation frame, so that each animation frame draws one
 * frame of the effect. A replay matches a recording exactly only if each recorded frame lasts 1/60 s.
 */
export function steadyClock() {
    const start = performance.now();
    const request = window.requestAnimationFrame.bind(window);
    let [shown, last] = [0, 0];
    performance.now = () => start + (shown * 1000) / 60;
    window.requestAnimationFrame = (call) =>
        request((time) => {
            // Counts frames, not callbacks. All callbacks of one frame get the same time, and a polling test adds callbacks.
            shown += Number(time !== last);
            last = time;
            call(performance.now());
        });
}

/**
 * Replaces the page's clock and its animation frames. `window.showFrame(milliseconds)` advances the clock and runs a
 * frame.
 */
export function mockTime(page) {
    return page.evaluate(() => {
        const now = performance.now.bind(performance);
        const real = now();
        let [passed, waiting] = [0, null];
        performance.now = () => real + passed;
        window.requestAnimationFrame = (call) => (waiting = call);
        window.showFrame = async (milliseconds) => {
            while (!waiting) {
                await new Promise((resolve) => setTimeout(resolve));
            }
            passed += milliseconds;
            const call = waiting;
            waiting = null;
            call(performance.now());
        };
    });
}

/** Waits for a toast that contains `text`. Returns the whole text of the toast. */
export async function waitForToast(page, text) {
    await page.waitForFunction((wanted) => document.querySelector("#toast.shown")?.textContent.includes(wanted), text);
    return page.evaluate(() => document.querySelector("#toast").textContent);
}

/** Calls `act` and returns the name and the bytes of the file that the page downloads. */
export function downloadFrom(page, act) {
    return page.download(act);
}

/** Returns the bytes of an image file with coloured boxes. Each box is [color, x, y, width, height] in pixels. */
export function makeImage(page, size, boxes, type = "image/png") {
    return page.evaluate(
        async ([[width, height], all, kind]) => {
            const canvas = new OffscreenCanvas(width, height);
            const context = canvas.getContext("2d");
            for (const [color, ...box] of all) {
                context.fillStyle = color;
                context.fillRect(...box);
            }
            return [...new Uint8Array(await (await canvas.convertToBlob({ type: kind, quality: 1 })).arrayBuffer())];
        },
        [size, boxes, type],
    );
}

/** Drops files on the page or pastes them. `kind` is "drop" or "paste". Each file is [name, type, bytes]. */
export function sendFiles(page, kind, ...files) {
    const list = files.map(([name, type, bytes]) => [name, type, Buffer.from(bytes).toString("base64")]);
    return page.evaluate(
        ([event, entries]) => {
            const data = new DataTransfer();
            for (const [name, type, text] of entries) {
                const bytes = Uint8Array.from(atob(text), (character) => character.charCodeAt(0));
                data.items.add(new File([bytes], name, { type }));
            }
            const sent = new Event(event, { bubbles: true, cancelable: true });
            // The event is a plain Event, because Firefox ignores the files of a ClipboardEvent that a script creates.
            Object.defineProperty(sent, event === "drop" ? "dataTransfer" : "clipboardData", { value: data });
            document.getElementById("water").dispatchEvent(sent);
        },
        [kind, list],
    );
}
