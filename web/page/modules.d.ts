// What the bundler brings in besides scripts.

declare module "*/velmora-web.js" {
    export default function loadModule(options: object): Promise<EffectModule>;
}
declare module "*.wasm" {
    const bytes: Uint8Array;
    export default bytes;
}

interface EffectModule {
    HEAPU8: Uint8Array;
    HEAPF32: Float32Array;
    GL: {
        registerContext(gl: WebGLRenderingContext, attributes: object): number;
        makeContextCurrent(context: number): boolean;
    };
    UTF8ToString(address: number): string;
    stringToUTF8(text: string, address: number, room: number): void;
    lengthBytesUTF8(text: string): number;
    _malloc(bytes: number): number;
    _free(address: number): void;
    _describeSettings(): number;
    _setSettings(values: number): void;
    _getSettings(values: number): void;
    _randomSettings(seed: number, values: number): void;
    _inkOfPicture(ink: number): void;
    _setCellsPerVertex(cells: number): void;
    _restart(width: number, height: number): void;
    _showPicture(place: number, width: number, height: number, rgba: number): void;
    _renewContext(): void;
    _touch(action: number, x: number, y: number, pressure: number): void;
    _pixelsPerCell(): number;
    _inkTexels(longer: boolean): number;
    _clearInk(): void;
    _frame(milliseconds: number): void;
    _startRecording(): void;
    _finishRecording(): number;
    _readScript(script: number, name: number): number;
    _startReplay(): void;
    _isReplaying(): number;
    _isWaterCalm(): number;
    _waterCells(velocities: number): number;
    _waterCellCount(): number;
}
