// The library behind its host, as WebAssembly on the page's canvas: typed calls for what host/exports.cpp exports.

import loadModule from "../../build/web/velmora-web.js";
import program from "../../build/web/velmora-web.wasm";
import type { Ink } from "./look";

/** Values are the platform's action codes. */
export const enum TouchAction {
    down = 0,
    up = 1,
    move = 2,
    cancel = 3,
}

export interface SettingField {
    name: string;
    words: string;
    /** The heading that it stands under. */
    group: "Water" | "Light" | "Ink";
    /** What it does. */
    hint: string;
    kind: "number" | "count" | "switch";
    least: number;
    most: number;
    first: number;
}

export interface Size {
    width: number;
    height: number;
}

export class Effect {
    /** In the order in which the settings' values pass. */
    readonly fields: SettingField[];
    readonly firstInk: Ink;
    /** Inks to choose from. */
    readonly palette: Record<string, Ink>;
    /** Sides of the square of pixels that a texel of the velocity covers. */
    readonly pixelsPerCell: number;
    /** Texels of the ink's textures along the screen's shorter and longer side. */
    readonly inkSides: [number, number];
    private readonly values: number;
    private readonly valueCount: number;

    private constructor(
        private readonly module: EffectModule,
        readonly gl: WebGLRenderingContext,
    ) {
        const description = JSON.parse(this.text(module._describeSettings()));
        ({ fields: this.fields, ink: this.firstInk, palette: this.palette } = description);
        this.pixelsPerCell = module._pixelsPerCell();
        this.inkSides = [module._inkTexels(false), module._inkTexels(true)];
        this.valueCount = this.fields.length + 3;
        this.values = module._malloc(4 * this.valueCount);
    }

    /** Throws where the browser has no WebAssembly; the context must be the canvas' first one. */
    static async load(gl: WebGLRenderingContext): Promise<Effect> {
        const module = await loadModule({ wasmBinary: program, printErr: (line: string) => console.error(line) });
        module.GL.makeContextCurrent(module.GL.registerContext(gl, { majorVersion: 1 }));
        return new Effect(module, gl);
    }

    /** Of the drawn mesh, from the next frame on; the water itself stays as it is. */
    setCellsPerVertex(cells: number): void {
        this.module._setCellsPerVertex(cells);
    }

    /** From the start: calm water, no ink. */
    restart(size: Size): void {
        this.module._restart(size.width, size.height);
    }

    /** RGBA pixels of the screen's shape; place 0 is the background, 1 the second one. */
    showPicture(place: 0 | 1, picture: ImageData): void {
        const bytes = this.module._malloc(picture.data.length);
        this.module.HEAPU8.set(picture.data, bytes);
        this.module._showPicture(place, picture.width, picture.height, bytes);
        this.module._free(bytes);
    }

    /** Sets up in the context that came back what the lost one held. */
    renewContext(): void {
        this.module._renewContext();
    }

    touch(action: TouchAction, x: number, y: number, pressure: number): void {
        this.module._touch(action, x, y, pressure);
    }

    clearInk(): void {
        this.module._clearInk();
    }

    /** Draws the next frame, with the water `milliseconds` later. */
    frame(milliseconds: number): void {
        this.module._frame(milliseconds);
    }

    /** Values in the order of `fields`, then the ink's red, green and blue; applied with the next frame. */
    setValues(values: readonly number[]): void {
        this.module.HEAPF32.set(values, this.values / 4);
        this.module._setSettings(this.values);
    }

    getValues(): number[] {
        this.module._getSettings(this.values);
        return this.numbers(this.valueCount);
    }

    /** Of a look by chance; each seed has its own. */
    randomValues(seed: number): number[] {
        this.module._randomSettings(seed, this.values);
        return this.numbers(this.valueCount);
    }

    /** An ink that stands out from the shown picture. */
    inkOfPicture(): Ink {
        this.module._inkOfPicture(this.values);
        return this.numbers(3) as Ink;
    }

    startRecording(): void {
        this.module._startRecording();
    }

    /** The gesture script of what happened since. */
    finishRecording(): string {
        return this.text(this.module._finishRecording());
    }

    /** Returns what is wrong with the script; empty where startReplay can play it. */
    readScript(script: string, name: string): string {
        return this.withText(script, (scriptText) =>
            this.withText(name, (nameText) => this.text(this.module._readScript(scriptText, nameText))),
        );
    }

    /** From the start, with the script that was read last. */
    startReplay(): void {
        this.module._startReplay();
    }

    get replays(): boolean {
        return this.module._isReplaying() !== 0;
    }

    get waterIsCalm(): boolean {
        return this.module._isWaterCalm() !== 0;
    }

    /** The water's heights and velocities, bytes as they lie in memory; for those who look closely. */
    waterBytes(): Uint8Array {
        const bytes = 4 * this.module._waterCellCount();
        const cells = new Uint8Array(2 * bytes);
        [0, 1].forEach((half) => {
            const start = this.module._waterCells(half);
            cells.set(this.module.HEAPU8.subarray(start, start + bytes), half * bytes);
        });
        return cells;
    }

    private numbers(count: number): number[] {
        return [...this.module.HEAPF32.subarray(this.values / 4, this.values / 4 + count)];
    }

    private text(address: number): string {
        return this.module.UTF8ToString(address);
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
