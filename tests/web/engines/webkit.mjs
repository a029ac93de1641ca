// WebKitGTK on a virtual display, driven by its WebDriver. webkit_browser.py is a minimal browser that displays pages
// with this engine.

import { once } from "node:events";
import { mkdirSync, mkdtempSync, readdirSync, readFileSync, rmSync, watch, writeFileSync } from "node:fs";
import { createServer } from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath } from "node:url";
import { defaultSize, keepAnimationFrames, requestedFiles, untilShown, waitLimit } from "./common.mjs";
import { addLocators } from "./locator.mjs";
import { start, startDisplay, stop } from "./processes.mjs";

export const name = "webkit";
export const cannot = {
    touch: "its WebDriver sends touches as a mouse",
    pen: "cannot press with a pen",
    imageDecoder: "has no ImageDecoder, so animated images do not move",
    heldKeys: "its WebDriver begins another stroke when the mouse moves while a key is held",
    zoom: "its zoom does not change the pixel ratio",
    recorder: "the installed GStreamer has no encoder for its MediaRecorder",
    printed: "cannot show a page as printed",
    keyboardLayout: "cannot press keys of other keyboard layouts",
    leaving: "cannot move the mouse out of the page",
    repeatedVideo: "the installed GStreamer sometimes stops forever when a video repeats",
};

const browserProgram = fileURLToPath(new URL("webkit_browser.py", import.meta.url));

export async function launch({ webgl = true, camera = false, reducedMotion = true, colorScheme = "light" } = {}) {
    const display = await startDisplay();
    const environment = { ...display.environment, VELMORA_WEBGL: Number(webgl), VELMORA_CAMERA: Number(camera) };
    const preferences = `[Settings]
gtk-enable-animations=${Number(!reducedMotion)}
gtk-application-prefer-dark-theme=${Number(colorScheme === "dark")}
`;
    return { newPage: (options) => newPage(environment, preferences, options), close: () => display.stop() };
}

/** Maximum time in milliseconds in which a new browser must draw its first animation frame. */
const firstFrameLimit = 20000;

/**
 * Opens a page in a new browser, so that pages share no storage. Sometimes a new browser draws no frames at all, so a
 * browser that draws no empty page is replaced by another one.
 */
async function newPage(...options) {
    while (true) {
        const page = await startBrowser(...options);
        const frame = page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => resolve(true))));
        const limit = new Promise((resolve) => setTimeout(resolve, firstFrameLimit));
        if (await Promise.race([frame.catch(() => false), limit])) {
            return page;
        }
        console.log("The browser has drawn no frame, so it is replaced by a new browser");
        await page.quit();
    }
}

async function startBrowser(environment, preferences, { size = defaultSize, deviceScaleFactor = 1, before } = {}) {
    const folder = mkdtempSync(join(tmpdir(), "velmora-webkit-"));
    mkdirSync(join(folder, "downloads"));
    mkdirSync(join(folder, "gtk-3.0"));
    writeFileSync(join(folder, "gtk-3.0/settings.ini"), preferences);
    writeFileSync(join(folder, "before.js"), `(${keepAnimationFrames})();${before ? `(${before})();` : ""}`);
    const port = await freePort();
    const driver = start("WebKitWebDriver", [`--port=${port}`], {
        stdio: "ignore",
        env: {
            ...environment,
            HOME: folder,
            XDG_CONFIG_HOME: folder,
            GDK_SCALE: deviceScaleFactor,
            VELMORA_FOLDER: folder,
            ...(process.getuid() === 0 ? { WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS: "1" } : {}),
        },
    });
    const root = `http://127.0.0.1:${port}`;
    await repeatUntilSuccess(() => request("GET", `${root}/status`));
    const browser = { binary: browserProgram, args: ["--automation"] };
    const capabilities = { alwaysMatch: { "webkitgtk:browserOptions": browser } };
    const { sessionId } = await request("POST", `${root}/session`, { capabilities });
    const page = addLocators(new Page(`${root}/session/${sessionId}`, folder));
    await page.send("POST", "timeouts", { script: waitLimit });
    await page.setViewportSize({ width: size[0], height: size[1] });
    page.quit = async () => {
        await stop(driver);
        try {
            rmSync(folder, { recursive: true, force: true, maxRetries: 20 });
        } catch {
            // The processes of the browser end later than the driver, and may still write files.
        }
    };
    page.close = async () => {
        page.requests = await page.evaluate(requestedFiles);
        await stop(driver);
        const lines = readFileSync(join(folder, "console"), "utf8").split("\n").slice(0, -1);
        page.consoleMessages = lines.map((line) => line.slice(0, 300));
        await page.quit();
    };
    return page;
}

/** Returns a TCP port that no program uses. */
async function freePort() {
    const server = createServer().listen(0, "127.0.0.1");
    await once(server, "listening");
    const { port } = server.address();
    await new Promise((resolve) => server.close(resolve));
    return port;
}

/** Repeats a call until it succeeds. Returns its result, or throws its last error. */
async function repeatUntilSuccess(call) {
    const end = Date.now() + waitLimit;
    while (true) {
        try {
            return await call();
        } catch (error) {
            if (Date.now() > end) {
                throw error;
            }
        }
    }
}

/** Sends a WebDriver command and returns its result. */
async function request(method, url, body) {
    const response = await fetch(url, { method, body: body && JSON.stringify(body) });
    const { value } = await response.json();
    if (!response.ok) {
        throw new Error(`${method} ${new URL(url).pathname}: ${value.error}: ${value.message}`);
    }
    return value;
}

