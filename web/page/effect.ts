// The application core as a WebAssembly module that draws on the page's canvas. Wraps the functions of
// host/exports.cpp in typed methods.

import { numbersOf, presetMustBeObject, settingCount, settingsOf } from "../../build/web/settings";
import type { Ink, Settings } from "../../build/web/settings";
import loadModule from "../../build/web/velmora-web.js";
import program from "../../build/web/velmora-web.wasm";
import { Session, type SessionExports } from "../engine/session";
import type { Size } from "../engine/size";

export type { Size };

/** Level of detail at which the effect is drawn. */
export interface Quality {
    /** Index of the quality level. Level 0 has full detail, and each higher level has less. */
    level: number;
    /** Number of mesh vertices along a side, divided by the number of water cells. */
    mesh: number;
    /** Ratio of rendered pixels to screen pixels along a side, at most 1. */
    pixels: number;
}

/** Line of the velocity overlay. Its coordinates are in pixels. */
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
/** Kinds of JSON values, with the numbers that setPresetMember in host/exports.cpp expects. */
const enum ValueKind {
    other,
    flag,
    number,
    numbers,
}

/** Functions of host/exports.cpp. Strings and arrays are passed as addresses. Returned booleans are 0 or 1. */
interface Exports extends SessionExports {
    malloc(bytes: number): number;
    free(address: number): void;
    setSettings(numbers: number): void;
    getSettings(numbers: number): void;
    beginHistory(numbers: number): void;
    noteSettings(now: number, numbers: number): void;
    undoSettings(numbers: number): number;
    redoSettings(numbers: number): number;
    randomSettings(seed: number, numbers: number): void;
    inkAgainstBackground(ink: number): void;
    beginPreset(): void;
    setPresetMember(name: number, kind: number, numbers: number, count: number, text: number): number;
    takePreset(numbers: number): void;
    presetName(fileStem: number): number;
    setBackgrounds(width: number, height: number, first: number, second: number): void;
    paintingName(index: number): number;
    paint(index: number, width: number, height: number): number;
    isAttractModeOn(): number;
    frameTime(): number;
    isWaterIdle(): number;
    setQuality(level: number): void;
    qualityPhase(): number;
    qualityLevel(): number;
    qualityMesh(): number;
    readScript(script: number, name: number): number;
    startReplay(): void;
    observe(on: boolean): void;
    velocityBytes(): number;
    velocityColumns(): number;
    velocityRows(): number;
    flowLines(width: number, height: number): number;
    flowLineCount(): number;
    densityImage(): number;
    densityWidth(): number;
    densityHeight(): number;
    waterCells(velocities: boolean): number;
    waterCellCount(): number;
}

export class Effect extends Session<Exports> {
    /** Called after each start of the effect, also if a changed setting restarts it. */
    onStart = () => {};
    /** Called when a replay has ended. `finished` is false if the replay was stopped early. */
    onReplayEnd: (finished: boolean) => void = () => {};
    /** Called with the gesture script when a recording has ended. A restart of the effect also ends a recording. */
    onRecordingEnd: (script: string) => void = () => {};
    /** Names of the backgrounds that the module paints. */
    readonly paintingNames: readonly string[];
    /** Duration of one frame of the effect in milliseconds. */
    readonly frameTime: number;
    /** Address of a buffer of settingCount doubles in the module's memory. */
    private readonly settingsBuffer: number;

    private constructor(
        private readonly runtime: EffectModule,
        readonly gl: WebGLRenderingContext,
    ) {
        super(exportsOf(runtime));
        runtime.onStart = () => this.onStart();
        runtime.onReplayEnd = (finished) => this.onReplayEnd(finished);
        runtime.onRecordingEnd = (script) => this.onRecordingEnd(script);
        this.frameTime = this.module.frameTime();
        this.paintingNames = this.readPaintingNames();
        this.settingsBuffer = this.module.malloc(8 * settingCount);
    }

    /**
     * Loads the module for a GL context. Throws if the browser cannot run the module. The module must be the first user
     * of the context.
     */
    static async load(gl: WebGLRenderingContext): Promise<Effect> {
        const module = await loadModule({ wasmBinary: program, printErr: (line: string) => console.error(line) });
        module.GL.makeContextCurrent(module.GL.registerContext(gl, { majorVersion: 1 }));
        return new Effect(module, gl);
    }

