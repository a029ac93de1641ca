// Firefox on a virtual display, driven by Puppeteer over WebDriver BiDi. Headless Firefox has no WebGL on the test
// machines.

import { mkdtempSync, readdirSync, readFileSync, rmSync, watch, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { defaultSize, keepAnimationFrames, requestedFiles, untilShown, waitLimit } from "./common.mjs";
import { addLocators } from "./locator.mjs";
import { startDisplay } from "./processes.mjs";

const puppeteer = createRequire(new URL("../../../web/package.json", import.meta.url))("puppeteer-core");

export const name = "firefox";
export const cannot = {
    touchForce: "its WebDriver can neither set the pressure of a touch nor cancel it",
    touchScroll: "its WebDriver cannot scroll by touch",
    printed: "cannot show a page as printed",
    keyboardLayout: "cannot press keys of other keyboard layouts",
    pen: "cannot press with a pen",
    camera: "its imitated camera shows a single colour",
    leaving: "cannot move the mouse out of the page",
};

/** Value of Firefox's pointer preferences for a device whose only pointer is a touch screen. */
const coarsePointer = 1;

export async function launch(options = {}) {
    const { webgl = true, camera = false, touchScreen = false, reducedMotion = true, colorScheme = "light" } = options;
    const display = await startDisplay();
    const downloads = mkdtempSync(join(tmpdir(), "velmora-firefox-"));
    const browser = await puppeteer.launch({
        browser: "firefox",
        executablePath: process.env.FIREFOX ?? "/usr/bin/firefox-esr",
        headless: false,
        protocolTimeout: waitLimit,
        env: { ...display.environment, ...(process.getuid() === 0 ? { MOZ_DISABLE_CONTENT_SANDBOX: "1" } : {}) },
        extraPrefsFirefox: {
            "webgl.disabled": !webgl,
            "webgl.force-enabled": true,
            "gfx.x11-egl.force-enabled": true,
            "ui.prefersReducedMotion": Number(reducedMotion),
            ...(touchScreen && {
                "ui.primaryPointerCapabilities": coarsePointer,
                "ui.allPointerCapabilities": coarsePointer,
            }),
            "layout.css.prefers-color-scheme.content-override": colorScheme === "dark" ? 0 : 1,
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
    real.setDefaultTimeout(waitLimit);
    const [consoleMessages, requests] = [[], []];
    const folders = []; // folders of the files that the test has chosen
    const type = (kind) => (kind === "warn" ? "warning" : kind);
    real.on("console", (message) => consoleMessages.push(`${type(message.type())}: ${message.text().slice(0, 300)}`));
    real.on("pageerror", (error) => consoleMessages.push(`error: ${error}`));
    real.on("request", (request) => requests.push(request.url()));
    const setViewportSize = (viewport) => real.setViewport({ deviceScaleFactor, ...viewport });
    await setViewportSize({ width: size[0], height: size[1] });
    await real.evaluateOnNewDocument(keepAnimationFrames);
    if (before) {
        await real.evaluateOnNewDocument(before);
    }
    const page = {
        consoleMessages,
        setViewportSize,
        mouse: {
            move: (x, y) => real.mouse.move(x, y),
            down: (options) => real.mouse.down(options),
            up: (options) => real.mouse.up(options),
            click: (x, y) => real.mouse.click(x, y),
            wheel: (deltaX, deltaY) => real.mouse.wheel({ deltaX, deltaY }),
        },
        goto: (url) => real.goto(url),
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
        async screenshot(options) {
            await real.evaluate(untilShown);
            return Buffer.from(await real.screenshot(options));
        },
        download: (act) => download(downloads, act),
        async chooseFile(act, name, bytes) {
            const folder = mkdtempSync(join(tmpdir(), "velmora-firefox-"));
            writeFileSync(join(folder, name), bytes);
            const [chooser] = await Promise.all([real.waitForFileChooser(), act()]);
            await chooser.accept([join(folder, name)]);
            folders.push(folder);
        },
        async close() {
            // Firefox does not report requests for files, so the page lists the files that it has loaded.
            page.requests = [...new Set([...(await real.evaluate(requestedFiles)), ...requests])];
            await context.close();
            folders.forEach((folder) => rmSync(folder, { recursive: true }));
        },
    };
    return addLocators(page);
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
