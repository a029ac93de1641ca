// Prints the size of each part of the custom element, and for comparison the sizes of other npm packages.

import { readFileSync } from "node:fs";
import { join } from "node:path";
import { gzipSync } from "node:zlib";
import { compressedModule } from "./bundle.mjs";
import { forEachSection } from "./wasm_reader.mjs";

/** Scripts of the element with its embedded WebAssembly module: the file for a script tag, and the file for bundlers. */
export const scripts = ["velmora-element.js", "velmora.js"];
/** Maximum size of each script, in bytes after gzip. */
export const budget = 45 * 1024;

/**
 * Sizes of comparable packages of npm in bytes after gzip -9: the minified script of the package and of all packages
 * that it needs.
 */
export const peers = [
    ["webgl-fluid 0.4.0", 7254],
    ["jquery.ripples 0.6.3 with jquery 3.8.0", 4661 + 30585],
];

/** Parts of the WebAssembly module. A regular expression matches the names of the functions in each part. */
const parts = [
    ["library", /^(auto )?(velmora::|oru|Java_)/],
    ["hostkit", /^(auto )?(hostkit::|AndroidBitmap)/],
    ["app", /^(auto )?app::/],
    ["C++ and C libraries, exports", /(?:)/],
];

export const compressedSize = (file) => gzipSync(readFileSync(file), { level: 9 }).length;

/** Returns a list of [name, size in bytes] of all functions in a module. The module must contain the function names. */
function functionSizes(bytes) {
    const codeSection = 10;
    const functionNames = 1;
    const sizes = [];
    const names = new Map();
    forEachSection(bytes, (section, reader, end) => {
        if (section === codeSection) {
            reader.each(() => {
                const size = reader.number();
                sizes.push(size);
                reader.at += size;
            });
        } else if (section === 0 && reader.name() === "name") {
            while (reader.at < end) {
                const kind = reader.byte();
                const next = reader.number() + reader.at;
                if (kind === functionNames) {
                    reader.each(() => names.set(reader.number(), reader.name()));
                }
                reader.at = next;
            }
        }
    });
    const imports = WebAssembly.Module.imports(new WebAssembly.Module(bytes)).filter(({ kind }) => kind === "function").length;
    return sizes.map((size, index) => [names.get(imports + index) ?? "", size]);
}

/** Returns the size in bytes of each part of the module, before compression. */
function bytesOfParts(buildFolder) {
    const shaders = readFileSync(join(buildFolder, "web/element/shader_texts.cpp"), "utf8").match(/(?<=GLSL\()[^]*?(?=\)GLSL)/g);
    const sums = new Map([["shaders", shaders.join("").length], ...parts.map(([part]) => [part, 0])]);
    for (const [name, size] of functionSizes(readFileSync(join(buildFolder, "velmora-element-parts.wasm")))) {
        const [part] = parts.find(([, pattern]) => pattern.test(name));
        sums.set(part, sums.get(part) + size);
    }
    return sums;
}

/** Prints the sizes. Throws if the element is larger than the budget. */
export function reportSizes(buildFolder, shortNames) {
    const line = (bytes, text) => console.log(`${(bytes / 1024).toFixed(1).padStart(6)} KB  ${text}`);
    const totals = scripts.map((script) => compressedSize(join(buildFolder, "element", script)));
    const module = compressedModule(join(buildFolder, "velmora-element.wasm"), shortNames).length;
    console.log("Sizes after gzip. The size of the module is divided among its parts in proportion to their uncompressed sizes:");
    totals.forEach((total, at) => line(total, `${scripts[at]}, at most ${budget / 1024} KB`));
    line(totals[0] - module, "  script");
    const sums = bytesOfParts(buildFolder);
    const all = [...sums.values()].reduce((sum, bytes) => sum + bytes, 0);
    for (const [part, bytes] of sums) {
        line((module * bytes) / all, `  ${part}`);
    }
    line(compressedSize(join(buildFolder, "element/velmora-gestures.js")), "velmora-gestures.js, loaded when needed");
    for (const [peer, bytes] of peers) {
        line(bytes, `for comparison: ${peer}`);
    }
    const largest = Math.max(...totals);
    if (largest > budget) {
        throw new Error(`The element has ${largest} bytes after gzip, but at most ${budget} are allowed: make it smaller`);
    }
}
