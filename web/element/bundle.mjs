// Options of esbuild for the scripts of the custom element.

import { execFileSync } from "node:child_process";
import { readFileSync, readdirSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const here = dirname(fileURLToPath(import.meta.url));

/** Returns the shipped presets by name, as objects. */
function presets() {
    const folder = join(here, "../../presets");
    const files = readdirSync(folder).filter((file) => file.endsWith(".json")).sort();
    return Object.fromEntries(files.map((file) => [file.slice(0, -5), JSON.parse(readFileSync(join(folder, file), "utf8"))]));
}

const compressed = new Map();

/** Returns a WebAssembly module as raw deflate data. */
export function compressedModule(path) {
    if (!compressed.has(path)) {
        compressed.set(path, execFileSync("zopfli", ["--deflate", "-c", path]));
    }
    return compressed.get(path);
}

/**
 * Returns options that embed the WebAssembly modules of a build folder. The program for gesture scripts stays in a file
 * that the browser loads when it is needed, unless `hasGestures` is true.
 */
export function elementBundle(buildFolder, { hasGestures = false } = {}) {
    const generated = {
        name: "generated modules",
        setup({ onResolve, onLoad }) {
            onResolve({ filter: /^velmora-/ }, ({ path }) => ({ path, namespace: "generated" }));
            onLoad({ filter: /\.wasm$/, namespace: "generated" }, ({ path }) => ({
                contents: `export default "${compressedModule(join(buildFolder, path)).toString("base64")}";`,
            }));
            onLoad({ filter: /-presets$/, namespace: "generated" }, () => ({
                contents: `export default ${JSON.stringify(presets())};`,
            }));
            onResolve({ filter: /^\.\/gesture_program$/ }, ({ kind }) =>
                kind === "dynamic-import" && !hasGestures ? { path: "./velmora-gestures.js", external: true } : undefined,
            );
        },
    };
    // Fields that the constructor sets need no declaration in the output.
    const tsconfigRaw = { compilerOptions: { useDefineForClassFields: false } };
    return { target: "es2022", tsconfigRaw, plugins: [generated] };
}
