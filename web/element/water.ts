// Water over one area of a page. Holds the options and the methods of the water. The water requests a GL context when
// the area becomes visible. It gives the context back when the area becomes invisible and `keepsContext` is not true.

import { defaultSettings, type Settings } from "../../build/web/settings";
import { openContext } from "../engine/screen";
import { decoded, isDrawable, type BackgroundSource } from "./background";
import { contextPool, type PoolClient } from "./context_pool";
import { Effect } from "./effect";
import type { FingerQueue, Point, StrokeOptions } from "./finger_queue";
import { parseGesture, writeGesture } from "./gesture_scripts";
import { LiveWater, type LiveOwner, type WaterState } from "./live_water";
import { compileEarly } from "./wasm_module";

/** The place of the water in a page. The custom element and CanvasWater implement this interface. */
export interface WaterHost {
    /** Element whose box the water covers. */
    readonly area: HTMLElement;
    /** Element in which mouse moves touch the water, if `pointer` is "hover". */
    readonly hoverArea: HTMLElement;
    readonly source: BackgroundSource | null;
    /** Object that dispatches the events of the water. */
    readonly events: EventTarget;
    /** Returns a canvas on which the water opens a GL context. */
    makeCanvas(): HTMLCanvasElement;
    /**
     * Shows this canvas, which contains the water or a copy of its last frame. If null, shows only the plain
     * background.
     */
    show(canvas: HTMLCanvasElement | null): void;
    /** True if the canvas belongs to the page. The context pool then never takes the context from this water. */
    readonly keepsContext?: boolean;
}

/** Options of a touch that a script of the page makes. */
export type DropOptions = Pick<StrokeOptions, "pressure">;

const noWebGl = "This browser has no WebGL, or no more GL contexts.";
const noModule = "This browser cannot run WebAssembly with vector instructions.";
const otherOrigin =
    "The background is from another origin, which does not allow its use. Send the header " +
    "Access-Control-Allow-Origin and set the attribute crossorigin.";

/**
 * Instances of the WebAssembly module that no Water uses at the moment. New areas of water reuse these instances and
 * their memory.
 */
const idleEffects: Effect[] = [];

export class Water implements PoolClient, LiveOwner {
    readonly state: WaterState = {
        settings: structuredClone(defaultSettings),
        pointer: "drag",
        attract: false,
        paused: false,
        quality: "auto",
        pixelRatio: undefined,
    };
    private live: LiveWater | null = null;
    private effect: Effect | null = null;
    /** Copy of the last frame, which is shown while the water has no GL context. Null if there is no copy. */
    private still: HTMLCanvasElement | null = null;
    private isConnected = false;
    private isVisible = false;
    private hasFailed = false;
    /** True if the browser cannot draw water. */
    private isUnsupported = false;
    private isReady = false;
    /**
     * Number of calls of `open` and `close`. Opening a context is asynchronous. The opening stops if this number has
     * changed meanwhile, because `open` or `close` was called again.
     */
    private turn = 0;
    /** Resolves when the newest attempt to open a context ends. */
    private opening = Promise.resolve();
    private readonly visibility = new IntersectionObserver((entries) =>
        this.onVisibility(entries[entries.length - 1]!.isIntersecting),
    );

    constructor(private readonly host: WaterHost) {}

    get area(): HTMLElement {
        return this.host.area;
    }

    get hoverArea(): HTMLElement {
        return this.host.hoverArea;
    }

    get source(): BackgroundSource | null {
        return this.host.source;
    }

    get keepsContext(): boolean {
        return this.host.keepsContext ?? false;
    }

    /** True while the water has a GL context. */
    get isLive(): boolean {
        return this.live !== null;
    }

    /** True while the water draws no frames. */
    get isIdle(): boolean {
        return this.live?.isIdle ?? true;
    }

    /** Starts to observe whether the area is visible. */
    connect(): void {
        this.isConnected = true;
        compileEarly(); // while the picture is loaded
        this.visibility.observe(this.area);
    }

    /** Gives the GL context back and discards the copy of the last frame. */
    disconnect(): void {
        this.isConnected = false;
        this.isVisible = false;
        this.hasFailed = false;
        this.visibility.disconnect();
        this.giveBack();
        this.still = null;
        this.host.show(null);
    }

    /** Applies `state` after it has changed. */
    update(): void {
        this.live?.update();
    }

    setSettings(settings: Settings): void {
        this.state.settings = settings;
        this.update();
    }

    setQuality(quality: WaterState["quality"]): void {
        if (this.state.quality !== quality) {
            this.state.quality = quality;
            this.live?.changeQuality();
        }
    }

    /** Shows the host's new background. Call it when the background has changed. */
    onBackground(): void {
        this.hasFailed = false;
        if (this.live) {
            void decoded(this.source).then((isLoaded) => isLoaded && this.live?.changeBackground());
        } else {
            this.still = null;
            this.host.show(null);
        }
        this.follow();
    }

