// Options with which esbuild bundles the scripts of the custom element.

import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { transform } from "esbuild";
import { renamed } from "./wasm_names.mjs";

const here = dirname(fileURLToPath(import.meta.url));

/** Returns an object that maps the names of the shipped presets to their settings. */
function presets() {
    const folder = join(here, "../../presets");
    const files = readdirSync(folder).filter((file) => file.endsWith(".json")).sort();
    return Object.fromEntries(files.map((file) => [file.slice(0, -5), JSON.parse(readFileSync(join(folder, file), "utf8"))]));
}

/** Compressed modules. The compression takes seconds, and the build needs the same module several times. */
const compressed = new Map();

/** Renames the imports and exports of a WebAssembly module, and returns the module as raw deflate data. */
export function compressedModule(path, shortNames = {}) {
    const key = JSON.stringify([path, shortNames]);
    if (!compressed.has(key)) {
        const folder = mkdtempSync(join(tmpdir(), "velmora-module-"));
        try {
            const file = join(folder, "module.wasm");
            writeFileSync(file, renamed(readFileSync(path), shortNames));
            compressed.set(key, execFileSync("zopfli", ["--deflate", "-c", file]));
        } finally {
            rmSync(folder, { recursive: true });
        }
    }
    return compressed.get(key);
}

const elementModule = "velmora-element.wasm";

/**
 * Returns esbuild options that embed the WebAssembly modules of a build folder. If `hasGestures` is false, the module
 * for gesture scripts stays in a file of its own, which the browser loads when the page first uses a gesture script.
 * `shortNames` maps imports and exports of the element's module to shorter names.
 */
export function elementBundle(buildFolder, { hasGestures = false, shortNames = {} } = {}) {
    const generated = {
        name: "generated modules",
        setup({ onResolve, onLoad }) {
            onResolve({ filter: /^velmora-/ }, ({ path }) => ({ path, namespace: "generated" }));
            onLoad({ filter: /\.wasm$/, namespace: "generated" }, ({ path }) => ({
                contents: `export default "${compressedModule(join(buildFolder, path), path === elementModule ? shortNames : {}).toString("base64")}";`,
            }));
            onLoad({ filter: /\.css$/ }, async ({ path }) => {
                const { code } = await transform(readFileSync(path, "utf8"), { loader: "css", minify: true });
                return { contents: code.trim(), loader: "text" };
            });
            onLoad({ filter: /-presets$/, namespace: "generated" }, () => ({
                contents: `export default ${JSON.stringify(presets())};`,
            }));
            onResolve({ filter: /^\.\/gesture_program$/ }, ({ kind }) =>
                kind === "dynamic-import" && !hasGestures ? { path: "./velmora-gestures.js", external: true } : undefined,
            );
        },
    };
    // Without this option, the output would also declare each field that the constructor sets, and would be larger.
    const tsconfigRaw = { compilerOptions: { useDefineForClassFields: false } };
    return { target: "es2022", tsconfigRaw, plugins: [generated] };
}
