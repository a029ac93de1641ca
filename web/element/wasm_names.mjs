// Renames the imports and exports of a WebAssembly module.

/** Returns the bytes of a number in LEB128, the variable-length format of WebAssembly. */
function encoded(value) {
    return value < 128 ? [value] : [128 | (value & 127), ...encoded(value >> 7)];
}

/** Reads the bytes of a WebAssembly module and copies them to `output`. */
class Copier {
    output = [];

    constructor(bytes, at, rename) {
        Object.assign(this, { bytes, at, rename });
    }

    readNumber() {
        const byte = this.bytes[this.at++];
        return byte < 128 ? byte : (byte & 127) + 128 * this.readNumber();
    }

    copyNumber() {
        const value = this.readNumber();
        this.output.push(...encoded(value));
        return value;
    }

    copyByte() {
        this.output.push(this.bytes[this.at]);
        return this.bytes[this.at++];
    }

    copyName(rename = (name) => name) {
        const length = this.readNumber();
        const name = Buffer.from(rename(this.bytes.toString("utf8", this.at, (this.at += length))));
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
    const [importSection, exportSection, headerBytes] = [2, 7, 8];
    const rename = (name) => shortNames[name] ?? name;
    const parts = [bytes.subarray(0, headerBytes)];
    const reader = new Copier(bytes, headerBytes, rename);
    while (reader.at < bytes.length) {
        const section = bytes[reader.at++];
        const length = reader.readNumber();
        const copier = new Copier(bytes, reader.at, rename);
        if (section === importSection) {
            copier.copyImports();
        } else if (section === exportSection) {
            copier.copyExports();
        } else {
            copier.output = bytes.subarray(reader.at, reader.at + length);
        }
        parts.push(Buffer.from([section, ...encoded(copier.output.length)]), Buffer.from(copier.output));
        reader.at += length;
    }
    return Buffer.concat(parts);
}
