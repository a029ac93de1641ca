// Helpers that open pages with the custom element and read their pixels.

import assert from "node:assert/strict";
import { existsSync, readFileSync } from "node:fs";
import { createServer } from "node:http";
import { extname, join } from "node:path";
import { launch, needs, steadyClock, top } from "./page.mjs";

export { launch, needs };
export const elementFolder = join(top, "build/web/element");

const types = { ".html": "text/html", ".css": "text/css", ".js": "text/javascript", ".bmp": "image/bmp", ".gesture": "text/plain" };

/** Returns a BMP image: red grows to the right, green grows downwards, and a checkerboard shows the scale. */
export function testImage(width, height) {
    const stride = (width * 3 + 3) & ~3;
    const bytes = Buffer.alloc(54 + stride * height);
    bytes.write("BM");
    bytes.writeUInt32LE(bytes.length, 2);
    bytes.writeUInt32LE(54, 10);
    bytes.writeUInt32LE(40, 14);
    bytes.writeInt32LE(width, 18);
    bytes.writeInt32LE(-height, 22); // the top row first
    bytes.writeUInt32LE((24 << 16) | 1, 26);
    for (let y = 0; y < height; ++y) {
        for (let x = 0; x < width; ++x) {
            const blue = ((x >> 5) + (y >> 5)) % 2 ? 160 : 60;
            bytes.set([blue, (200 * y) / height, (200 * x) / width], 54 + y * stride + 3 * x);
        }
    }
    return bytes;
}

/**
 * Serves the element, test images and pages. `pages` maps a path to the HTML of its body. Delays the response by half a
 * second if the address ends in "?slow".
 */
export async function serve(headers = {}) {
    const pages = new Map();
    const server = createServer((request, response) => {
        const [path, query] = request.url.split("?");
        const file = [join(elementFolder, path), join(top, "gestures", path)].find((name) => existsSync(name));
        const size = path.match(/^\/(\d+)x(\d+)\.bmp$/);
        const body = pages.get(path) ?? (size && testImage(+size[1], +size[2])) ?? (file && readFileSync(file));
        response.writeHead(body ? 200 : 404, { "Content-Type": types[extname(path) || ".html"] ?? "text/plain", ...headers });
        setTimeout(() => response.end(body ?? ""), query === "slow" ? 500 : 0);
    });
    await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
    server.unref(); // otherwise a failed test would keep the process running
    return { pages, address: `http://127.0.0.1:${server.address().port}`, stop: () => server.close() };
}

/** Runs before the page's scripts. Records the element's events, and counts animation frames and live GL contexts. */
function observe() {
    window.seen = [];
    for (const type of ["ready", "error", "idle", "active", "contextlost", "contextrestored", "gestureend"]) {
        document.addEventListener(type, (event) => window.seen.push(event.message ? `${type}: ${event.message}` : type), true);
    }
    document.addEventListener("securitypolicyviolation", (event) => window.seen.push(`policy: ${event.violatedDirective}`));
    window.animationFrames = 0;
    const request = window.requestAnimationFrame;
    window.requestAnimationFrame = (call) => request((now) => (++window.animationFrames, call(now)));
    const contexts = [];
    const getContext = HTMLCanvasElement.prototype.getContext;
    HTMLCanvasElement.prototype.getContext = function (kind, ...options) {
        const context = window.withoutWebGl && kind === "webgl" ? null : getContext.call(this, kind, ...options);
        if (kind === "webgl" && context && !contexts.includes(context)) {
            contexts.push(context);
        }
        return context;
    };
    window.liveContexts = () => contexts.filter((context) => !context.isContextLost()).length;
}

const style = `body { margin: 0 } velmora-water { display: block; width: 300px; height: 200px }
    velmora-water > img { width: 100%; height: 100%; object-fit: cover }`;

/**
 * Opens a page with this body and waits until at least `ready` custom elements have drawn their first frame. `before`
 * runs before the page's scripts. The remaining options are those of newPage (see engines/engine.mjs).
 */
