// The application core as WebAssembly on the page's canvas: typed calls of the functions in host/exports.cpp.

import { numbersOf, presetMustBeObject, settingCount, settingsOf } from "../../build/web/settings";
import type { Ink, Settings } from "../../build/web/settings";
import loadModule from "../../build/web/velmora-web.js";
import program from "../../build/web/velmora-web.wasm";

export interface Size {
    width: number;
    height: number;
}

/** Detail that is drawn. */
export interface Quality {
    /** From 0, all detail, upwards. */
    level: number;
    /** Cells of the water between neighbours of the drawn mesh. */
    cells: number;
    /** Part of the pixels along a side of the screen. */
    pixels: number;
}

/** A line of the velocity overlay, in pixels. */
export interface FlowLine {
    x: number;
    y: number;
    endX: number;
    endY: number;
    /** Speed as a colour, from 0, slow, to 1. */
    heat: number;
    /** Opacity. */
    strength: number;
}

/** Names of app::QualityPhase, in its order. */
const qualityPhases = ["fixed", "searching", "watching"] as const;
/** Kinds of a preset's value, as setPresetMember counts them. */
const enum ValueKind {
    other,
    flag,
    number,
    numbers,
}

export class Effect {
    /** Sides of the square of pixels that a texel of the velocity covers. */
    readonly pixelsPerCell: number;
    /** Texels of the ink's textures along the screen's shorter and longer side. */
    readonly inkSides: [number, number];
    /** Milliseconds of one frame of the effect. */
    readonly frameTime: number;
    /** Address of room for the numbers of settings. */
    private readonly room: number;

    private constructor(
        private readonly module: EffectModule,
        readonly gl: WebGLRenderingContext,
    ) {
        this.pixelsPerCell = module._pixelsPerCell();
        this.inkSides = [module._inkTexels(false), module._inkTexels(true)];
        this.frameTime = module._frameTime();
        this.room = module._malloc(8 * settingCount);
    }

    /** Throws in a browser without WebAssembly. The context must be the canvas' first. */
    static async load(gl: WebGLRenderingContext): Promise<Effect> {
        const module = await loadModule({ wasmBinary: program, printErr: (line: string) => console.error(line) });
        module.GL.makeContextCurrent(module.GL.registerContext(gl, { majorVersion: 1 }));
        return new Effect(module, gl);
    }

    /** Starts the effect anew: calm water, no ink. Ends a recording; a replay goes on. */
    restart(size: Size): void {
        this.module._restart(size.width, size.height);
    }

    /** Shows two backgrounds of the screen's size. */
    setBackgrounds(first: ImageData, second: ImageData): void {
        const [one, other] = [this.copy(first.data), this.copy(second.data)];
        this.module._setBackgrounds(first.width, first.height, one, other);
        this.module._free(one);
        this.module._free(other);
    }

    /** Sets up in the context of now what a lost context held. */
    regainContext(): void {
        this.module._regainContext();
    }

    get settings(): Settings {
        this.module._getSettings(this.room);
        return settingsOf(this.numbers);
    }
    /** Applied with the next frame. */
    set settings(settings: Settings) {
        this.numbers.set(numbersOf(settings));
        this.module._setSettings(this.room);
    }

    randomSettings(seed: number): Settings {
        this.module._randomSettings(seed, this.room);
        return settingsOf(this.numbers);
    }

    /** Returns an ink that stands out from the background shown. */
    inkAgainstBackground(): Ink {
        this.module._inkAgainstBackground(this.room);
        const [red = 0, green = 0, blue = 0] = this.numbers;
        return [red, green, blue];
    }

    /** Reads a preset. A setting that it leaves out has its default. Throws an Error that says what is wrong. */
    readPreset(text: string): Settings {
        const preset = parseObject(text);
        this.module._beginPreset();
        for (const [name, value] of Object.entries(preset)) {
            const fault = this.setPresetMember(name, value);
            if (fault) {
                throw new Error(fault);
            }
        }
        this.module._takePreset(this.room);
        return settingsOf(this.numbers);
    }

    /** calm_pond is "calm pond". */
    presetName(fileStem: string): string {
        return this.withText(fileStem, (stem) => this.text(this.module._presetName(stem)));
    }

    /** Notes input that is no touch: attract mode stops, and the next frame is drawn. */
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

    /** Milliseconds until attract mode is due; undefined if it does not start by itself. */
    get attractModeDelay(): number | undefined {
        const delay = this.module._attractModeDelay(performance.now());
        return delay < 0 ? undefined : delay;
    }

    /** Starts attract mode if it is due. A `busy` page holds it back. */
    startAttractModeIfIdle(busy: boolean): void {
        this.module._startAttractModeIfIdle(performance.now(), busy);
    }

