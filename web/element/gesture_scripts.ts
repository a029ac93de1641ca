// Parses and writes the text of gesture scripts. The WebAssembly module for this task is loaded when it is first
// needed.

import { instantiate, type ModuleMemory } from "./wasm_module";

/** Functions of gestures.cpp. Strings and arrays are passed as addresses in the module's memory. */
interface Exports extends ModuleMemory {
    readScript(script: number): number;
    scriptNumbers(): number;
    scriptLength(): number;
    writeScript(numbers: number, count: number): number;
}

let loaded: Promise<Exports> | undefined;

function load(): Promise<Exports> {
    loaded ??= import("./gesture_program").then(({ program }) => instantiate<Exports>("gestures", {}, program));
    return loaded;
}

/**
 * Parses a gesture script and returns it as numbers (see event_numbers.h). Throws an Error that describes the first
 * fault of the script.
 */
export async function parseGesture(script: string): Promise<Float64Array> {
    const module = await load();
    const bytes = new TextEncoder().encode(`${script}\0`);
    const address = copy(module, bytes);
    const fault = textAt(module, module.readScript(address));
    module.free(address);
    if (fault) {
        throw new Error(fault);
    }
    return new Float64Array(module.memory.buffer, module.scriptNumbers(), module.scriptLength()).slice();
}

/** Returns the text of a gesture script that is given as numbers (see event_numbers.h). */
export async function writeGesture(numbers: Float64Array): Promise<string> {
    const module = await load();
    const address = copy(module, new Uint8Array(numbers.buffer));
    const script = textAt(module, module.writeScript(address, numbers.length));
    module.free(address);
    return script;
}

/** Copies bytes into the module's memory. Returns the address of the copy, which the caller must free. */
function copy(module: Exports, bytes: Uint8Array): number {
    const address = module.malloc(bytes.length);
    new Uint8Array(module.memory.buffer).set(bytes, address);
    return address;
}

function textAt(module: Exports, address: number): string {
    const bytes = new Uint8Array(module.memory.buffer, address);
    return new TextDecoder().decode(bytes.subarray(0, bytes.indexOf(0)));
}
