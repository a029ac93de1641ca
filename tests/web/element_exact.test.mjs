// The element and the page have different WebAssembly modules. Both modules must compute bit-identical results. The
// test replays shipped gestures with each module on a mock of WebGL, which computes a digest of the uploaded data. The
// digests of both modules must be equal. The test needs no browser.

import assert from "node:assert/strict";
import { createHash } from "node:crypto";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { join } from "node:path";
import { test } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";

const top = fileURLToPath(new URL("../..", import.meta.url));
const { build } = createRequire(join(top, "web/package.json"))("esbuild");
const { elementBundle } = await import(pathToFileURL(join(top, "web/element/bundle.mjs")));

const size = { width: 270, height: 480 };

/**
 * Widths in pixels of the textures to compare: the velocity texture and the reflection map. The mock ignores the
 * background textures, which differ between the page and the element.
 */
const comparedWidths = [Math.floor(size.width / 12), 256];

/** Bundles a script of web/ and imports it. */
async function importScript(path, options = {}) {
    const outfile = join(top, "build/element-tests", path.replaceAll("/", "_").replace(/ts$/, "mjs"));
    const logLevel = "error";
    await build({ entryPoints: [join(top, "web", path)], outfile, bundle: true, format: "esm", logLevel, ...options });
    return import(pathToFileURL(outfile));
}

/**
 * Returns a mock of a WebGL context. Its `digest()` returns a digest of the uploaded data and the number of uploads.
 */
function mockContext() {
    const hash = createHash("sha256");
    let [uploads, objects] = [0, 0];
    const context = {
        bufferData: (_target, data) => (++uploads, hash.update(data)),
        texImage2D: (_target, _level, _format, width, _height, ...others) =>
            others.at(-1) && comparedWidths.includes(width) && (++uploads, hash.update(others.at(-1))),
        getActiveUniform: () => ({ name: "any", size: 1 }),
        digest: () => ({ uploads, digest: hash.copy().digest("hex") }),
    };
    const standard = (name) => {
        if (/^(create|getUniform)/.test(name)) return () => ({ number: ++objects });
        return /Parameter$/.test(name) ? () => 1 : () => 0;
    };
    return new Proxy(context, {
        get: (own, name) => own[name] ?? (name === name.toUpperCase() ? 1 : standard(name)),
    });
}

async function replayOnPage(script) {
    globalThis.document = { currentScript: null };
    const { Effect } = await importScript("page/effect.ts", { loader: { ".wasm": "binary" }, target: "es2022" });
    const gl = mockContext();
    const effect = await Effect.load(gl);
    const image = { ...size, data: new Uint8ClampedArray(4 * size.width * size.height) };
    effect.setBackgrounds(image, image);
    effect.resize(size);
    assert.equal(effect.readScript(script, "test"), "");
    effect.startReplay();
    for (; effect.isReplaying; effect.frame(effect.frameTime));
    return gl.digest();
}

async function replayOnElement(script) {
    const { Effect } = await importScript("element/effect.ts", elementBundle(join(top, "build/web")));
    const { parseGesture } = await importScript("element/gesture_scripts.ts", {
        ...elementBundle(join(top, "build/web"), { hasGestures: true }),
    });
    const gl = mockContext();
    const effect = await Effect.load();
    effect.attach(gl);
    effect.restart(size);
    effect.startReplay(await parseGesture(script));
    for (; effect.isReplaying; effect.frame(1000 / 60));
    return gl.digest();
}

test("a gesture makes the element and the page upload bit-identical data", async () => {
    for (const gesture of ["scribble", "showcase", "tap"]) {
        const script = readFileSync(join(top, "gestures", `${gesture}.gesture`), "utf8");
        const [page, element] = [await replayOnPage(script), await replayOnElement(script)];
        assert.ok(page.uploads > 100, `the page must upload data more than 100 times, not ${page.uploads} times`);
        assert.deepEqual(element, page, gesture);
    }
});
