// The application core as a WebAssembly module that draws in a WebGL context. Wraps exports.cpp in typed methods.

import { numbersOf, settingCount, type Ink, type Settings } from "../../build/web/settings";
import type { Size } from "../engine/size";
import { GlImports } from "./gl_imports";
import { instantiate, type ModuleMemory } from "./wasm_module";

/** Functions of exports.cpp. Arrays are addresses; returned booleans are 0 or 1. */
interface Exports extends ModuleMemory {
    setSettings(numbers: number): void;
    getInk(ink: number): void;
    restart(width: number, height: number): void;
    resize(width: number, height: number): void;
    bindBackground(): void;
    setBackground(width: number, height: number, rgba: number): void;
    regainContext(): void;
    noteInput(now: number): void;
    press(now: number, x: number, y: number, pressure: number): void;
    moveFinger(now: number, x: number, y: number, pressure: number): void;
    lift(now: number, isCancel: boolean, x: number, y: number): void;
    clearInk(): void;
    turnAttractMode(on: boolean): void;
    attractModeDelay(now: number): number;
    isAttractModeRunning(): number;
    startAttractModeIfIdle(now: number, busy: boolean): void;
    takeDueFrames(now: number): number;
    dueTime(): number;
    skipTime(): void;
    frame(elapsed: number): void;
    isIdle(): number;
    mayShowInk(): number;
    noteInterval(interval: number): void;
    setQuality(adaptive: boolean): void;
    isSearchingQuality(): number;
    qualityPixels(): number;
    startRecording(): void;
    finishRecording(): void;
    isRecording(): number;
    takeRecording(): number;
    recordingLength(): number;
    startReplay(numbers: number, count: number): void;
    stopReplay(): void;
    isReplaying(): number;
}

export class Effect {
    /** Uploads the background into the bound texture. Called after each start of the effect. */
    uploadBackground = () => {};
    /** Texture of the background, null before the first start. */
    backgroundTexture: WebGLTexture | null = null;
    /** Address of a buffer of settingCount doubles in the module's memory. */
    private readonly settingsBuffer: number;

    private constructor(
        private readonly module: Exports,
        private readonly glImports: GlImports,
    ) {
        this.settingsBuffer = module.malloc(8 * settingCount);
    }

    /** Makes an instance of the module. Throws if the browser cannot run it. */
    static async load(): Promise<Effect> {
        const imports = new GlImports();
        let effect: Effect;
        const functions = {
            ...imports.functions(),
            renewContext: () => imports.deleteAll(),
            loadBackground: () => effect.loadBackground(),
        };
        const module = await instantiate<Exports>("element", functions);
        imports.memory = module.memory;
        effect = new Effect(module, imports);
        return effect;
    }

    /** Draws in this context from now on. The context must be new or restored. */
    attach(gl: WebGLRenderingContext): void {
        this.glImports.forget();
        this.glImports.gl = gl;
    }

    /** Restarts the effect with flat water and no ink. Ends a recording; a replay continues. */
    restart(size: Size): void {
        this.module.restart(size.width, size.height);
    }

    /** Starts the effect at another size and keeps the waves. The ink is lost. */
    resize(size: Size): void {
        this.module.resize(size.width, size.height);
    }

    /** Creates the GL objects again in a restored context. */
    regainContext(): void {
        this.module.regainContext();
        this.loadBackground();
    }

    /** Creates the texture of the background and uploads the image. */
    loadBackground(): void {
        const { gl } = this.glImports;
        this.module.bindBackground();
        this.backgroundTexture = gl.getParameter(gl.TEXTURE_BINDING_2D) as WebGLTexture | null;
        this.uploadBackground();
    }

    /** Passes a small copy of the background, from which attract mode chooses its inks. Drops the texture. */
    setInkSource(image: ImageData): void {
        this.withBytes(new Uint8Array(image.data.buffer), (address) =>
            this.module.setBackground(image.width, image.height, address),
        );
    }

    /** Sets the settings from the next frame on. */
    set settings(settings: Settings) {
        this.doubles(this.settingsBuffer, settingCount).set(numbersOf(settings));
        this.module.setSettings(this.settingsBuffer);
    }

