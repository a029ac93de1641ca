// Compiles the WebAssembly modules, each once for all elements, and makes instances of them.

import elementProgram from "velmora-element.wasm";

/** Exports that all modules have. */
export interface ModuleMemory {
    memory: WebAssembly.Memory;
    malloc(bytes: number): number;
    free(address: number): void;
}

type Program = "element" | "gestures";

const compiled = new Map<Program, Promise<WebAssembly.Module>>();

/** Error number of a system function that does not exist. */
const notSupported = 52;
/** Functions that the C library imports. The modules use no environment and never exit. */
const systemFunctions = new Proxy({}, { get: () => () => notSupported });

/** Compiles a module, once for all instances. */
function compile(program: Program, bytes: string): Promise<WebAssembly.Module> {
    let module = compiled.get(program);
    if (!module) {
        module = decode(bytes).then((decoded) => WebAssembly.compile(decoded));
        compiled.set(program, module);
    }
    return module;
}

/** Starts to compile the module of the element. Its first instance then needs less time. */
export function compileEarly(): void {
    compile("element", elementProgram).catch(() => {}); // `instantiate` reports the error
}

/** Makes an instance of a module. `functions` are its imports. Throws if the browser cannot run it. */
export async function instantiate<Exports extends ModuleMemory>(
    program: Program,
    functions: Record<string, (...numbers: never[]) => number | void> = {},
    bytes: string = elementProgram,
): Promise<Exports> {
    const imports = { env: { emscripten_notify_memory_growth: () => {}, ...functions }, wasi_snapshot_preview1: systemFunctions };
    const instance = await WebAssembly.instantiate(await compile(program, bytes), imports as WebAssembly.Imports);
    const exports = instance.exports as unknown as Exports & { _initialize?(): void };
    exports._initialize?.();
    return exports;
}

/** Decodes a program that the build compressed and wrote as base64. */
async function decode(text: string): Promise<ArrayBuffer> {
    const compressed = Uint8Array.from(atob(text), (character) => character.charCodeAt(0));
    const stream = new Blob([compressed]).stream().pipeThrough(new DecompressionStream("deflate-raw"));
    return new Response(stream).arrayBuffer();
}
