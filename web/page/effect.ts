// The application core as a WebAssembly module that draws on the page's canvas. Wraps the functions of
// host/exports.cpp in typed methods.

import { numbersOf, presetMustBeObject, settingCount, settingsOf } from "../../build/web/settings";
import type { Ink, Settings } from "../../build/web/settings";
import loadModule from "../../build/web/velmora-web.js";
import program from "../../build/web/velmora-web.wasm";
import type { Size } from "../engine/size";

export type { Size };

/** Level of detail of the drawing. */
export interface Quality {
    /** Index of the level. Level 0 is all detail; a higher level has less. */
    level: number;
    /** Water cells between two neighbouring vertices of the drawn mesh. */
    cells: number;
    /** Ratio of rendered pixels to screen pixels along a side, at most 1. */
    pixels: number;
}

/** Line of the velocity overlay; coordinates in pixels. */
export interface FlowLine {
    x: number;
    y: number;
    endX: number;
    endY: number;
    color: Ink;
    /** Opacity, 0 to 1. */
    opacity: number;
}

/** Velocity texture as uploaded by the library: RGBA8, bottom row first. */
export interface VelocityField {
    columns: number;
    rows: number;
    bytes: Uint8Array;
}

/** Names of the values of app::QualityPhase, in order. */
const qualityPhases = ["fixed", "searching", "watching"] as const;
/** Kinds of JSON values. The numbers are those of setPresetMember in host/exports.cpp. */
const enum ValueKind {
    other,
    flag,
    number,
    numbers,
}

export class Effect {
    /** Called when the effect has started, also by a change of the settings. */
    onStart = () => {};
    /** Called when a replay has ended. `finished` is false if it was stopped before its end. */
    onReplayEnd: (finished: boolean) => void = () => {};
    /** Called with the gesture script of a recording that has ended. A restart ends a recording. */
    onRecordingEnd: (script: string) => void = () => {};
    /** Names of the backgrounds that the module paints. */
    readonly paintingNames: readonly string[];
    /** Duration of one frame of the effect in milliseconds. */
    readonly frameTime: number;
    /** Address of a buffer of settingCount doubles in the module's memory. */
    private readonly settingsBuffer: number;

    private constructor(
        private readonly module: EffectModule,
        readonly gl: WebGLRenderingContext,
    ) {
        module.onStart = () => this.onStart();
        module.onReplayEnd = (finished) => this.onReplayEnd(finished);
        module.onRecordingEnd = (script) => this.onRecordingEnd(script);
        this.frameTime = module._frameTime();
        this.paintingNames = this.readPaintingNames();
        this.settingsBuffer = module._malloc(8 * settingCount);
    }

    /**
     * Loads the module for a GL context. Throws if the browser cannot run it. The library must be the first user of the
     * context.
     */
    static async load(gl: WebGLRenderingContext): Promise<Effect> {
        const module = await loadModule({ wasmBinary: program, printErr: (line: string) => console.error(line) });
        module.GL.makeContextCurrent(module.GL.registerContext(gl, { majorVersion: 1 }));
        return new Effect(module, gl);
    }

    /** Starts the effect at this size, without ink. Keeps the waves. Ends a recording; a replay continues. */
    resize(size: Size): void {
        this.module._resize(size.width, size.height);
    }

    /** Passes the two backgrounds. Both must have the size of the screen. */
    setBackgrounds(first: ImageData, second: ImageData): void {
        const [firstCopy, secondCopy] = [this.copy(first.data), this.copy(second.data)];
        this.module._setBackgrounds(first.width, first.height, firstCopy, secondCopy);
        this.module._free(firstCopy);
        this.module._free(secondCopy);
    }

    /** Paints a background that fills a screen of the size. */
    paint(name: string, { width, height }: Size): ImageData {
        const start = this.module._paint(this.paintingNames.indexOf(name), width, height);
        return new ImageData(new Uint8ClampedArray(this.module.HEAPU8.slice(start, start + 4 * width * height).buffer), width);
    }

    /** Creates the GL objects again in a restored context. */
    regainContext(): void {
        this.module._regainContext();
    }

    get settings(): Settings {
        this.module._getSettings(this.settingsBuffer);
        return settingsOf(this.numbers);
    }
    /** Sets the settings from the next frame on. */
    set settings(settings: Settings) {
        this.numbers.set(numbersOf(settings));
        this.module._setSettings(this.settingsBuffer);
    }

    /** Notes settings that the user has changed, for `undo`. */
    noteSettings(settings: Settings): void {
        this.numbers.set(numbersOf(settings));
        this.module._noteSettings(performance.now(), this.settingsBuffer);
    }

    /** Returns the settings before the last change, or undefined if there is no change to undo. */
    undo(): Settings | undefined {
        return this.module._undoSettings(this.settingsBuffer) ? settingsOf(this.numbers) : undefined;
    }

