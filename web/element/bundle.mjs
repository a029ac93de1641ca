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

/** Returns a WebAssembly module as raw deflate data. */
export function compressedModule(path) {
    return execFileSync("zopfli", ["--deflate", "-c", path]);
}

/**
 * Returns options that embed the WebAssembly modules of a build folder. The program for gesture scripts stays in a file
 * that the browser loads when it is needed, unless `hasGestures` is true.
 */
export function elementBundle(buildFolder, { hasGestures = false } = {}) {
    const embeddedModules = {
        name: "embedded modules",
        setup({ onResolve, onLoad }) {
            onResolve({ filter: /^velmora-.*\.wasm$/ }, ({ path }) => ({ path: join(buildFolder, path), namespace: "module" }));
            onLoad({ filter: /.*/, namespace: "module" }, ({ path }) => ({
                contents: compressedModule(path).toString("base64"),
                loader: "text",
            }));
            onResolve({ filter: /^\.\/gesture_program$/ }, ({ kind }) =>
                kind === "dynamic-import" && !hasGestures ? { path: "./velmora-gestures.js", external: true } : undefined,
            );
        },
    };
    return { target: "es2022", define: { PRESETS: JSON.stringify(presets()) }, plugins: [embeddedModules] };
}
