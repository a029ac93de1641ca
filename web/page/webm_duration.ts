// Adds the duration to a recorded WebM file. Browsers write no duration, but players need the duration to seek.

/** Identifiers of the elements in a WebM file. */
const ids = { segment: 0x18538067, info: 0x1549a966, duration: 0x4489 };
/** Number of bytes at the start of the file in which the element `info` must be. */
const headBytes = 4096;
/** Number of bytes that are enough for the header of any element. */
const maxHeaderBytes = 24;

interface Element {
    id: number;
    /** Offset of the first byte of the content. */
    start: number;
    /** Offset of the byte after the content. */
    end: number;
}

/** Returns a copy of the file that states its duration. Returns the same file if its structure is unknown. */
export async function withDuration(file: Blob, milliseconds: number): Promise<Blob> {
    const head = new DataView(await file.slice(0, headBytes).arrayBuffer());
    const info = findInfo(head);
    if (!info) {
        return file;
    }
    const element = new DataView(new ArrayBuffer(11));
    element.setUint16(0, ids.duration);
    element.setUint8(2, 0x88); // a length of 8 bytes
    element.setFloat64(3, milliseconds);
    const header = new DataView(new ArrayBuffer(12));
    header.setUint32(0, ids.info);
    header.setUint32(4, 0x01000000); // a length of 7 bytes follows the marker; the upper 3 are 0
    header.setUint32(8, info.end - info.start + element.byteLength);
    const before = file.slice(0, info.headerStart);
    return new Blob([before, header, element, file.slice(info.start)], { type: file.type });
}

/** Returns the element `info` and the offset of its header. Returns undefined if it is missing or states a duration. */
function findInfo(bytes: DataView): (Element & { headerStart: number }) | undefined {
    let at = 0;
    while (at + maxHeaderBytes <= bytes.byteLength) {
        const element = readElement(bytes, at);
        if (element.id === ids.info) {
            return hasDuration(bytes, element) ? undefined : { ...element, headerStart: at };
        }
        at = element.id === ids.segment ? element.start : element.end; // the segment contains the other elements
    }
    return undefined;
}

function hasDuration(bytes: DataView, { start, end }: Element): boolean {
    for (let at = start; at < end && at + maxHeaderBytes <= bytes.byteLength; ) {
        const element = readElement(bytes, at);
        if (element.id === ids.duration) {
            return true;
        }
        at = element.end;
    }
    return false;
}

function readElement(bytes: DataView, at: number): Element {
    const idLength = lengthAt(bytes, at);
    const sizeLength = lengthAt(bytes, at + idLength);
    const start = at + idLength + sizeLength;
    const marker = 0x80 >> (sizeLength - 1); // the size does not include its first set bit
    const first = bytes.getUint8(at + idLength) - marker;
    const size = first * 256 ** (sizeLength - 1) + numberAt(bytes, at + idLength + 1, sizeLength - 1);
    return { id: numberAt(bytes, at, idLength), start, end: start + size };
}

/** Returns the length in bytes of a number. The position of the number's first set bit encodes its length. */
function lengthAt(bytes: DataView, at: number): number {
    return Math.clz32(bytes.getUint8(at)) - 23;
}

function numberAt(bytes: DataView, at: number, length: number): number {
    let value = 0;
    for (let byte = 0; byte < length; ++byte) {
        value = 256 * value + bytes.getUint8(at + byte);
    }
    return value;
}