    /** Passes the two backgrounds to the effect. Both must have the size of the canvas in pixels. */
    setBackgrounds(first: ImageData, second: ImageData): void {
        const [firstCopy, secondCopy] = [this.copy(first.data), this.copy(second.data)];
        this.module.setBackgrounds(first.width, first.height, firstCopy, secondCopy);
        this.module.free(firstCopy);
        this.module.free(secondCopy);
    }

    /** Paints the background with this name at this size. */
    paint(name: string, { width, height }: Size): ImageData {
        const start = this.module.paint(this.paintingNames.indexOf(name), width, height);
        return new ImageData(new Uint8ClampedArray(this.runtime.HEAPU8.slice(start, start + 4 * width * height).buffer), width);
    }

    get settings(): Settings {
        this.module.getSettings(this.settingsBuffer);
        return settingsOf(this.numbers);
    }
    /** Applies the settings from the next frame on. */
    set settings(settings: Settings) {
        this.numbers.set(numbersOf(settings));
        this.module.setSettings(this.settingsBuffer);
    }

    /** Begins a new history for undo with these settings. */
    beginHistory(settings: Settings): void {
        this.numbers.set(numbersOf(settings));
        this.module.beginHistory(this.settingsBuffer);
    }

    /** Adds the settings to the history for undo. Call it after each change that the user makes. */
    noteSettings(settings: Settings): void {
        this.numbers.set(numbersOf(settings));
        this.module.noteSettings(performance.now(), this.settingsBuffer);
    }

    /** Undoes the last change and returns the resulting settings, or undefined if there is no change. */
    undo(): Settings | undefined {
        return this.module.undoSettings(this.settingsBuffer) ? settingsOf(this.numbers) : undefined;
    }

    /** Redoes the change that was undone last and returns the resulting settings, or undefined if there is none. */
    redo(): Settings | undefined {
        return this.module.redoSettings(this.settingsBuffer) ? settingsOf(this.numbers) : undefined;
    }

    /** Returns random settings, the same for the same seed. Does not change the current settings. */
    randomSettings(seed: number): Settings {
        this.module.randomSettings(seed, this.settingsBuffer);
        return settingsOf(this.numbers);
    }

    /** Returns an ink that stands out from the current background. */
    inkAgainstBackground(): Ink {
        this.module.inkAgainstBackground(this.settingsBuffer);
        const [red = 0, green = 0, blue = 0] = this.numbers;
        return [red, green, blue];
    }

    /** Parses a preset in JSON. A missing setting has its default value. Throws an Error with all faults. */
    readPreset(text: string): Settings {
        const preset = parseObject(text);
        this.module.beginPreset();
        const faults = Object.entries(preset).map(([name, value]) => this.setPresetMember(name, value));
        const message = faults.filter(Boolean).join("; ");
        if (message) {
            throw new Error(message);
        }
        this.module.takePreset(this.settingsBuffer);
        return settingsOf(this.numbers);
    }

    /** Returns the preset's name for a file name without suffix, for example "calm pond" for "calm_pond". */
    presetName(fileStem: string): string {
        return this.withText(fileStem, (stem) => this.text(this.module.presetName(stem)));
    }

    get attractModeOn(): boolean {
        return this.module.isAttractModeOn() !== 0;
    }

    get isWaterIdle(): boolean {
        return this.module.isWaterIdle() !== 0;
    }

    /** Fixes the quality at a level. Level 0 has full detail. */
    fixQuality(level: number): void {
        this.module.setQuality(level);
    }

    /** Turns adaptive quality on. */
    adaptQuality(): void {
        this.module.setQuality(-1);
    }

    get qualityPhase(): (typeof qualityPhases)[number] {
        return qualityPhases[this.module.qualityPhase()] ?? "fixed";
    }

    get quality(): Quality {
        const { module } = this;
        return { level: module.qualityLevel(), mesh: module.qualityMesh(), pixels: module.qualityPixels() };
    }

