// Renames the imports and exports of a WebAssembly module.

import { forEachSection, headerBytes } from "./wasm_reader.mjs";

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

    copyName(rename = (name) => name) {
        const name = Buffer.from(rename(this.reader.name()));
        this.output.push(...encoded(name.length), ...name);
    }

    /**
     * Copies the import section with the new names. Supports only imported functions; the element's module has no other
     * imports.
     */
    copyImports() {
        for (let count = this.copyNumber(); count > 0; --count) {
            this.copyName();
            this.copyName(this.rename);
            if (this.copyByte() !== 0) {
                throw new Error("The module imports a memory, table or global. Expected functions only: extend wasm_names.mjs.");
            }
            this.copyNumber();
        }
    }

    copyExports() {
        for (let count = this.copyNumber(); count > 0; --count) {
            this.copyName(this.rename);
            this.copyByte();
            this.copyNumber();
        }
    }
}

/**
 * Returns the module with renamed imports and exports. `shortNames` maps old names to new names; all other names stay
 * the same.
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
