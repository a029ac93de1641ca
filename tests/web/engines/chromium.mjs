// Headless Chromium, driven by Playwright.

import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { defaultSize, waitLimit } from "./common.mjs";

const { chromium } = createRequire(new URL("../../../web/package.json", import.meta.url))("playwright-core");

export const name = "chromium";

/**
 * Names of the abilities that the engine lacks, each with the reason. `needs` in engine.mjs skips the tests of these
 * abilities.
 */
export const cannot = {};

const softwareGl = ["--use-angle=swiftshader", "--enable-unsafe-swiftshader"];
const noGl = ["--disable-gpu", "--disable-3d-apis"];
const fakeCamera = ["--use-fake-device-for-media-stream", "--use-fake-ui-for-media-stream"];

/** Returns Playwright's browser. A test that runs only in Chromium can therefore use every function of Playwright. */
export async function launch(options = {}) {
    const { webgl = true, camera = false, touchScreen = false, backCache = false, args = [] } = options;
    const { reducedMotion = true, colorScheme = "light" } = options;
    const browser = await chromium.launch({
        ignoreDefaultArgs: backCache ? ["--disable-back-forward-cache"] : [],
        executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
        args: [
            ...(webgl ? softwareGl : noGl),
            ...(camera ? fakeCamera : []),
            ...(process.getuid() === 0 ? ["--no-sandbox"] : []),
            ...args,
        ],
    });
    const device = {
        reducedMotion: reducedMotion ? "reduce" : "no-preference",
        colorScheme,
        hasTouch: touchScreen,
        isMobile: touchScreen,
    };
    browser.newPage = (pageOptions) => newPage(browser, device, pageOptions);
    return browser;
}

async function newPage(browser, device, { size = defaultSize, deviceScaleFactor = 1, before } = {}) {
    const viewport = { width: size[0], height: size[1] };
    const context = await browser.newContext({ viewport, deviceScaleFactor, ...device });
    context.setDefaultTimeout(waitLimit);
    const page = await context.newPage();
    page.consoleMessages = [];
    page.requests = [];
    page.on("console", (message) => page.consoleMessages.push(`${message.type()}: ${message.text().slice(0, 300)}`));
    page.on("pageerror", (error) => page.consoleMessages.push(`error: ${error}`));
    page.on("request", (request) => page.requests.push(request.url()));
    if (before) {
        await page.addInitScript(before);
    }
    page.devTools = await context.newCDPSession(page);
    // While a page has a listener for file choosers, Playwright intercepts them, but does not wait until the browser
    // has started to do so. The command below waits.
    page.on("filechooser", () => {});
    await page.devTools.send("Page.setInterceptFileChooserDialog", { enabled: true });
    const setViewportSize = page.setViewportSize.bind(page);
    page.setViewportSize = ({ deviceScaleFactor, ...viewport }) =>
        deviceScaleFactor
            ? page.devTools.send("Emulation.setDeviceMetricsOverride",
                { ...viewport, deviceScaleFactor, mobile: false })
            : setViewportSize(viewport);
    page.touch = (type, ...points) =>
        page.devTools.send("Input.dispatchTouchEvent", {
            type,
            touchPoints: points.map(([id, x, y, force = 0.5]) => ({ id, x, y, force })),
        });
    page.download = async (act) => {
        const [file] = await Promise.all([page.waitForEvent("download"), act()]);
        return { name: file.suggestedFilename(), bytes: readFileSync(await file.path()) };
    };
    page.chooseFile = async (act, name, bytes) => {
        const [chooser] = await Promise.all([page.waitForEvent("filechooser"), act()]);
        await chooser.setFiles({ name, mimeType: "", buffer: bytes });
    };
    page.back = () => page.evaluate(() => setTimeout(() => history.back()));
    page.close = () => context.close();
    return page;
}
