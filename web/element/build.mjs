// Builds the scripts of the custom element and prints their sizes.
// Usage: node build.mjs BUILD_FOLDER

import { copyFileSync, mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";
import { build } from "esbuild";
import { compressedModule, elementBundle } from "./bundle.mjs";

const here = dirname(fileURLToPath(import.meta.url));
const buildFolder = process.argv[2];
const output = join(buildFolder, "element");
mkdirSync(output, { recursive: true });

function bundle(entry, file, format, options = {}) {
    return build({
        entryPoints: [join(here, entry)],
        outfile: join(output, file),
        bundle: true,
        minify: true,
        format,
        charset: "utf8",
        legalComments: "none",
        ...elementBundle(buildFolder),
        logLevel: "warning",
        ...options,
    });
}

await bundle("index.ts", "velmora.js", "esm");
await bundle("gesture_program.ts", "velmora-gestures.js", "esm");
// The same file runs as a module and as a classic script.
await bundle("element.ts", "velmora-element.js", "iife", {
    globalName: "velmora",
    footer: { js: "globalThis.velmora=velmora;" }, // a variable of a module is not global
});
writeFileSync(
    join(output, "element.js"),
    `import { VelmoraWater } from "./velmora.js";
if (typeof customElements === "object" && !customElements.get("velmora-water")) {
    customElements.define("velmora-water", VelmoraWater);
}
export * from "./velmora.js";
`,
);
copyFileSync(join(buildFolder, "velmora-element.wasm"), join(output, "velmora.wasm"));

const kilobytes = (bytes) => `${(bytes / 1024).toFixed(1)} KB`.padStart(9);
const compressed = (file) => gzipSync(readFileSync(file), { level: 9 }).length;
const total = compressed(join(output, "velmora-element.js"));
const module = compressedModule(join(buildFolder, "velmora-element.wasm")).length;
console.log(`velmora-element.js  ${kilobytes(total)} gzip: module ${kilobytes(module)}, script ${kilobytes(total - module)}`);
console.log(`velmora-gestures.js ${kilobytes(compressed(join(output, "velmora-gestures.js")))} gzip, loaded when needed`);