    /** Returns the settings after the change that was undone last, or undefined if there is none. */
    redo(): Settings | undefined {
        return this.module._redoSettings(this.settingsBuffer) ? settingsOf(this.numbers) : undefined;
    }

    /** Returns random settings for a seed. Does not change the current settings. */
    randomSettings(seed: number): Settings {
        this.module._randomSettings(seed, this.settingsBuffer);
        return settingsOf(this.numbers);
    }

    /** Returns an ink that stands out from the current background. */
    inkAgainstBackground(): Ink {
        this.module._inkAgainstBackground(this.settingsBuffer);
        const [red = 0, green = 0, blue = 0] = this.numbers;
        return [red, green, blue];
    }

    /** Parses a preset. Missing settings have their defaults. Throws an Error with the first fault. */
    readPreset(text: string): Settings {
        const preset = parseObject(text);
        this.module._beginPreset();
        for (const [name, value] of Object.entries(preset)) {
            const fault = this.setPresetMember(name, value);
            if (fault) {
                throw new Error(fault);
            }
        }
        this.module._takePreset(this.settingsBuffer);
        return settingsOf(this.numbers);
    }

    /** Returns the name of a preset file: "calm pond" for calm_pond. */
    presetName(fileStem: string): string {
        return this.withText(fileStem, (stem) => this.text(this.module._presetName(stem)));
    }

    /** Reports input other than a touch. Stops attract mode and requests a frame. */
    noteInput(): void {
        this.module._noteInput(performance.now());
    }

    press(x: number, y: number, pressure: number): void {
        this.module._press(performance.now(), x, y, pressure);
    }

    move(x: number, y: number, pressure: number): void {
        this.module._moveFinger(performance.now(), x, y, pressure);
    }

    lift(how: "up" | "cancel", x: number, y: number): void {
        this.module._lift(performance.now(), how === "cancel", x, y);
    }

    clearInk(): void {
        this.module._clearInk();
    }

    get attractModeOn(): boolean {
        return this.module._isAttractModeOn() !== 0;
    }
    set attractModeOn(on: boolean) {
        this.module._turnAttractMode(on);
    }

    get attractModeRuns(): boolean {
        return this.module._isAttractModeRunning() !== 0;
    }

    /** Milliseconds until attract mode is due. Undefined if it will not start by itself. */
    get attractModeDelay(): number | undefined {
        const delay = this.module._attractModeDelay(performance.now());
        return delay < 0 ? undefined : delay;
    }

    /** Starts attract mode if it is due and the page is not `busy`. */
    startAttractModeIfIdle(busy: boolean): void {
        this.module._startAttractModeIfIdle(performance.now(), busy);
    }

    /** Returns the duration in milliseconds of each frame that is due at `now`. */
    takeDueFrames(now: number): number[] {
        const frames = this.module._takeDueFrames(now);
        return Array<number>(frames).fill(this.module._dueTime());
    }

    /** Ignores the time until the next call of takeDueFrames. */
    skipTime(): void {
        this.module._skipTime();
    }

    /** Advances the water by `milliseconds` and draws a frame. */
    frame(milliseconds: number): void {
        this.module._frame(milliseconds);
    }

    /** True if the next frame would be equal to the last one. */
    get isIdle(): boolean {
        return this.module._isIdle() !== 0;
    }

    get isWaterIdle(): boolean {
        return this.module._isWaterIdle() !== 0;
    }

    get mayShowInk(): boolean {
        return this.module._mayShowInk() !== 0;
    }

    /** Passes the milliseconds between two frames to adaptive quality. */
    noteInterval(milliseconds: number): void {
        this.module._noteInterval(milliseconds);
    }

    /** Fixes the quality at a level; 0 is all detail. */
    fixQuality(level: number): void {
        this.module._setQuality(level);
    }

    /** Turns adaptive quality on. */
    adaptQuality(): void {
        this.module._setQuality(-1);
    }

    get qualityPhase(): (typeof qualityPhases)[number] {
        return qualityPhases[this.module._qualityPhase()] ?? "fixed";
    }

    get quality(): Quality {
        const { module } = this;
        return { level: module._qualityLevel(), cells: module._qualityCells(), pixels: module._qualityPixels() };
    }

    /** Restarts the effect and records from the first frame. */
    startRecording(): void {
        this.module._startRecording();
    }

    finishRecording(): void {
        this.module._finishRecording();
    }

    get isRecording(): boolean {
        return this.module._isRecording() !== 0;
    }

    /** Parses a script for startReplay. Returns its fault, or "" if it has none. */
    readScript(script: string, name: string): string {
        return this.withText(script, (scriptText) =>
            this.withText(name, (nameText) => this.text(this.module._readScript(scriptText, nameText))),
        );
    }

