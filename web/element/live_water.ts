// Water that can draw, because it has a GL context. A LiveWater exists from the opening of its context until the
// context is given back.

import { numbersOf, resizeDelay, type Settings } from "../../build/web/settings";
import { AttractTimer } from "../engine/attract_timer";
import { FrameLoop } from "../engine/frame_loop";
import { Pointer } from "../engine/pointer";
import { onPixelRatio, pixelSize } from "../engine/screen";
import type { Size } from "../engine/size";
import { BackgroundTexture, type TextureOwner } from "./background_texture";
import type { Effect } from "./effect";
import { FingerQueue, type Point } from "./finger_queue";

/**
 * Input that touches the water. `drag`: every drag except vertical swipes, which scroll the page. `hover`: also a mouse
 * that moves without a pressed button. `none`: no input. `capture`: every drag.
 */
export type PointerMode = "drag" | "hover" | "none" | "capture";

/** Options that the author of the page has chosen. */
export interface WaterState {
    settings: Settings;
    /** Input that touches the water. */
    pointer: PointerMode;
    /** True if attract mode draws strokes while nobody touches the water. */
    attract: boolean;
    /** True if the water stands still and shows its last frame. */
    paused: boolean;
    /** `auto` draws less detail on a slow machine, `full` never does. */
    quality: "auto" | "full";
    /** Rendered pixels per CSS pixel. Undefined for the screen's ratio. */
    pixelRatio: number | undefined;
}

/** Object to which the water belongs. It supplies the options and handles the events. */
export interface LiveOwner extends TextureOwner {
    readonly state: WaterState;
    /** True if the canvas belongs to the page. Its GL context then stays alive, so that the page can reuse the canvas. */
    readonly keepsContext: boolean;
    /** Element in which mouse moves touch the water, if `pointer` is "hover". */
    readonly hoverArea: HTMLElement;
    /** Dispatches an event of this type. */
    emit(type: string): void;
    /** Called after the first frame. */
    onFirstFrame(): void;
    /** Called when the user touches the water. */
    onUse(): void;
}

/** The effect on a canvas, with the input, the frame loop and the background that belong to it. */
export class LiveWater {
    /** Touches and strokes that a script of the page makes. */
    readonly queue = new FingerQueue();
    /** Recording that ended last, as numbers (see event_numbers.h). Empty if there is none. */
    recording: Float64Array = new Float64Array();
    private readonly ended = new AbortController();
    private readonly texture: BackgroundTexture;
    private readonly loop: FrameLoop;
    private readonly pointer: Pointer;
    private readonly attractTimer: AttractTimer;
    private readonly reducedMotion = matchMedia("(prefers-reduced-motion: reduce)");
    private readonly resizeObserver: ResizeObserver;
    private resizeTimer = 0;
    /** Settings that were last passed to the effect, as text. */
    private passedSettings = "";
    /** Time of the last animation frame in milliseconds. */
    private lastTick = 0;
    private isContextLost = false;
    private hasDrawn = false;
    /** Position at which a script of the page touches the water, in CSS pixels. Null between two strokes. */
    private scriptFinger: Point | null = null;
    private wasIdle = false;
    private needsFrame = true;
    /** Functions to call after the next frame. */
    private afterFrame: (() => void)[] = [];

    constructor(
        private readonly effect: Effect,
        readonly canvas: HTMLCanvasElement,
        private readonly gl: WebGLRenderingContext,
        private readonly owner: LiveOwner,
    ) {
        const { signal } = this.ended;
        this.loop = new FrameLoop(
            {
                canRun: () => !this.isContextLost && !signal.aborted,
                skipTime: () => this.skipTime(),
                tick: (now) => this.tick(now),
            },
            signal,
        );
        this.pointer = this.makePointer(signal);
        this.attractTimer = new AttractTimer(effect, {
            isBusy: () => owner.state.paused || this.isContextLost || this.pointer.isPressed,
            wake: () => this.loop.wake(),
        });
        this.resizeObserver = new ResizeObserver(() => this.followSize());
        this.resizeObserver.observe(owner.area);
        onPixelRatio(() => this.followSize(), signal);
        canvas.addEventListener("webglcontextlost", (event) => this.onContextLost(event), { signal });
        canvas.addEventListener("webglcontextrestored", () => this.onContextRestored(), { signal });
        this.reducedMotion.addEventListener("change", () => this.update(), { signal });
        effect.attach(gl);
        this.texture = new BackgroundTexture(effect, gl, owner, () => this.requestFrame(), signal);
        effect.adaptsQuality = owner.state.quality === "auto";
        effect.noteInput(); // starts the wait for attract mode
        this.update();
        this.texture.passInkSource();
        this.start((size) => effect.restart(size));
        this.texture.followVideo();
    }

    /** Stops drawing. Gives the GL context back to the browser unless the canvas belongs to the page. */
    destroy(): void {
        this.afterFrame.splice(0).forEach((call) => call());
        this.ended.abort();
        this.pointer.cancel();
        this.cancelScript();
        this.attractTimer.stop();
        clearTimeout(this.resizeTimer);
        this.resizeObserver.disconnect();
        this.effect.finishRecording();
        this.effect.takeRecording();
        this.effect.stopReplay();
        this.effect.uploadBackground = () => {};
        this.effect.detach();
        if (!this.owner.keepsContext) {
            this.gl.getExtension("WEBGL_lose_context")?.loseContext();
        }
    }

