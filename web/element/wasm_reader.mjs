// Reads the bytes of a WebAssembly file.

/** Length of the magic number and the version at the start of a module. */
export const headerBytes = 8;

class WasmReader {
    constructor(bytes, at) {
        this.bytes = bytes;
        this.at = at;
    }

    byte() {
        return this.bytes[this.at++];
    }

    /** Reads a number in LEB128, the variable-length format of WebAssembly. */
    number() {
        const byte = this.byte();
        return byte < 128 ? byte : (byte & 127) + 128 * this.number();
    }

    name() {
        const length = this.number();
        this.at += length;
        return this.bytes.toString("utf8", this.at - length, this.at);
    }

    /** Reads the length of a vector, then calls `read` once for each of its items. */
    each(read) {
        for (let count = this.number(), index = 0; index < count; ++index) {
            read(index);
        }
    }
}

/** Calls `use` for each section of a module, with the number of the section, a reader at its start, and its end. */
export function forEachSection(bytes, use) {
    for (const reader = new WasmReader(bytes, headerBytes); reader.at < bytes.length; ) {
        const section = reader.byte();
        const length = reader.number();
        const end = reader.at + length;
        use(section, new WasmReader(bytes, reader.at), end);
        reader.at = end;
    }
}
