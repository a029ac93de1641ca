// Compiles the WebAssembly modules and creates instances of them. Each module is compiled only once per page.

import elementProgram from "velmora-element.wasm";

/** Exports that all modules have. */
export interface ModuleMemory {
    memory: WebAssembly.Memory;
    malloc(bytes: number): number;
    free(address: number): void;
}

/** Names of the two WebAssembly modules: the effect, and the reader and writer of gesture scripts. */
type Program = "element" | "gestures";

/** The modules that are compiled or being compiled. */
const compiled = new Map<Program, Promise<WebAssembly.Module>>();

/** WASI error number for a system function that is not supported. */
const notSupported = 52;

/** Returns the compiled module. Compiles it at the first call. `bytes` is the module as compressed base64 text. */
function compile(program: Program, bytes: string): Promise<WebAssembly.Module> {
    let module = compiled.get(program);
    if (!module) {
        module = decode(bytes).then((decoded) => WebAssembly.compile(decoded));
        compiled.set(program, module);
    }
    return module;
}

/** Starts to compile the element's module in the background, so that the first instance is ready earlier. */
export function compileEarly(): void {
    compile("element", elementProgram).catch(() => {}); // `instantiate` reports the error
}

/** Creates an instance of a module. The module imports `functions`. Throws if the browser cannot run the module. */
export async function instantiate<Exports extends ModuleMemory>(
    program: Program,
    functions: Record<string, (...numbers: never[]) => number | void> = {},
    bytes: string = elementProgram,
): Promise<Exports> {
    // The C library also imports system functions. Each fails with `notSupported`; the modules do not depend on them.
    const all = new Proxy(functions, { get: (own, name: string) => own[name] ?? (() => notSupported) });
    const imports = new Proxy({}, { get: () => all }); // the same functions for every name of an imported module
    const instance = await WebAssembly.instantiate(await compile(program, bytes), imports);
    const exports = instance.exports as unknown as Exports & { _initialize?(): void };
    exports._initialize?.();
    return exports;
}

/** Decodes a WebAssembly module that the build has compressed with deflate and written as base64. */
async function decode(text: string): Promise<ArrayBuffer> {
    const compressed = Uint8Array.from(atob(text), (character) => character.charCodeAt(0));
    const stream = new Blob([compressed]).stream().pipeThrough(new DecompressionStream("deflate-raw"));
    return new Response(stream).arrayBuffer();
}
