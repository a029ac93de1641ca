// Types of the modules that the bundler includes in the scripts.

declare module "*/velmora-web.js" {
    export default function loadModule(options: object): Promise<EffectModule>;
}
declare module "*.wasm" {
    const bytes: Uint8Array;
    export default bytes;
}

/** The WebAssembly module with its runtime. Each export is a member with an underscore before its name. */
interface EffectModule {
    HEAPU8: Uint8Array;
    HEAPF32: Float32Array;
    HEAPF64: Float64Array;
    GL: {
        textures: unknown[];
        registerContext(gl: WebGLRenderingContext, attributes: object): number;
        makeContextCurrent(context: number): boolean;
    };
    /** Functions of the page that the module calls. */
    onStart(): void;
    onReplayEnd(finished: boolean): void;
    onRecordingEnd(script: string): void;
    UTF8ToString(address: number): string;
    stringToUTF8(text: string, address: number, size: number): void;
    lengthBytesUTF8(text: string): number;
}
