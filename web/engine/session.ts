// Typed methods for the functions of the application core that the page and the custom element share.

import type { Size } from "./size";

/** Functions of host/session_exports.cpp. Returned booleans are 0 or 1. */
export interface SessionExports {
    resize(width: number, height: number): void;
    regainContext(): void;
    noteInput(now: number): void;
    press(now: number, x: number, y: number, pressure: number): void;
    moveFinger(now: number, x: number, y: number, pressure: number): void;
    lift(now: number, isCancel: boolean, x: number, y: number): void;
    clearInk(): void;
    turnAttractMode(on: boolean): void;
    isAttractModeRunning(): number;
    attractModeDelay(now: number): number;
    startAttractModeIfIdle(now: number, busy: boolean): void;
    takeDueFrames(now: number): number;
    dueTime(): number;
    skipTime(): void;
    frame(elapsed: number): void;
    isIdle(): number;
    mayShowInk(): number;
    noteInterval(interval: number): void;
    qualityPixels(): number;
    startRecording(): void;
    finishRecording(): void;
    isRecording(): number;
    stopReplay(): void;
    isReplaying(): number;
}

/** A running effect in a WebAssembly module. Positions are in canvas pixels, y down. */
export class Session<Exports extends SessionExports> {
    constructor(protected readonly module: Exports) {}

    /** Starts the effect at this size, without ink. Keeps the waves. Ends a recording; a replay continues. */
    resize(size: Size): void {
        this.module.resize(size.width, size.height);
    }

    /** Creates the GL objects again in a restored context. */
    regainContext(): void {
        this.module.regainContext();
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

    turnAttractMode(on: boolean): void {
        this.module.turnAttractMode(on);
    }

    get attractModeRuns(): boolean {
        return this.module.isAttractModeRunning() !== 0;
    }

    /** Milliseconds until attract mode is due. Undefined if attract mode will not start by itself. */
    get attractModeDelay(): number | undefined {
        const delay = this.module.attractModeDelay(performance.now());
        return delay < 0 ? undefined : delay;
    }

    /** Starts attract mode if it is due. If `busy` is true, does not start it, but restarts the idle time. */
    startAttractModeIfIdle(busy: boolean): void {
        this.module.startAttractModeIfIdle(performance.now(), busy);
    }

    /** Returns the duration in milliseconds of each frame that is due at `now`, or an empty array. */
    takeDueFrames(now: number): number[] {
        const frames = this.module.takeDueFrames(now);
        return Array<number>(frames).fill(this.module.dueTime());
    }

    /** Ignores the time until the next call of takeDueFrames, which then returns one frame of 1/60 s. */
    skipTime(): void {
        this.module.skipTime();
    }

    /** Advances the water by `milliseconds` and draws a frame. */
    frame(milliseconds: number): void {
        this.module.frame(milliseconds);
    }

    /** True if the next frame would look exactly like the last one. */
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

    /** Ratio of rendered pixels to screen pixels along a side, at most 1. */
    get qualityPixels(): number {
        return this.module.qualityPixels();
    }

    /** Restarts the effect and records touches from the first frame on. */
    startRecording(): void {
        this.module.startRecording();
    }

    finishRecording(): void {
        this.module.finishRecording();
    }

    get isRecording(): boolean {
        return this.module.isRecording() !== 0;
    }

    stopReplay(): void {
        this.module.stopReplay();
    }

    get isReplaying(): boolean {
        return this.module.isReplaying() !== 0;
    }
}
