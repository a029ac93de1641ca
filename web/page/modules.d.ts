// Types of the files that the bundler adds to the scripts.

declare module "*/velmora-web.js" {
    export default function loadModule(options: object): Promise<EffectModule>;
}
declare module "*.wasm" {
    const bytes: Uint8Array;
    export default bytes;
}

/** The WebAssembly module of host/exports.cpp. Strings and arrays are addresses; returned booleans are 0 or 1. */
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
    _malloc(bytes: number): number;
    _free(address: number): void;
    _setSettings(numbers: number): void;
    _getSettings(numbers: number): void;
    _noteSettings(now: number, numbers: number): void;
    _undoSettings(numbers: number): number;
    _redoSettings(numbers: number): number;
    _randomSettings(seed: number, numbers: number): void;
    _inkAgainstBackground(ink: number): void;
    _beginPreset(): void;
    _setPresetMember(name: number, kind: number, numbers: number, count: number, text: number): number;
    _takePreset(numbers: number): void;
    _presetName(fileStem: number): number;
    _resize(width: number, height: number): void;
    _setBackgrounds(width: number, height: number, first: number, second: number): void;
    _paintingName(index: number): number;
    _paint(index: number, width: number, height: number): number;
    _regainContext(): void;
    _noteInput(now: number): void;
    _press(now: number, x: number, y: number, pressure: number): void;
    _moveFinger(now: number, x: number, y: number, pressure: number): void;
    _lift(now: number, isCancel: boolean, x: number, y: number): void;
    _clearInk(): void;
    _turnAttractMode(on: boolean): void;
    _isAttractModeOn(): number;
    _isAttractModeRunning(): number;
    _attractModeDelay(now: number): number;
    _startAttractModeIfIdle(now: number, busy: boolean): void;
    _takeDueFrames(now: number): number;
    _dueTime(): number;
    _frameTime(): number;
    _skipTime(): void;
    _frame(elapsed: number): void;
    _isIdle(): number;
    _isWaterIdle(): number;
    _mayShowInk(): number;
    _noteInterval(interval: number): void;
    _setQuality(level: number): void;
    _qualityPhase(): number;
    _qualityLevel(): number;
    _qualityCells(): number;
    _qualityPixels(): number;
    _startRecording(): void;
    _finishRecording(): void;
    _isRecording(): number;
    _readScript(script: number, name: number): number;
    _startReplay(): void;
    _stopReplay(): void;
    _isReplaying(): number;
    _observe(on: boolean): void;
    _velocityBytes(): number;
    _velocityColumns(): number;
    _velocityRows(): number;
    _flowLines(width: number, height: number): number;
    _flowLineCount(): number;
    _densityImage(): number;
    _densityWidth(): number;
    _densityHeight(): number;
    _waterCells(velocities: boolean): number;
    _waterCellCount(): number;
}