    /** Applies the owner's state after it has changed. */
    update(): void {
        const { effect, owner } = this;
        effect.turnAttractMode(owner.state.attract && !this.reducedMotion.matches);
        if (owner.state.pointer === "none" || owner.state.paused) {
            this.pointer.cancel();
        }
        this.attractTimer.restart();
        this.requestFrame();
        this.followSize();
    }

    /** Turns adaptive quality on or off, as the owner's state says. */
    changeQuality(): void {
        this.effect.adaptsQuality = this.owner.state.quality === "auto";
        this.followSize();
    }

    /** Shows the owner's new background. Call it when the background has changed. */
    changeBackground(): void {
        if (!this.isContextLost) {
            this.texture.change();
            this.requestFrame();
        }
    }

    /** Requests that a frame is drawn, even if the water is idle. */
    requestFrame(): void {
        this.needsFrame = true;
        this.loop.wake();
    }

    clearInk(): void {
        this.effect.clearInk();
        this.requestFrame();
    }

    /** True while no further frame is needed. */
    get isIdle(): boolean {
        return !this.loop.isRunning && this.isStill;
    }

    startRecording(): void {
        this.needContext();
        this.cancelScript();
        this.useAllPixels();
        this.effect.startRecording();
        this.afterRestart();
    }

    /**
     * Ends the recording and returns it as numbers (see event_numbers.h). Returns an empty array if nothing was
     * recorded.
     */
    stopRecording(): Float64Array {
        this.effect.finishRecording();
        this.takeRecording();
        const { recording } = this;
        this.recording = new Float64Array();
        return recording;
    }

    /** Restarts the effect and replays a gesture script, which is given as numbers (see event_numbers.h). */
    play(numbers: Float64Array): void {
        this.needContext();
        this.cancelScript();
        this.useAllPixels();
        this.effect.startReplay(numbers);
        this.afterRestart();
    }

    /**
     * Returns a copy of the current frame. During a recording or replay, returns a copy of the next frame instead: an
     * extra frame would change the gesture.
     */
    capture(): Promise<HTMLCanvasElement> {
        if (this.effect.isRecording || this.effect.isReplaying) {
            return new Promise((resolve) => {
                this.afterFrame.push(() => resolve(this.copy()));
                this.requestFrame(); // a pause draws no frames of its own
            });
        }
        return Promise.resolve(this.snapshot());
    }

    /** Draws the current state of the water again, without advancing time, and returns a copy of the frame. */
    snapshot(): HTMLCanvasElement {
        if (!this.isContextLost) {
            this.effect.frame(0);
        }
        return this.copy();
    }

    private makePointer(signal: AbortSignal): Pointer {
        const { owner, effect } = this;
        const accepts = () => owner.state.pointer !== "none" && !owner.state.paused;
        return new Pointer(
            this.canvas,
            {
                press: (...touch) => accepts() && this.touch(() => effect.press(...touch)),
                move: (...touch) => accepts() && this.touch(() => effect.move(...touch)),
                lift: (...touch) => (effect.lift(...touch), this.loop.wake()),
                pressure: () => owner.state.settings.pressure,
            },
            { signal, area: owner.hoverArea, keepsMenu: true, hovers: () => owner.state.pointer === "hover" && accepts() },
        );
    }

    /** Ends the touches of the page's script, because another touch or a restart has priority. */
    private cancelScript(): void {
        this.queue.clear();
        this.liftScriptFinger();
    }

    private liftScriptFinger(): void {
        if (this.scriptFinger) {
            this.effect.lift("up", ...this.pixelsOf(this.scriptFinger));
            this.scriptFinger = null;
        }
    }

    private touch(pass: () => void): void {
        this.cancelScript();
        pass();
        this.owner.onUse();
        this.attractTimer.restart();
        this.loop.wake();
    }

    private get wantedSize(): Size {
        const { effect, owner } = this;
        const isGesture = effect.isRecording || effect.isReplaying;
        return pixelSize(owner.area, isGesture ? 1 : effect.qualityPixels, owner.state.pixelRatio);
    }

    private get hasWantedSize(): boolean {
        const { width, height } = this.wantedSize;
        return width === this.texture.size.width && height === this.texture.size.height;
    }

    private followSize(): void {
        clearTimeout(this.resizeTimer);
        this.resizeTimer = window.setTimeout(() => {
            if (!this.isContextLost && !this.hasWantedSize && !this.ended.signal.aborted) {
                this.resize();
            }
        }, resizeDelay);
    }

    /**
     * Restarts the effect at the wanted size and keeps the waves. Draws immediately, because resizing a canvas clears
     * it.
     */
    private resize(): void {
        this.start((size) => this.effect.resize(size));
        this.effect.frame(0);
    }

