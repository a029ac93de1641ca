// Bundles scripts, style and the WebAssembly module into one HTML file that loads nothing else.
// Usage: node build.mjs OUTPUT

import { createHash } from "node:crypto";
import { readFileSync, readdirSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { build } from "esbuild";

const here = dirname(fileURLToPath(import.meta.url));
const output = process.argv[2];

/** Returns a list of [name without suffix, bytes] of the files in a folder whose names end with `suffix`. */
function contents(folder, suffix) {
    const files = readdirSync(join(here, "..", folder)).filter((file) => file.endsWith(suffix));
    return files.sort().map((file) => [file.slice(0, -suffix.length), readFileSync(join(here, "..", folder, file))]);
}

function texts(folder, suffix) {
    return Object.fromEntries(contents(folder, suffix).map(([name, bytes]) => [name, bytes.toString("utf8")]));
}

function dataUrls(folder, suffix, type) {
    const urls = contents(folder, suffix).map(([name, bytes]) => [name, `data:${type};base64,${bytes.toString("base64")}`]);
    return Object.fromEntries(urls);
}

/** Bundles a script and the scripts that it imports. Returns the text. */
async function bundle(script, define = {}) {
    const { outputFiles } = await build({
        entryPoints: [join(here, "page", script)],
        bundle: true,
        minify: true,
        write: false,
        format: "iife",
        target: "es2022",
        legalComments: "none",
        loader: { ".wasm": "binary" },
        define,
        logLevel: "warning",
    });
    return outputFiles[0].text;
}

const page = await bundle("main.ts", {
    PRESETS: JSON.stringify(texts("presets", ".json")),
    GESTURES: JSON.stringify(texts("gestures", ".gesture")),
    THUMBNAILS: JSON.stringify(dataUrls("presets", ".jpg", "image/jpeg")),
    PICTURE_WORKER: JSON.stringify(await bundle("picture_worker.ts")),
});
const script = page.replaceAll("</script", "<\\/script"); // would end the script element
const hash = createHash("sha256").update(script).digest("base64");
const policy = [
    "default-src 'none'",
    `script-src 'sha256-${hash}' 'wasm-unsafe-eval'`,
    "style-src 'unsafe-inline'",
    "img-src data: blob:",
    "media-src blob:",
    "worker-src blob:",
    "font-src data:",
    "base-uri 'none'",
    "form-action 'none'",
].join("; ");
const parts = { POLICY: policy, STYLE: readFileSync(join(here, "page/style.css"), "utf8"), SCRIPT: script };
const html = readFileSync(join(here, "page/index.html"), "utf8").replace(/POLICY|STYLE|SCRIPT/g, (name) => parts[name]);
writeFileSync(output, html);
