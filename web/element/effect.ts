// The effect: an instance of the element's WebAssembly module, which draws in a WebGL context. Wraps the functions of
// exports.cpp in typed methods.

import { numbersOf, settingCount, type Settings } from "../../build/web/settings";
import { Session, type SessionExports } from "../engine/session";
import type { Size } from "../engine/size";
import { GlImports } from "./gl_imports";
import { instantiate, type ModuleMemory } from "./wasm_module";

/** Functions of exports.cpp. Arrays are addresses; returned booleans are 0 or 1. */
interface Exports extends SessionExports, ModuleMemory {
    setSettings(numbers: number): void;
    restart(width: number, height: number): void;
    bindBackground(): void;
    setBackground(width: number, height: number, rgba: number): void;
    setQuality(adaptive: boolean): void;
    isSearchingQuality(): number;
    takeRecording(): number;
    recordingLength(): number;
    startReplay(numbers: number, count: number): void;
}

export class Effect extends Session<Exports> {
    /** Callback that uploads the background into the bound texture. Called after each start of the effect. */
    uploadBackground = () => {};
    /** Texture of the background, null before the first start. */
    backgroundTexture: WebGLTexture | null = null;
    /** Address in the module's memory of a buffer for `settingCount` doubles. */
    private readonly settingsBuffer: number;

    private constructor(
        module: Exports,
        private readonly glImports: GlImports,
    ) {
        super(module);
        this.settingsBuffer = module.malloc(8 * settingCount);
    }

    /** Creates an instance of the module. Throws if the browser cannot run the module. */
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

    /** Makes the effect draw in this context from now on. The context must have no objects of another effect. */
    attach(gl: WebGLRenderingContext): void {
        this.glImports.forget();
        this.glImports.gl = gl;
    }

    /** Deletes the effect's objects in its context. */
    detach(): void {
        this.glImports.deleteAll();
    }

    /** Restarts the effect with flat water and no ink. A running recording ends; a running replay continues. */
    restart(size: Size): void {
        this.module.restart(size.width, size.height);
    }

    /** Creates the texture of the background and uploads the background. */
    loadBackground(): void {
        const { gl } = this.glImports;
        this.module.bindBackground();
        this.backgroundTexture = gl.getParameter(gl.TEXTURE_BINDING_2D) as WebGLTexture | null;
        this.uploadBackground();
    }

    /**
     * Passes a small copy of the background, from which attract mode chooses its ink colours. A running effect then
     * shows one black pixel instead of its background, so call loadBackground afterwards.
     */
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

    /** Turns adaptive quality on if true. If false, the effect draws full detail. */
    set adaptsQuality(adaptive: boolean) {
        this.module.setQuality(adaptive);
    }

    get isSearchingQuality(): boolean {
        return this.module.isSearchingQuality() !== 0;
    }

    /**
     * Returns the recording that has ended since the last call, as numbers (see event_numbers.h). Empty if there is
     * none.
     */
    takeRecording(): Float64Array {
        const start = this.module.takeRecording();
        return this.doubles(start, this.module.recordingLength()).slice();
    }

    /** Restarts the effect and replays a gesture script. `numbers` encodes the script (see event_numbers.h). */
    startReplay(numbers: Float64Array): void {
        this.withBytes(new Uint8Array(numbers.buffer), (address) => this.module.startReplay(address, numbers.length));
    }

    /** Returns a view of `count` doubles in the module's memory. The view is valid until the memory grows. */
    private doubles(address: number, count: number): Float64Array {
        return new Float64Array(this.module.memory.buffer, address, count);
    }

    /** Copies bytes into the module's memory, calls `use` with the address of the copy, then frees the copy. */
    private withBytes(bytes: Uint8Array, use: (address: number) => void): void {
        const address = this.module.malloc(bytes.length);
        new Uint8Array(this.module.memory.buffer).set(bytes, address);
        use(address);
        this.module.free(address);
    }
}