    /** Restarts the effect and replays the script from readScript. */
    startReplay(): void {
        this.module._startReplay();
    }

    stopReplay(): void {
        this.module._stopReplay();
    }

    get isReplaying(): boolean {
        return this.module._isReplaying() !== 0;
    }

    /** Turns the observation of frames for the overlays on or off. */
    set observes(on: boolean) {
        this.module._observe(on);
    }

    /** Velocities of the last observed frame. */
    get velocity(): VelocityField {
        const { module } = this;
        const [columns, rows] = [module._velocityColumns(), module._velocityRows()];
        const start = module._velocityBytes();
        return { columns, rows, bytes: module.HEAPU8.slice(start, start + 4 * columns * rows) };
    }

    /** Returns lines along the flow of the last observed frame, for a screen of the given size. */
    flowLines(screen: Size): FlowLine[] {
        const start = this.module._flowLines(screen.width, screen.height) / 4;
        const numbers = this.module.HEAPF32;
        return Array.from({ length: this.module._flowLineCount() }, (_, line) => {
            const [x = 0, y = 0, endX = 0, endY = 0, red = 0, green = 0, blue = 0, opacity = 0] = numbers.subarray(
                start + 8 * line,
            );
            return { x, y, endX, endY, color: [red, green, blue], opacity };
        });
    }

    /** Returns the ink density of the last observed frame in false colours, bottom row first. Null if it has no ink. */
    densityImage(): ImageData | null {
        const { module } = this;
        const start = module._densityImage();
        if (start === 0) {
            return null;
        }
        const [width, height] = [module._densityWidth(), module._densityHeight()];
        return new ImageData(new Uint8ClampedArray(module.HEAPU8.slice(start, start + 4 * width * height)), width, height);
    }

    /** Returns the memory of the water's heights, then of its velocities. */
    waterBytes(): Uint8Array {
        const bytes = 4 * this.module._waterCellCount();
        const cells = new Uint8Array(2 * bytes);
        [false, true].forEach((velocities, half) => {
            const start = this.module._waterCells(velocities);
            cells.set(this.module.HEAPU8.subarray(start, start + bytes), half * bytes);
        });
        return cells;
    }

    /** Length of the module's table of texture names. */
    get textureNames(): number {
        return this.module.GL.textures.length;
    }

    private readPaintingNames(): string[] {
        const names: string[] = [];
        for (let name; (name = this.text(this.module._paintingName(names.length))); ) {
            names.push(name);
        }
        return names;
    }

    private setPresetMember(name: string, value: unknown): string {
        const [kind, numbers] = numbersOfValue(value);
        const array = this.copy(new Uint8Array(new Float64Array(numbers).buffer));
        try {
            return this.withText(name, (nameText) =>
                this.withText(JSON.stringify(value), (text) =>
                    this.text(this.module._setPresetMember(nameText, kind, array, numbers.length, text)),
                ),
            );
        } finally {
            this.module._free(array);
        }
    }

    /** View of settingsBuffer. Valid until the module's memory grows. */
    private get numbers(): Float64Array {
        return this.module.HEAPF64.subarray(this.settingsBuffer / 8, this.settingsBuffer / 8 + settingCount);
    }

    private text(address: number): string {
        return this.module.UTF8ToString(address);
    }

    /** Copies bytes into the module's memory. Returns the address; the caller frees it. */
    private copy(bytes: Uint8Array | Uint8ClampedArray): number {
        const address = this.module._malloc(Math.max(bytes.length, 8));
        this.module.HEAPU8.set(bytes, address);
        return address;
    }

    /** Calls `use` with the address of a temporary UTF-8 copy of the text. */
    private withText<Result>(text: string, use: (address: number) => Result): Result {
        const size = this.module.lengthBytesUTF8(text) + 1;
        const address = this.module._malloc(size);
        this.module.stringToUTF8(text, address, size);
        try {
            return use(address);
        } finally {
            this.module._free(address);
        }
    }
}

function parseObject(text: string): object {
    let parsed: unknown;
    try {
        parsed = JSON.parse(text.replace(/^\uFEFF/, ""));
    } catch {
        throw new Error("this is not valid JSON");
    }
    if (typeof parsed !== "object" || parsed === null || Array.isArray(parsed)) {
        throw new Error(presetMustBeObject);
    }
    return parsed;
}

function numbersOfValue(value: unknown): [ValueKind, number[]] {
    const isNumber = (part: unknown) => typeof part === "number";
    if (typeof value === "boolean") {
        return [ValueKind.flag, [Number(value)]];
    }
    if (isNumber(value)) {
        return [ValueKind.number, [Number(value)]];
    }
    return Array.isArray(value) && value.every(isNumber) ? [ValueKind.numbers, value.map(Number)] : [ValueKind.other, []];
}
