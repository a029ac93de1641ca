// Renames the imports and exports of a WebAssembly module, and removes the exports that no script uses.

import { forEachSection, headerBytes } from "./wasm_reader.mjs";

/** Exports that Emscripten adds, and that the element's script does not use. */
const unusedExports = [
    "__indirect_function_table", "__errno_location", "emscripten_main_thread_process_queued_calls", "stackSave",
    "stackRestore", "stackAlloc",
];

/** Returns the bytes of a number in LEB128, the variable-length format of WebAssembly. */
function encoded(value) {
    return value < 128 ? [value] : [128 | (value & 127), ...encoded(value >> 7)];
}

/** Copies the parts of a section to `output`. */
class Copier {
    output = [];

    constructor(reader, rename) {
        Object.assign(this, { reader, rename });
    }

    copyNumber() {
        const value = this.reader.number();
        this.output.push(...encoded(value));
        return value;
    }

    copyByte() {
        const value = this.reader.byte();
        this.output.push(value);
        return value;
    }

    addName(name) {
        const bytes = Buffer.from(name);
        this.output.push(...encoded(bytes.length), ...bytes);
    }

    /**
     * Copies the import section with the new names. Supports only imported functions; the element's module has no other
     * imports.
     */
    copyImports() {
        for (let count = this.copyNumber(); count > 0; --count) {
            this.reader.name(); // drops the name of the imported module, because wasm_module.ts accepts any name
            this.addName("");
            this.addName(this.rename(this.reader.name()));
            if (this.copyByte() !== 0) {
                throw new Error("The module imports a memory, table or global. Expected functions only: extend wasm_names.mjs.");
            }
            this.copyNumber();
        }
    }

    copyExports() {
        const kept = [];
        this.reader.each(() => {
            const item = [this.reader.name(), this.reader.byte(), this.reader.number()];
            if (!unusedExports.includes(item[0])) {
                kept.push(item);
            }
        });
        this.output.push(...encoded(kept.length));
        for (const [name, kind, index] of kept) {
            this.addName(this.rename(name));
            this.output.push(kind, ...encoded(index));
        }
    }
}

/**
 * Returns the module with renamed imports and exports, and without unused exports. `shortNames` maps old names to new
 * names; all other names stay the same.
 */
export function renamed(bytes, shortNames) {
    const [importSection, exportSection] = [2, 7];
    const rename = (name) => shortNames[name] ?? name;
    const parts = [bytes.subarray(0, headerBytes)];
    forEachSection(bytes, (section, reader, end) => {
        const copier = new Copier(reader, rename);
        if (section === importSection) {
            copier.copyImports();
        } else if (section === exportSection) {
            copier.copyExports();
        } else {
            copier.output = bytes.subarray(reader.at, end);
        }
        parts.push(Buffer.from([section, ...encoded(copier.output.length)]), Buffer.from(copier.output));
    });
    return Buffer.concat(parts);
}
