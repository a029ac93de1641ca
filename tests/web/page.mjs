// The page in headless Chromium, and what can be seen of it.

import assert from "node:assert/strict";
import { mkdirSync } from "node:fs";
import { createServer } from "node:http";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { dirname, join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";

export const top = join(dirname(fileURLToPath(import.meta.url)), "../..");
export const file = process.env.VELMORA_PAGE ?? join(top, "build/web/velmora.html");
export const shots = join(top, "build/page-shots");
mkdirSync(shots, { recursive: true });

// The page's packages are its tests' as well.
const { chromium } = createRequire(join(top, "web/package.json"))("playwright-core");
export const softwareGl = ["--use-angle=swiftshader", "--enable-unsafe-swiftshader"];

export function launch(args = softwareGl) {
    return chromium.launch({
        executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
        args: [...args, ...(process.getuid?.() === 0 ? ["--no-sandbox"] : [])],
    });
}

/**
 * Opens the page and waits for its first frame. What it complains of and asks for is kept beside it, and `close`
 * finds it without complaints.
 */
export async function open(browser, options = {}) {
    const { size = [270, 480], url = pathToFileURL(file).href, hash = "", before, ready = true, ...others } = options;
    const context = await browser.newContext({
        viewport: { width: size[0], height: size[1] },
        reducedMotion: "reduce", // no finger but the test's
        ...others,
    });
    context.setDefaultTimeout(180000); // software GL on a busy machine draws a frame a second
    const page = await context.newPage();
    page.complaints = [];
    page.requests = [];
    page.on("console", (message) => page.complaints.push(`${message.type()}: ${message.text().slice(0, 300)}`));
    page.on("pageerror", (error) => page.complaints.push(`error: ${error}`));
    page.on("request", (request) => page.requests.push(request.url()));
    if (before) {
        await page.addInitScript(before);
    }
    page.address = url + hash;
    await page.goto(page.address);
    if (ready) {
        await page.waitForFunction(() => window.velmora?.counts().frames > 0);
        await page.evaluate(() => window.velmora.fixQuality(0)); // software GL draws all of it, slowly
    }
    return page;
}

export async function close(page, excused = /^$/) {
    const asked = page.requests.map((url) => url.split("#")[0]).filter((url) => !/^(data|blob):/.test(url));
    await page.context().close();
    assert.deepEqual(page.complaints.filter((line) => !excused.test(line)), []);
    assert.deepEqual(asked, [page.address.split("#")[0]]);
}

/** The page's file on a server without any special header. */
export async function serve() {
    const server = createServer((request, response) => {
        const found = request.url.split("#")[0] === "/velmora.html";
        response.writeHead(found ? 200 : 404, { "Content-Type": "text/html" });
        response.end(found ? readFileSync(file) : "");
    });
    await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
    server.unref(); // else a test that fails before it stops the server never ends
    return { url: `http://127.0.0.1:${server.address().port}/velmora.html`, stop: () => server.close() };
}

/** The picture of the next frame, or of frame `atFrame` since the page was opened; RGBA, rows top to bottom. */
export async function picture(page, atFrame = 0) {
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

/** How far the colours lie apart on average, 0 to 255, within a box of part of the screen; of any two sizes. */
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

/** Waits until the effect has run so many frames more. */
export async function frames(page, count) {
    const start = await page.evaluate(() => window.velmora.counts().frames);
    await page.waitForFunction((end) => window.velmora.counts().frames >= end, start + count);
}

/** Waits until the page asks for no more frames. */
export function rest(page) {
    return page.waitForFunction(() => window.velmora.isResting());
}

/** The canvas' width becomes so many pixels. */
export function canvasWidth(page, width) {
    return page.waitForFunction((wide) => document.getElementById("water").width === wide, width);
}

/** The settings in force. */
export function settings(page) {
    return page.evaluate(() => structuredClone(window.velmora.settings));
}

/** Changes settings, as the panel does. */
export function set(page, changes) {
    return page.evaluate((values) => void Object.assign(window.velmora.settings, values), changes);
}

/** Takes over the page's time and its animation frames: `window.showFrame(milliseconds)` lets that time pass and shows one. */
export function takeTime(page) {
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

/** Lets a test answer choosers of files: the browser hands them over once this has settled. */
export async function catchChoosers(page) {
    page.on("filechooser", () => {});
    const session = await page.context().newCDPSession(page);
    await session.send("Page.setInterceptFileChooserDialog", { enabled: true });
}

export async function notice(page, pattern) {
    const line = page.locator("#notice.shown");
    await line.filter({ hasText: pattern }).waitFor({ timeout: 10000 });
    return line.textContent();
}

/** The file that something hands to the visitor. */
export async function saved(page, act) {
    const [file] = await Promise.all([page.waitForEvent("download"), act()]);
    return file;
}

/** A picture's bytes, of boxes of colour: [color, x, y, width, height] each. */
export function paint(page, size, boxes, type = "image/png") {
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

/** Drops or pastes files, [name, type, bytes] each. */
export function bring(page, kind, ...files) {
    const list = files.map(([name, type, bytes]) => [name, type, Buffer.from(bytes).toString("base64")]);
    return page.evaluate(
        ([event, entries]) => {
            const data = new DataTransfer();
            for (const [name, type, text] of entries) {
                const bytes = Uint8Array.from(atob(text), (letter) => letter.charCodeAt(0));
                data.items.add(new File([bytes], name, { type }));
            }
            const target = document.getElementById("water");
            const options = { bubbles: true, cancelable: true };
            target.dispatchEvent(
                event === "drop"
                    ? new DragEvent("drop", { ...options, dataTransfer: data })
                    : new ClipboardEvent("paste", { ...options, clipboardData: data }),
            );
        },
        [kind, list],
    );
}