/**
 * Returns the source text of a function as an expression. If the function is a method, adds the keyword `function` to
 * the text.
 */
function expressionOf(call) {
    const text = String(call);
    const isMethod = /^(async )?(?!async|function)\w+\s*\([^)]*\)\s*\{/.test(text);
    return isMethod ? text.replace(/^(async )?/, "$1function ") : text;
}

// Code points that stand for special keys in WebDriver.
const keyCodes = {
    Backspace: "\uE003", Tab: "\uE004", Enter: "\uE007", Escape: "\uE00C",
    Shift: "\uE008", Control: "\uE009", Alt: "\uE00A",
    ArrowLeft: "\uE012", ArrowUp: "\uE013", ArrowRight: "\uE014", ArrowDown: "\uE015", Delete: "\uE017", F1: "\uE031",
};
const buttons = { left: 0, middle: 1, right: 2 };

class Page {
    #position = { x: 0, y: 0 };
    mouse = {
        move: (x, y) => {
            this.#position = { x: Math.round(x), y: Math.round(y) };
            return this.#pointer({ type: "pointerMove", ...this.#position, duration: 0 });
        },
        down: ({ button = "left" } = {}) => this.#pointer({ type: "pointerDown", button: buttons[button] }),
        up: ({ button = "left" } = {}) => this.#pointer({ type: "pointerUp", button: buttons[button] }),
        click: async (x, y) => {
            await this.mouse.move(x, y);
            await this.mouse.down();
            await this.mouse.up();
        },
        wheel: (deltaX, deltaY) => this.#wheel({ type: "scroll", ...this.#position, deltaX, deltaY, duration: 0 }),
    };
    keyboard = {
        down: (key) => this.#keys([["keyDown", key]]),
        up: (key) => this.#keys([["keyUp", key]]),
        press: (keys) => {
            const all = keys.split("+");
            return this.#keys([...all.map((key) => ["keyDown", key]), ...all.reverse().map((key) => ["keyUp", key])]);
        },
    };
    #session;
    #folder;
    #downloads;

    /** `folder` is the value of VELMORA_FOLDER, see webkit_browser.py. */
    constructor(session, folder) {
        this.#session = session;
        this.#folder = folder;
        this.#downloads = join(folder, "downloads");
    }

    send(method, command, body) {
        return request(method, `${this.#session}/${command}`, body);
    }

    async goto(url) {
        this.address = url;
        await this.send("POST", "url", { url });
    }

    back() {
        return this.send("POST", "back", {});
    }

    reload() {
        return this.send("POST", "refresh", {});
    }

    setViewportSize({ width, height }) {
        return this.send("POST", "window/rect", { x: 0, y: 0, width, height }); // the window has no frame
    }

    async evaluate(call, argument) {
        const script = `const [argument, done] = arguments;
            Promise.resolve().then(() => (${expressionOf(call)})(argument))
                .then((value) => done({ value }), (error) => done({ error: String(error) }));`;
        const { value, error } = await this.send("POST", "execute/async", { script, args: [argument ?? null] });
        if (error) {
            throw new Error(error);
        }
        return value;
    }

    waitForFunction(call, argument) {
        return this.evaluate(
            `async (argument) => {
                while (!(await (${call})(argument))) {
                    await new Promise((resolve) => setTimeout(resolve, 10));
                }
            }`,
            argument,
        );
    }

    async screenshot({ path } = {}) {
        await this.evaluate(untilShown); // the driver takes the screenshot from the window
        const png = Buffer.from(await this.send("GET", "screenshot"), "base64");
        if (path) {
            writeFileSync(path, png);
        }
        return png;
    }

    /** Calls `act` and returns the file that the browser saves. */
    async download(act) {
        const watcher = watch(this.#downloads);
        try {
            // The browser moves only complete files into the download folder.
            const newest = () => readdirSync(this.#downloads)[0];
            const saved = new Promise((resolve) => watcher.on("change", () => resolve(newest())));
            await act();
            const file = join(this.#downloads, await saved);
            const bytes = readFileSync(file);
            rmSync(file);
            return { name: file.slice(this.#downloads.length + 1), bytes };
        } finally {
            watcher.close();
        }
    }

    async chooseFile(act, name, bytes) {
        // Under automation, WebKit cancels every file chooser. So the driver sets the file of the field.
        await this.evaluate(() => {
            const { click } = HTMLInputElement.prototype;
            HTMLInputElement.prototype.click = function () {
                HTMLInputElement.prototype.click = click;
                document.body.append(this); // the driver refuses fields outside the document
                this.id = "file-field";
            };
        });
        await act();
        const field = await this.send("POST", "element", { using: "css selector", value: "#file-field" });
        const file = join(this.#folder, name);
        writeFileSync(file, bytes);
        await this.send("POST", `element/${Object.values(field)[0]}/value`, { text: file });
        await this.evaluate(() => document.getElementById("file-field").remove());
    }

    #pointer(action) {
        const mouse = { type: "pointer", id: "mouse", parameters: { pointerType: "mouse" }, actions: [action] };
        return this.send("POST", "actions", { actions: [mouse] });
    }

    #wheel(action) {
        return this.send("POST", "actions", { actions: [{ type: "wheel", id: "wheel", actions: [action] }] });
    }

    #keys(changes) {
        const actions = changes.map(([type, key]) => ({ type, value: keyCodes[key] ?? key }));
        return this.send("POST", "actions", { actions: [{ type: "key", id: "keyboard", actions }] });
    }
}