    /** Touches the water at a point. Resolves when the touch has ended. */
    drop(x: number, y: number, options: DropOptions = {}): Promise<void> {
        return this.run((queue) => queue.addDrop({ x, y }, options.pressure));
    }

    /** Draws a stroke along the points. Resolves when the stroke has ended. */
    async stroke(points: Point[], options: StrokeOptions = {}): Promise<void> {
        if (points.length > 0) {
            await this.run((queue) => queue.addStroke(points, options));
        }
    }

    /** Removes the ink. */
    clear(): void {
        this.live?.clearInk();
    }

    /**
     * Replays a gesture script. Resolves when the replay has started. Rejects with an Error that describes the script's
     * first fault.
     */
    async play(gesture: string): Promise<void> {
        const numbers = await parseGesture(gesture);
        this.needLive().play(numbers);
    }

    /** Restarts the effect, then records all touches as a gesture script. */
    startRecording(): void {
        this.needLive().startRecording();
    }

    /** Ends the recording. Resolves to its gesture script, or to "" if nothing was recorded. */
    async stopRecording(): Promise<string> {
        const numbers = this.needLive().stopRecording();
        return numbers.length > 0 ? writeGesture(numbers) : "";
    }

    /** Resolves to the current frame as a PNG image. */
    async toBlob(): Promise<Blob> {
        const canvas = this.live ? await this.live.capture() : this.still;
        if (!canvas) {
            throw new Error("The water has no frame yet. Wait for its event \"ready\".");
        }
        return new Promise((resolve) => canvas.toBlob((blob) => resolve(blob!))); // null only for a canvas without pixels
    }

    /** Opens a GL context. The context pool calls this method. */
    open(): void {
        this.opening = this.openContext(++this.turn);
    }

    /** Gives the GL context back and shows a copy of the last frame. The context pool also calls this method. */
    close(): void {
        ++this.turn;
        if (this.live) {
            this.still = this.live.snapshot();
            this.live.destroy();
            this.live = null;
            this.host.show(this.still);
        }
        if (this.effect) {
            idleEffects.push(this.effect);
        }
        this.effect = null;
    }

    emit(type: string): void {
        this.host.events.dispatchEvent(new Event(type));
    }

    onFirstFrame(): void {
        this.still = null;
        this.host.show(this.live!.canvas);
        if (!this.isReady) {
            this.isReady = true;
            this.emit("ready");
        }
    }

    onBackgroundError(): void {
        this.fail(otherOrigin);
    }

    onUse(): void {
        contextPool.use(this);
    }

    /** Requests a GL context if the water has none, and waits for it. Then adds touches to the queue. */
    private async run(add: (queue: FingerQueue) => Promise<void>): Promise<void> {
        contextPool.use(this);
        await this.opening;
        if (this.live) {
            const done = add(this.live.queue);
            this.live.requestFrame();
            await done;
        }
    }

    private async openContext(turn: number): Promise<void> {
        const loading = idleEffects.pop() ?? Effect.load().catch(() => null);
        const [effect, isLoaded] = await Promise.all([loading, decoded(this.source)]);
        if (turn !== this.turn || !effect || !isLoaded) {
            if (effect) {
                idleEffects.push(effect);
            }
            if (turn === this.turn) {
                if (effect) {
                    contextPool.release(this); // the event "load" of the new image requests a context again
                } else {
                    this.reportUnsupported(noModule);
                }
            }
            return;
        }
        this.effect = effect;
        const canvas = this.host.makeCanvas();
        const gl = openContext(canvas);
        if (gl) {
            this.live = new LiveWater(effect, canvas, gl, this);
        } else {
            this.reportUnsupported(noWebGl);
        }
    }

    private reportUnsupported(message: string): void {
        this.isUnsupported = true;
        this.fail(message);
    }

    private onVisibility(isVisible: boolean): void {
        this.isVisible = isVisible;
        this.follow();
    }

    /** Requests a GL context if the water is visible and can draw. Otherwise gives the context back. */
    private follow(): void {
        const { source } = this;
        if (!this.isConnected || this.hasFailed || this.isUnsupported || (!this.isVisible && !(this.live && this.keepsContext))) {
            this.giveBack();
        } else if (!source || isDrawable(source)) {
            contextPool.request(this);
        }
    }

    private giveBack(): void {
        this.close();
        contextPool.release(this);
    }

    /** Dispatches an "error" event and shows the plain background until the background changes. */
    private fail(message: string): void {
        if (this.hasFailed) {
            return;
        }
        this.hasFailed = true;
        const text = `${message} The plain picture is shown.`;
        queueMicrotask(() => {
            this.giveBack();
            this.still = null;
            this.host.show(null);
            this.host.events.dispatchEvent(new ErrorEvent("error", { message: text, error: new Error(text) }));
        });
    }

    private needLive(): LiveWater {
        if (!this.live) {
            throw new Error("The water is hidden or has no frame yet. Wait for its event \"ready\".");
        }
        return this.live;
    }
}