    /**
     * Resizes the canvas to the wanted size, then calls `start` with this size. `start` must start the effect, which
     * then has no ink.
     */
    private start(start: (size: Size) => void): void {
        this.setSize(this.wantedSize);
        this.passSettings();
        start(this.texture.size);
        this.afterRestart();
    }

    private needContext(): void {
        if (this.isContextLost) {
            throw new Error("The graphics are restarting. Wait for the event \"contextrestored\".");
        }
    }

    /**
     * Restarts the effect at full resolution, even if adaptive quality has reduced the resolution. A gesture then has
     * the same result on slow and fast machines.
     */
    private useAllPixels(): void {
        this.setSize(pixelSize(this.owner.area, 1, this.owner.state.pixelRatio));
        this.passSettings();
        this.effect.restart(this.texture.size);
    }

    private setSize(size: Size): void {
        this.texture.size = size;
        this.canvas.width = size.width;
        this.canvas.height = size.height;
    }

    private afterRestart(): void {
        this.takeRecording();
        this.attractTimer.restart();
        this.requestFrame();
    }

    private takeRecording(): void {
        const numbers = this.effect.takeRecording();
        if (numbers.length > 0) {
            this.recording = numbers;
        }
    }

    private skipTime(): void {
        this.lastTick = performance.now();
        this.effect.skipTime();
    }

    private tick(now: number): boolean {
        const { effect, owner } = this;
        this.attractTimer.startIfIdle();
        this.passSettings();
        if (!owner.state.paused) {
            effect.noteInterval(now - this.lastTick);
        }
        this.lastTick = now;
        this.texture.showVideo();
        for (const elapsed of this.dueFrames(now)) {
            this.frame(elapsed);
        }
        if (this.maySizeChange && !this.hasWantedSize) {
            this.resize();
        }
        this.reportIdle();
        return !this.loop.isRunning && !this.isStill;
    }

    private dueFrames(now: number): number[] {
        if (this.owner.state.paused) {
            return this.needsFrame ? [0] : [];
        }
        return this.effect.takeDueFrames(now);
    }

    private frame(elapsed: number): void {
        const { effect, owner } = this;
        if (!this.queue.isEmpty && !this.pointer.isPressed) {
            this.queue.step({
                press: (point, pressure = owner.state.settings.pressure) =>
                    effect.press(...this.pixelsOf((this.scriptFinger = point)), pressure),
                move: (point, pressure = owner.state.settings.pressure) =>
                    effect.move(...this.pixelsOf((this.scriptFinger = point)), pressure),
                lift: () => this.liftScriptFinger(),
            });
        }
        const wasReplaying = effect.isReplaying;
        effect.frame(elapsed);
        this.needsFrame = false;
        this.takeRecording();
        this.afterFrame.splice(0).forEach((call) => call());
        if (!this.hasDrawn) {
            this.hasDrawn = true;
            owner.onFirstFrame();
        }
        if (wasReplaying && !effect.isReplaying) {
            this.passedSettings = ""; // the script may have changed the ink
            owner.emit("gestureend");
        }
    }

    /** Converts a position from CSS pixels to canvas pixels. */
    private pixelsOf({ x, y }: Point): [number, number] {
        const { area } = this.owner;
        return [(x / area.clientWidth) * this.texture.size.width, (y / area.clientHeight) * this.texture.size.height];
    }

    /** True if the next frame would look the same as the last frame. */
    private get isStill(): boolean {
        const { effect, owner } = this;
        if (this.needsFrame || this.texture.playsUnreported) {
            return false;
        }
        return owner.state.paused || (effect.isIdle && this.queue.isEmpty);
    }

    private reportIdle(): void {
        if (this.isStill !== this.wasIdle) {
            this.wasIdle = !this.wasIdle;
            this.owner.emit(this.wasIdle ? "idle" : "active");
        }
    }

    /**
     * True if the effect can be restarted at another size unnoticed. A restart removes the ink, so this is false while
     * ink is visible.
     */
    private get maySizeChange(): boolean {
        const { effect, owner } = this;
        return (effect.isIdle || effect.isSearchingQuality) && !owner.state.paused && !effect.mayShowInk;
    }

    /**
     * Passes the settings to the effect if they have changed. Passes nothing during a replay, which sets the ink colour
     * itself.
     */
    private passSettings(): void {
        const { settings } = this.owner.state;
        const text = String(numbersOf(settings));
        if (text !== this.passedSettings && !this.effect.isReplaying) {
            this.passedSettings = text;
            this.effect.settings = settings;
        }
    }

    private onContextLost(event: Event): void {
        event.preventDefault(); // otherwise the browser does not restore the context
        this.pointer.cancel();
        this.isContextLost = true;
        this.owner.emit("contextlost");
    }

    private onContextRestored(): void {
        this.isContextLost = false;
        this.effect.attach(this.gl);
        this.effect.regainContext();
        this.texture.restore();
        this.afterRestart();
        this.owner.emit("contextrestored");
    }

    private copy(): HTMLCanvasElement {
        const copy = document.createElement("canvas");
        copy.width = this.canvas.width;
        copy.height = this.canvas.height;
        copy.getContext("2d")?.drawImage(this.canvas, 0, 0);
        return copy;
    }
}
