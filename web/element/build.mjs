// Builds the scripts of the custom element and prints their sizes. Fails if the element exceeds its size limit.
// Usage: node build.mjs BUILD_FOLDER

import { copyFileSync, mkdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { build } from "esbuild";
import { elementBundle } from "./bundle.mjs";
import { privateNames } from "./private_names.mjs";
import { reportSizes } from "./sizes.mjs";

const here = dirname(fileURLToPath(import.meta.url));
const buildFolder = process.argv[2];
const output = join(buildFolder, "element");
mkdirSync(output, { recursive: true });

/** Returns the names of all imports and exports of a WebAssembly module of the build folder. */
function namesOf(file) {
    const module = new WebAssembly.Module(readFileSync(join(buildFolder, file)));
    return [...WebAssembly.Module.imports(module), ...WebAssembly.Module.exports(module)].map(({ name }) => name);
}

const names = privateNames(namesOf("velmora-element.wasm"), namesOf("velmora-gestures.wasm"));
const letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
/**
 * Short names of the imports and exports: a capital letter, then a number if needed. No member of the browser's own
 * objects has such a name.
 */
const shortNames = Object.fromEntries(
    namesOf("velmora-element.wasm")
        .filter((name) => names.includes(name))
        .map((name, at) => [name, letters[at % letters.length] + (Math.floor(at / letters.length) || "")]),
);

function bundle(entry, file, options = {}) {
    return build({
        entryPoints: [join(here, entry)],
        outfile: join(output, file),
        bundle: true,
        minify: true,
        format: "esm",
        charset: "utf8",
        legalComments: "none",
        ...elementBundle(buildFolder, { shortNames }),
        mangleProps: new RegExp(`^(${names.join("|")})$`),
        mangleCache: { ...shortNames }, // a copy, because esbuild adds names to this object
        logLevel: "warning",
        ...options,
    });
}

await bundle("index.ts", "velmora.js");
await bundle("gesture_program.ts", "velmora-gestures.js");
// The same file runs as a module and as a classic script. The enclosing function keeps the file's variables out of the
// global scope of the page.
await bundle("script.ts", "velmora-element.js", { banner: { js: "(()=>{" }, footer: { js: "})();" } });
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

try {
    reportSizes(buildFolder, shortNames);
} catch (error) {
    rmSync(join(output, "velmora-element.js")); // otherwise the next build would regard the file as up to date
    throw error;
}