    /** Returns the milliseconds of each frame that is due at a moment. */
    takeDueFrames(now: number): number[] {
        const frames = this.module._takeDueFrames(now);
        return Array<number>(frames).fill(this.module._dueTime());
    }

    /** Drops the time up to the next call of takeDueFrames. */
    skipTime(): void {
        this.module._skipTime();
    }

    /** Draws the next frame, with the water `milliseconds` later. */
    frame(milliseconds: number): void {
        this.module._frame(milliseconds);
    }

    /** Whether further frames would show the same. */
    get isIdle(): boolean {
        return this.module._isIdle() !== 0;
    }

    get isWaterIdle(): boolean {
        return this.module._isWaterIdle() !== 0;
    }

    get mayShowInk(): boolean {
        return this.module._mayShowInk() !== 0;
    }

    /** Passes the milliseconds between two frames to the adaptive quality. */
    noteInterval(milliseconds: number): void {
        this.module._noteInterval(milliseconds);
    }

    /** Keeps a level of quality: 0 is all detail. */
    fixQuality(level: number): void {
        this.module._setQuality(level);
    }

    /** Fits the detail to the machine from now on. */
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

    /** Starts anew and records from there. */
    startRecording(): void {
        this.module._startRecording();
    }

    finishRecording(): void {
        this.module._finishRecording();
    }

    get isRecording(): boolean {
        return this.module._isRecording() !== 0;
    }

    /** Returns the gesture script of a recording that has ended since the last call, also by a restart; else "". */
    takeRecording(): string {
        return this.text(this.module._takeRecording());
    }

    /** Returns the fault of a script; "" if startReplay can play it. */
    readScript(script: string, name: string): string {
        return this.withText(script, (scriptText) =>
            this.withText(name, (nameText) => this.text(this.module._readScript(scriptText, nameText))),
        );
    }

    /** Starts anew with the script that was read last. */
    startReplay(): void {
        this.module._startReplay();
    }

    get isReplaying(): boolean {
        return this.module._isReplaying() !== 0;
    }

    /** Returns lines along the flow of a velocity texture, bottom row first, on a screen of that size in pixels. */
    flowLines(rgba: Uint8Array, columns: number, rows: number, screen: Size): FlowLine[] {
        const room = this.copy(rgba);
        const start = this.module._flowLines(room, columns, rows, screen.width, screen.height) / 4;
        this.module._free(room);
        const numbers = this.module.HEAPF32;
        return Array.from({ length: this.module._flowLineCount() }, (_, line) => {
            const [x = 0, y = 0, endX = 0, endY = 0, heat = 0, strength = 0] = numbers.subarray(start + 6 * line);
            return { x, y, endX, endY, heat, strength };
        });
    }

    /** Returns the water's heights and velocities, bytes as they are in memory. */
    waterBytes(): Uint8Array {
        const bytes = 4 * this.module._waterCellCount();
        const cells = new Uint8Array(2 * bytes);
        [false, true].forEach((velocities, half) => {
            const start = this.module._waterCells(velocities);
            cells.set(this.module.HEAPU8.subarray(start, start + bytes), half * bytes);
        });
        return cells;
    }

    /** Length of the module's table of textures. */
    get textureNames(): number {
        return this.module.GL.textures.length;
    }

    private setPresetMember(name: string, value: unknown): string {
        const [kind, numbers] = numbersOfValue(value);
        const room = this.copy(new Uint8Array(new Float64Array(numbers).buffer));
        try {
            return this.withText(name, (nameText) =>
                this.withText(JSON.stringify(value), (text) =>
                    this.text(this.module._setPresetMember(nameText, kind, room, numbers.length, text)),
                ),
            );
        } finally {
            this.module._free(room);
        }
    }

    /** The room for settings, as numbers; valid until the module's memory grows. */
    private get numbers(): Float64Array {
        return this.module.HEAPF64.subarray(this.room / 8, this.room / 8 + settingCount);
    }

    private text(address: number): string {
        return this.module.UTF8ToString(address);
    }

    /** Returns the address of a copy, which the caller frees. */
    private copy(bytes: Uint8Array | Uint8ClampedArray): number {
        const address = this.module._malloc(Math.max(bytes.length, 8));
        this.module.HEAPU8.set(bytes, address);
        return address;
    }

    private withText<Result>(text: string, use: (address: number) => Result): Result {
        const room = this.module.lengthBytesUTF8(text) + 1;
        const address = this.module._malloc(room);
        this.module.stringToUTF8(text, address, room);
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
        throw new Error("this is no JSON");
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
