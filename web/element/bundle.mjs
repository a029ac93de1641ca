// Options of esbuild for the scripts of the custom element.

import { execFileSync } from "node:child_process";
import { readFileSync, readdirSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { renamed } from "./wasm_names.mjs";

const here = dirname(fileURLToPath(import.meta.url));

/** Returns the shipped presets by name, as objects. */
function presets() {
    const folder = join(here, "../../presets");
    const files = readdirSync(folder).filter((file) => file.endsWith(".json")).sort();
    return Object.fromEntries(files.map((file) => [file.slice(0, -5), JSON.parse(readFileSync(join(folder, file), "utf8"))]));
}

/** Returns a WebAssembly module as raw deflate data, with other names of its imports and exports. */
export function compressedModule(path, shortNames = {}) {
    const copy = path.replace(/\.wasm$/, ".renamed.wasm");
    writeFileSync(copy, renamed(readFileSync(path), shortNames));
    return execFileSync("zopfli", ["--deflate", "-c", copy]);
}

const elementModule = "velmora-element.wasm";

/**
 * Returns options that embed the WebAssembly modules of a build folder. The program for gesture scripts stays in a file
 * that the browser loads when it is needed, unless `hasGestures` is true. `shortNames` are other names of
 * imports and exports of the element's module.
 */
export function elementBundle(buildFolder, { hasGestures = false, shortNames = {} } = {}) {
    const generated = {
        name: "generated modules",
        setup({ onResolve, onLoad }) {
            onResolve({ filter: /^velmora-/ }, ({ path }) => ({ path, namespace: "generated" }));
            onLoad({ filter: /\.wasm$/, namespace: "generated" }, ({ path }) => ({
                contents: `export default "${compressedModule(join(buildFolder, path), path === elementModule ? shortNames : {}).toString("base64")}";`,
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
