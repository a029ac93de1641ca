// Makes the folder of the npm package. Usage: node make.mjs BUILD_FOLDER VERSION

import { copyFileSync, cpSync, mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { execFileSync } from "node:child_process";

const here = dirname(fileURLToPath(import.meta.url));
const top = join(here, "../../..");
const [buildFolder, version] = process.argv.slice(2);
const output = join(buildFolder, "npm");

rmSync(output, { recursive: true, force: true });
mkdirSync(output, { recursive: true });
cpSync(join(buildFolder, "element"), output, { recursive: true });
copyFileSync(join(top, "LICENSE"), join(output, "LICENSE"));
copyFileSync(join(top, "docs/element.md"), join(output, "README.md"));
writeTypes();
writeFileSync(join(output, "react.js"), "export {};\n"); // only types
writeFileSync(join(output, "package.json"), `${JSON.stringify(manifest(), null, 4)}\n`);
writeFileSync(join(output, "custom-elements.json"), `${JSON.stringify(await elementsManifest(), null, 4)}\n`);

/**
 * Writes the type declarations. Adds the file extension to their imports, because Node resolves an import only if it
 * names the whole file.
 */
function writeTypes() {
    execFileSync(process.execPath, [join(top, "web/node_modules/typescript/bin/tsc"), "-p", here], { stdio: "inherit" });
    const folder = join(output, "types");
    for (const name of readdirSync(folder, { recursive: true }).filter((file) => file.endsWith(".d.ts"))) {
        const text = readFileSync(join(folder, name), "utf8");
        const withExtensions = text.replace(/(from |import\()("\.[^"]*)"/g, '$1$2.js"');
        // Only the bundler resolves the imports of generated modules.
        writeFileSync(join(folder, name), withExtensions.replace(/^import "velmora-.*\n/m, ""));
    }
    copyFileSync(join(here, "react.d.ts"), join(folder, "react.d.ts"));
}

function manifest() {
    const types = "./types/web/element";
    return {
        name: "velmora",
        version,
        description: "Turns pictures and videos of a web page into water and ink that answer to touch",
        license: "MIT",
        type: "module",
        keywords: ["water", "ripple", "fluid", "ink", "webgl", "custom-element", "web-component", "background"],
        main: "./velmora.js",
        types: `${types}/index.d.ts`,
        exports: {
            ".": { types: `${types}/index.d.ts`, default: "./velmora.js" },
            "./element": { types: `${types}/element.d.ts`, default: "./element.js" },
            "./script": { types: `${types}/script.d.ts`, default: "./velmora-element.js" },
            "./react": { types: "./types/react.d.ts", default: "./react.js" },
            "./velmora.wasm": "./velmora.wasm",
            "./custom-elements.json": "./custom-elements.json",
            "./package.json": "./package.json",
        },
        unpkg: "./velmora-element.js",
        jsdelivr: "./velmora-element.js",
        customElements: "./custom-elements.json",
        sideEffects: ["./element.js", "./velmora-element.js"],
    };
}

/** Returns the custom elements manifest, a JSON file that describes the element for editors and documentation tools. */
async function elementsManifest() {
    const { VelmoraWater } = await import(pathToFileURL(join(output, "velmora.js")));
    const attributes = VelmoraWater.observedAttributes.map((name) => ({ name }));
    const methods = ["drop", "stroke", "clear", "play", "startRecording", "stopRecording", "toBlob", "refresh"];
    const events = ["ready", "error", "idle", "active", "contextlost", "contextrestored", "gestureend"];
    const declaration = {
        kind: "class",
        customElement: true,
        name: "VelmoraWater",
        tagName: "velmora-water",
        superclass: { name: "HTMLElement" },
        attributes,
        members: methods.map((name) => ({ kind: "method", name })),
        events: events.map((name) => ({ name, type: { text: name === "error" ? "ErrorEvent" : "Event" } })),
        slots: [{ name: "", description: "The picture under the water" }, { name: "over", description: "Above the water" }],
        cssParts: [{ name: "water" }, { name: "over" }],
    };
    const definition = {
        kind: "custom-element-definition",
        name: "velmora-water",
        declaration: { name: "VelmoraWater", module: "velmora.js" },
    };
    return {
        schemaVersion: "1.0.0",
        modules: [
            { kind: "javascript-module", path: "velmora.js", declarations: [declaration] },
            { kind: "javascript-module", path: "element.js", exports: [definition] },
        ],
    };
}
