// Helpers that serve the site and read what its pages show.

import assert from "node:assert/strict";
import { existsSync, readdirSync, readFileSync } from "node:fs";
import { createServer } from "node:http";
import { extname, join } from "node:path";
import { engine } from "./engines/engine.mjs";
import { top } from "./page.mjs";

export const site = join(top, "build/site");
export const pages = readdirSync(site).filter((file) => file.endsWith(".html") && file !== "velmora.html");
const types = {
    ".css": "text/css", ".html": "text/html", ".jpg": "image/jpeg", ".js": "text/javascript", ".mp4": "video/mp4",
    ".svg": "image/svg+xml", ".webmanifest": "application/manifest+json",
};

/**
 * Returns true if the engine can show the page. Otherwise reports the reason in the test's context and returns false.
 */
export function canShow(file, context) {
    const reason = engine.cannot[file.slice(0, -5)];
    if (reason) {
        context.diagnostic(`skipped: the page ${file} (${engine.name}: ${reason})`);
    }
    return !reason;
}

/**
 * Serves the site. `shown` maps paths under /shown/ to the example code that a page of the site shows to its reader.
 */
export async function serve(shown = {}) {
    const server = createServer((request, response) => {
        const path = request.url.replace(/\/$/, "/index.html");
        const file = join(site, path.replace("/shown/", "/"));
        const body = shown[path] ?? (existsSync(file) && extname(file) ? readFileSync(file) : undefined);
        response.writeHead(body ? 200 : 404, { "Content-Type": types[extname(path)] ?? "text/html" });
        response.end(body ?? "");
    });
    await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
    server.unref(); // otherwise a failed test would keep the process running
    const stop = () => (server.close(), server.closeAllConnections());
    return { address: `http://127.0.0.1:${server.address().port}`, stop };
}

/** Waits until the first element draws. If the page has more elements than GL contexts, any element may draw. */
export function waitForWater(page) {
    return page.waitForFunction(() => {
        const waters = [...document.querySelectorAll("velmora-water")];
        return waters.slice(0, waters.length > 8 ? waters.length : 1).some((water) => water.live);
    });
}

/** Scales the first element that draws to 16 x 16 pixels, and returns the number of distinct colours. */
function colors(page) {
    return page.evaluate(async () => {
        const live = [...document.querySelectorAll("velmora-water")].find((water) => water.live);
        const frame = await createImageBitmap(await live.toBlob());
        const copy = new OffscreenCanvas(16, 16).getContext("2d");
        copy.drawImage(frame, 0, 0, 16, 16);
        return new Set(new Uint32Array(copy.getImageData(0, 0, 16, 16).data.buffer)).size;
    });
}

/** Waits until an element shows a picture. Polls, because an element can draw before its video or camera has a picture. */
export async function expectPicture(page, file) {
    await waitForWater(page);
    for (let attempt = 0; attempt < 40; ++attempt) {
        if ((await colors(page)) > 8) {
            return;
        }
    }
    assert.fail(`${file} must show a picture under the water`);
}

export async function close(page, name) {
    await page.close();
    assert.deepEqual(page.consoleMessages, [], name);
}