export async function open(browser, server, body, { before = () => {}, ready = 1, size = [300, 200], ...options } = {}) {
    const head = `<!doctype html><meta charset="utf-8"><title>water</title><link rel="icon" href="data:">
        <link rel="stylesheet" href="style.css"><script type="module" src="velmora-element.js"></script>`;
    server.pages.set("/style.css", style);
    server.pages.set("/page", `${head}${body}`);
    const scripts = new Function(`(${steadyClock})(); (${observe})(); (${before})();`);
    const page = await browser.newPage({ size, before: scripts, ...options });
    await page.goto(`${server.address}/page`);
    await page.waitForFunction((count) => window.seen?.filter((type) => type === "ready").length >= count, ready);
    return page;
}

/** Closes the page. Returns the console messages that `excused` matches. Fails if there are other messages. */
export async function close(page, excused = /^$/) {
    await page.close();
    assert.deepEqual(page.consoleMessages.filter((line) => !excused.test(line)), []);
    return page.consoleMessages;
}

/** Adds style rules to the page. */
export function addStyle(page, rules) {
    return page.evaluate((text) => {
        const sheet = document.createElement("style");
        sheet.textContent = text;
        document.head.append(sheet);
    }, rules);
}

/** Waits until an element has sent an event of this type. */
export function waitForEvent(page, type) {
    return page.waitForFunction((wanted) => window.seen.some((event) => event.startsWith(wanted)), type);
}

/** Waits until no element on the page requests frames. */
export function waitUntilIdle(page) {
    return page.waitForFunction(() => [...document.querySelectorAll("velmora-water")].every((water) => water.idle));
}

/** Decodes a PNG image in the page. `pixel(x, y)` returns red, green and blue. */
export async function decode(page, png) {
    const { width, height, text } = await page.evaluate(async (encoded) => {
        const bytes = Uint8Array.from(atob(encoded), (character) => character.charCodeAt(0));
        const image = await createImageBitmap(new Blob([bytes]));
        const canvas = new OffscreenCanvas(image.width, image.height);
        const context = canvas.getContext("2d");
        context.drawImage(image, 0, 0);
        const { data } = context.getImageData(0, 0, image.width, image.height);
        let text = "";
        for (let at = 0; at < data.length; at += 8192) {
            text += String.fromCharCode(...data.subarray(at, at + 8192));
        }
        return { width: image.width, height: image.height, text: btoa(text) };
    }, png.toString("base64"));
    const bytes = Buffer.from(text, "base64");
    return { width, height, pixel: (x, y) => [...bytes.subarray(4 * (width * y + x), 4 * (width * y + x) + 3)] };
}

/** Returns the current frame of the page's custom element number `index`, decoded from the result of `toBlob`. */
export async function frame(page, index = 0) {
    const text = await page.evaluate(async (at) => {
        const blob = await document.querySelectorAll("velmora-water")[at].toBlob();
        return btoa(String.fromCharCode(...new Uint8Array(await blob.arrayBuffer())));
    }, index);
    return decode(page, Buffer.from(text, "base64"));
}

/** Returns a screenshot of the page. */
export async function shot(page) {
    return decode(page, await page.screenshot());
}

/** Returns the mean and the maximum difference of the colour channels of two images within a box of pixels. */
export function difference(one, other, [left, top, right, bottom] = [0, 0, one.width, one.height]) {
    let [sum, max] = [0, 0];
    for (let y = top; y < bottom; ++y) {
        for (let x = left; x < right; ++x) {
            const [a, b] = [one.pixel(x, y), other.pixel(x, y)];
            for (let channel = 0; channel < 3; ++channel) {
                const part = Math.abs(a[channel] - b[channel]);
                sum += part;
                max = Math.max(max, part);
            }
        }
    }
    return { mean: sum / (3 * (right - left) * (bottom - top)), max };
}