    /** Parses a gesture script for startReplay. Returns a message about its fault, or "" if it has none. */
    readScript(script: string, name: string): string {
        return this.withText(script, (scriptText) =>
            this.withText(name, (nameText) => this.text(this.module.readScript(scriptText, nameText))),
        );
    }

    /** Restarts the effect and replays the script that readScript has parsed. */
    startReplay(): void {
        this.module.startReplay();
    }

    /** Turns the observation of frames on or off. The overlays need the data of an observed frame. */
    set observes(on: boolean) {
        this.module.observe(on);
    }

    /** Velocities of the last observed frame. */
    get velocity(): VelocityField {
        const { module } = this;
        const [columns, rows] = [module.velocityColumns(), module.velocityRows()];
        const start = module.velocityBytes();
        return { columns, rows, bytes: this.runtime.HEAPU8.slice(start, start + 4 * columns * rows) };
    }

    /** Returns lines that show the flow of the last observed frame, in pixels of a screen of this size. */
    flowLines(screen: Size): FlowLine[] {
        const start = this.module.flowLines(screen.width, screen.height) / 4;
        const numbers = this.runtime.HEAPF32;
        return Array.from({ length: this.module.flowLineCount() }, (_, line) => {
            const [x = 0, y = 0, endX = 0, endY = 0, red = 0, green = 0, blue = 0, opacity = 0] = numbers.subarray(
                start + 8 * line,
            );
            return { x, y, endX, endY, color: [red, green, blue], opacity };
        });
    }

    /** Returns the ink density of the last observed frame in false colours, bottom row first, or null without ink. */
    densityImage(): ImageData | null {
        const { module } = this;
        const start = module.densityImage();
        if (start === 0) {
            return null;
        }
        const [width, height] = [module.densityWidth(), module.densityHeight()];
        return new ImageData(new Uint8ClampedArray(this.runtime.HEAPU8.slice(start, start + 4 * width * height)), width, height);
    }

    /** Returns the bytes of all water heights, followed by the bytes of all water velocities. */
    waterBytes(): Uint8Array {
        const bytes = 4 * this.module.waterCellCount();
        const cells = new Uint8Array(2 * bytes);
        [false, true].forEach((velocities, half) => {
            const start = this.module.waterCells(velocities);
            cells.set(this.runtime.HEAPU8.subarray(start, start + bytes), half * bytes);
        });
        return cells;
    }

    /** Length of the module's table of GL texture names. */
    get textureNames(): number {
        return this.runtime.GL.textures.length;
    }

    private readPaintingNames(): string[] {
        const names: string[] = [];
        for (let name; (name = this.text(this.module.paintingName(names.length))); ) {
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
                    this.text(this.module.setPresetMember(nameText, kind, array, numbers.length, text)),
                ),
            );
        } finally {
            this.module.free(array);
        }
    }

    /** View of settingsBuffer, which is valid only until the module's memory grows. */
    private get numbers(): Float64Array {
        return this.runtime.HEAPF64.subarray(this.settingsBuffer / 8, this.settingsBuffer / 8 + settingCount);
    }

    private text(address: number): string {
        return this.runtime.UTF8ToString(address);
    }

    /** Copies bytes into the module's memory. Returns the address, which the caller must free. */
    private copy(bytes: Uint8Array | Uint8ClampedArray): number {
        const address = this.module.malloc(Math.max(bytes.length, 8));
        this.runtime.HEAPU8.set(bytes, address);
        return address;
    }

    /** Calls `use` with the address of a temporary UTF-8 copy of the text. */
    private withText<Result>(text: string, use: (address: number) => Result): Result {
        const size = this.runtime.lengthBytesUTF8(text) + 1;
        const address = this.module.malloc(size);
        this.runtime.stringToUTF8(text, address, size);
        try {
            return use(address);
        } finally {
            this.module.free(address);
        }
    }
}

/** Returns the module's exports under their C++ names, without the underscore that Emscripten adds. */
function exportsOf(runtime: EffectModule): Exports {
    const exported = Object.entries(runtime).filter(([name]) => name.startsWith("_"));
    return Object.fromEntries(exported.map(([name, call]) => [name.slice(1), call])) as unknown as Exports;
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
