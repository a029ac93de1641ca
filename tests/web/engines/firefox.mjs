// Firefox on a virtual display, driven by Puppeteer over WebDriver BiDi. Headless Firefox has no WebGL on the test
// machines.

import { mkdtempSync, readdirSync, readFileSync, rmSync, watch } from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { defaultSize, requestedFiles } from "./common.mjs";
import { startDisplay } from "./processes.mjs";

const puppeteer = createRequire(new URL("../../../web/package.json", import.meta.url))("puppeteer-core");

export const name = "firefox";
export const cannot = {
    touchForce: "its WebDriver can neither set the pressure of a touch nor cancel it",
    touchScroll: "touches of its WebDriver do not scroll",
    fileChoosers: "cannot answer a file chooser",
    roles: "cannot find controls by their roles",
    shownCode: "the example code is tested in Chromium only",
    serviceWorker: "the service worker is tested in Chromium only",
    emulateMedia: "cannot change the preferences for motion and colours of one page",
    pen: "cannot press with a pen",
    camera: "its imitated camera shows a single colour",
    leaving: "cannot move the mouse out of the page",
};

export async function launch({ webgl = true, camera = false } = {}) {
    const display = await startDisplay();
    const downloads = mkdtempSync(join(tmpdir(), "velmora-firefox-"));
    const browser = await puppeteer.launch({
        browser: "firefox",
        executablePath: process.env.FIREFOX ?? "/usr/bin/firefox-esr",
        headless: false,
        protocolTimeout: 180000, // software GL on a busy machine draws a frame a second
        env: { ...display.environment, ...(process.getuid() === 0 ? { MOZ_DISABLE_CONTENT_SANDBOX: "1" } : {}) },
        extraPrefsFirefox: {
            "webgl.disabled": !webgl,
            "webgl.force-enabled": true,
            "gfx.x11-egl.force-enabled": true,
            "ui.prefersReducedMotion": 1,
            "browser.download.folderList": 2, // the folder of the next preference
            "browser.download.dir": downloads,
            "browser.download.alwaysOpenPanel": false,
            "media.navigator.streams.fake": camera,
            "media.navigator.permission.disabled": camera,
        },
    });
    return {
        newPage: (options) => newPage(browser, downloads, options),
        async close() {
            await browser.close();
            await display.stop();
            rmSync(downloads, { recursive: true, force: true });
        },
    };
}

async function newPage(browser, downloads, { size = defaultSize, deviceScaleFactor = 1, before } = {}) {
    const context = await browser.createBrowserContext();
    const real = await context.newPage();
    real.setDefaultTimeout(180000);
    const [consoleMessages, requests] = [[], []];
    const type = (kind) => (kind === "warn" ? "warning" : kind);
    real.on("console", (message) => consoleMessages.push(`${type(message.type())}: ${message.text().slice(0, 300)}`));
    real.on("pageerror", (error) => consoleMessages.push(`error: ${error}`));
    real.on("request", (request) => requests.push(request.url()));
    const setViewportSize = (viewport) => real.setViewport({ deviceScaleFactor, ...viewport });
    await setViewportSize({ width: size[0], height: size[1] });
    if (before) {
        await real.evaluateOnNewDocument(before);
    }
    const page = {
        consoleMessages,
        setViewportSize,
        mouse: real.mouse,
        goto: (url) => real.goto(url),
        url: () => real.url(),
        reload: () => real.reload(),
        back: () => real.evaluate(() => setTimeout(() => history.back())),
        evaluate: (call, argument) => real.evaluate(call, argument),
        waitForFunction: (call, argument) => real.waitForFunction(call, {}, argument),
        keyboard: {
            down: (key) => real.keyboard.down(key),
            up: (key) => real.keyboard.up(key),
            press: (keys) => press(real.keyboard, keys),
        },
        touch: (type, ...points) => touch(real.touchscreen, type, points),
        screenshot: async (options) => Buffer.from(await real.screenshot(options)),
        download: (act) => download(downloads, act),
        async close() {
            // Firefox does not report requests for files, so the page lists the files that it has loaded.
            page.requests = [...new Set([...(await real.evaluate(requestedFiles)), ...requests])];
            await context.close();
        },
    };
    return page;
}

async function press(keyboard, keys) {
    const [key, ...modifiers] = keys.split("+").reverse();
    for (const modifier of modifiers) {
        await keyboard.down(modifier);
    }
    await keyboard.press(key);
    for (const modifier of modifiers) {
        await keyboard.up(modifier);
    }
}

const fingers = new Map();

async function touch(screen, type, points) {
    for (const [id, x, y] of points) {
        if (type === "touchStart" && !fingers.has(id)) {
            fingers.set(id, await screen.touchStart(x, y));
        } else if (type === "touchMove") {
            await fingers.get(id).move(x, y);
        }
    }
    if (type === "touchEnd") {
        const held = points.map(([id]) => id); // the fingers that stay on the screen
        for (const [id, finger] of fingers) {
            if (!held.includes(id)) {
                await finger.end();
                fingers.delete(id);
            }
        }
    }
}

/** Calls `act` and waits until a new file in the folder is complete. */
async function download(folder, act) {
    const before = new Set(readdirSync(folder));
    const watcher = watch(folder);
    try {
        const saved = new Promise((resolve) => {
            watcher.on("change", () => {
                const files = readdirSync(folder);
                const file = files.find((one) => !before.has(one) && !one.endsWith(".part"));
                // Firefox first creates an empty file with the final name, and then replaces it with the .part file.
                if (file && !files.some((one) => one.endsWith(".part"))) {
                    const bytes = readFileSync(join(folder, file));
                    if (bytes.length > 0) {
                        resolve({ name: file, bytes });
                    }
                }
            });
        });
        await act();
        return await saved;
    } finally {
        watcher.close();
    }
}