    /** Ink in force. A replay changes it. */
    get ink(): Ink {
        this.module.getInk(this.settingsBuffer);
        const [red = 0, green = 0, blue = 0] = this.doubles(this.settingsBuffer, 3);
        return [red, green, blue];
    }

    /** Reports input other than a touch. Stops attract mode and requests a frame. */
    noteInput(): void {
        this.module.noteInput(performance.now());
    }

    press(x: number, y: number, pressure: number): void {
        this.module.press(performance.now(), x, y, pressure);
    }

    move(x: number, y: number, pressure: number): void {
        this.module.moveFinger(performance.now(), x, y, pressure);
    }

    lift(how: "up" | "cancel", x: number, y: number): void {
        this.module.lift(performance.now(), how === "cancel", x, y);
    }

    clearInk(): void {
        this.module.clearInk();
    }

    set attractModeOn(on: boolean) {
        this.module.turnAttractMode(on);
    }

    get attractModeRuns(): boolean {
        return this.module.isAttractModeRunning() !== 0;
    }

    /** Milliseconds until attract mode is due. Undefined if it will not start by itself. */
    get attractModeDelay(): number | undefined {
        const delay = this.module.attractModeDelay(performance.now());
        return delay < 0 ? undefined : delay;
    }

    /** Starts attract mode if it is due and the page is not `busy`. */
    startAttractModeIfIdle(busy: boolean): void {
        this.module.startAttractModeIfIdle(performance.now(), busy);
    }

    /** Returns the duration in milliseconds of each frame that is due at `now`. */
    takeDueFrames(now: number): number[] {
        const frames = this.module.takeDueFrames(now);
        return Array<number>(frames).fill(this.module.dueTime());
    }

    /** Ignores the time until the next call of takeDueFrames. */
    skipTime(): void {
        this.module.skipTime();
    }

    /** Advances the water by `milliseconds` and draws a frame. */
    frame(milliseconds: number): void {
        this.module.frame(milliseconds);
    }

    /** True if the next frame would be equal to the last one. */
    get isIdle(): boolean {
        return this.module.isIdle() !== 0;
    }

    get mayShowInk(): boolean {
        return this.module.mayShowInk() !== 0;
    }

    /** Passes the milliseconds between two frames to adaptive quality. */
    noteInterval(milliseconds: number): void {
        this.module.noteInterval(milliseconds);
    }

    /** Turns adaptive quality on, or fixes the quality at all detail. */
    set adaptsQuality(adaptive: boolean) {
        this.module.setQuality(adaptive);
    }

    get isSearchingQuality(): boolean {
        return this.module.isSearchingQuality() !== 0;
    }

    /** Ratio of rendered pixels to screen pixels along a side, at most 1. */
    get qualityPixels(): number {
        return this.module.qualityPixels();
    }

    /** Restarts the effect and records from the first frame. */
    startRecording(): void {
        this.module.startRecording();
    }

    finishRecording(): void {
        this.module.finishRecording();
    }

    get isRecording(): boolean {
        return this.module.isRecording() !== 0;
    }

    /** Returns the numbers of a recording that has ended since the last call. Empty if there is none. */
    takeRecording(): Float64Array {
        const start = this.module.takeRecording();
        return this.doubles(start, this.module.recordingLength()).slice();
    }

    /** Restarts the effect and replays the script of these numbers. */
    startReplay(numbers: Float64Array): void {
        this.withBytes(new Uint8Array(numbers.buffer), (address) => this.module.startReplay(address, numbers.length));
    }

    stopReplay(): void {
        this.module.stopReplay();
    }

    get isReplaying(): boolean {
        return this.module.isReplaying() !== 0;
    }

    /** Returns a view of the module's memory. Valid until the memory grows. */
    private doubles(address: number, count: number): Float64Array {
        return new Float64Array(this.module.memory.buffer, address, count);
    }

    /** Calls `use` with the address of a temporary copy of the bytes. */
    private withBytes(bytes: Uint8Array, use: (address: number) => void): void {
        const address = this.module.malloc(bytes.length);
        new Uint8Array(this.module.memory.buffer).set(bytes, address);
        use(address);
        this.module.free(address);
    }
}
