// The effect on the page's canvas: runs its frames while something moves, and rests when nothing does.

import { Attract } from "./attract";
import { CalmWatch } from "./calm";
import { TouchAction, type Effect, type Size } from "./effect";
import { EffectProbe } from "./effect_probe";
import { Finger } from "./finger";
import { FrameClock, frameTime } from "./frame_clock";
import { firstLook, lookOf, valuesOf, type Look } from "./look";
import { drawOverlays, type Overlays } from "./overlays";
import { firstPictures, pixelsOf, type Pictures } from "./pictures";
import { Quality } from "./quality";
import { pixelSize } from "./screen";

/** Milliseconds of the newest frames: one whole frame of the page, and what the effect took of it. */
export interface FrameTime {
    between: number;
    effect: number;
}
const frameTimesKept = 120;

export class Player {
    readonly look: Look;
    readonly view: Overlays & { paused: boolean; attract: boolean } = {
        velocity: false,
        density: false,
        paused: false,
        attract: !matchMedia("(prefers-reduced-motion: reduce)").matches,
    };
    readonly pictures: Pictures = firstPictures();
    readonly finger: Finger;
    readonly quality = new Quality();
    readonly times: FrameTime[] = [];
    /** Since the page was opened: animation frames asked for, frames of the effect, GL contexts. */
    readonly counts = { animationFrames: 0, frames: 0, contexts: 1 };
    /** A film's pictures keep their size. */
    filming = false;
    /** The context is lost. */
    lost = false;
    /** Called after each frame, while the canvas still has its picture. */
    readonly afterFrame = new Set<() => void>();
    /** The look has changed by itself, by a script for instance. */
    onLook = () => {};
    onReplayEnd = () => {};
    /** Before everything starts anew: what is recorded would be lost. */
    beforeRestart = () => {};

    readonly probe: EffectProbe;
    private readonly calm: CalmWatch;
    private readonly attract: Attract;
    private readonly clock = new FrameClock();
    private readonly overlay = document.getElementById("overlay") as HTMLCanvasElement;
    private size: Size = { width: 0, height: 0 };
    private moves: [TouchAction, number, number, number][] = [];
    private scheduled = false;
    private stepWanted = false;
    /** The picture of a pause: the canvas' own is gone once the browser has shown it. */
    private still: HTMLCanvasElement | null = null;
    /** What is recorded or replayed is the same on every machine: all of the pixels, and every frame. */
    private mode: "free" | "recording" | "replaying" = "free";
    private shownValues = "";
    private resizeTimer = 0;
    private waterOnly = false;
    private lastTick = 0;
    private lastFrame = 0;

    constructor(
        readonly effect: Effect,
        readonly canvas: HTMLCanvasElement,
    ) {
        this.look = firstLook(effect);
        this.probe = new EffectProbe(effect.gl, effect.pixelsPerCell);
        this.calm = new CalmWatch(effect.gl);
        this.finger = new Finger(canvas, {
            touch: (...touch) => this.touchByHand(...touch),
            pressure: () => this.look["pressure"] as number,
        });
        this.attract = new Attract({
            touch: (...touch) => this.touch(...touch),
            wake: () => this.wake(),
            mayAttract: () => this.view.attract && !this.isBusy && !document.hidden,
        });
        new ResizeObserver(() => this.followSize()).observe(canvas);
        document.addEventListener("visibilitychange", () => {
            this.skipTime(); // also where a frame waits, which a hidden page gets only when it is seen again
            this.wake();
        });
    }

    /** From the start on the canvas' present size: calm water, no ink. */
    restart(): void {
        this.beforeRestart();
        this.mode = "free";
        this.takeWantedSize();
        this.begin();
    }

    get screen(): Size {
        return this.size;
    }

    get recording(): boolean {
        return this.mode === "recording";
    }

    /** Whether a gesture runs or is watched that nobody should disturb. */
    get isBusy(): boolean {
        return this.mode !== "free" || this.finger.pressed || this.view.paused || this.lost;
    }

    /** The visitor did something: the next frame is drawn, and whoever waits for idleness waits anew. */
    userCame(touched = false): void {
        this.attract.userCame(touched);
        this.calm.disturb();
        this.wake();
    }

    /** Frames run until the picture stands. */
    wake(): void {
        if (this.scheduled || this.lost || document.hidden) {
            return;
        }
        this.skipTime();
        this.schedule();
    }

    step(): void {
        this.view.paused = true;
        this.stepWanted = true;
        this.wake();
    }

    clearInk(): void {
        this.moves = [];
        this.effect.clearInk();
        this.calm.start();
        this.wake();
    }

    touch(action: TouchAction, x: number, y: number, pressure: number): void {
        // Each event once, with its latest place: older places would make the finger count as slower.
        if (action === TouchAction.move && this.moves.at(-1)?.[0] === TouchAction.move) {
            this.moves.pop();
        }
        this.moves.push([action, x, y, pressure]);
        this.calm.touch();
        this.quality.trying = false;
        this.wake();
    }

    /** What the screen shows. */
    screenshot(): Promise<Blob | null> {
        const blobOf = (canvas: HTMLCanvasElement) =>
            new Promise<Blob | null>((resolve) => canvas.toBlob(resolve, "image/png"));
        if (this.view.paused && this.still) {
            return blobOf(this.still);
        }
        return new Promise((resolve) => {
            const take = () => {
                this.afterFrame.delete(take);
                resolve(blobOf(this.canvas));
            };
            this.afterFrame.add(take);
            this.calm.disturb();
            this.wake();
        });
    }

    picturesChanged(): void {
        this.uploadPictures();
        this.userCame();
    }

    /** Restarts, and keeps what happens from there. */
    startRecording(): void {
        this.enter("recording");
        this.effect.startRecording();
        this.begin();
    }

    finishRecording(): string {
        this.mode = "free";
        return this.effect.finishRecording();
    }

    /** Restarts and plays a gesture script; returns what is wrong with it. */
    replay(script: string, name: string): string {
        this.beforeRestart();
        const fault = this.effect.startReplay(script, name);
        if (!fault) {
            this.enter("replaying");
            this.effect.startReplay(script, name);
            this.begin();
            this.view.paused = false;
        }
        return fault;
    }

    loseContext(): void {
        this.finger.cancel();
        this.lost = true;
    }

    regainContext(): void {
        this.lost = false;
        ++this.counts.contexts;
        this.effect.renewContext();
        this.probe.watch(this.size);
        this.calm.start();
        this.wake();
    }

    private begin(): void {
        this.moves = [];
        this.probe.watch(this.size);
        this.calm.start();
        this.wake();
    }

    private touchByHand(action: TouchAction, x: number, y: number, pressure: number): void {
        this.attract.userCame(true);
        this.touch(action, x, y, pressure);
    }

    private uploadPictures(): void {
        const whole = pixelSize(this.canvas, 1);
        this.effect.showPicture(0, pixelsOf(this.pictures.sources[0], this.size, whole));
        this.effect.showPicture(1, pixelsOf(this.pictures.sources[1], this.size, whole));
    }

    private get wantedSize(): Size {
        return pixelSize(this.canvas, this.mode === "free" ? this.quality.pixels : 1);
    }

    private get hasWantedSize(): boolean {
        const { width, height } = this.wantedSize;
        return width === this.size.width && height === this.size.height;
    }

    private takeWantedSize(): void {
        this.size = this.wantedSize;
        this.canvas.width = this.size.width;
        this.canvas.height = this.size.height;
        this.uploadPictures();
        this.passLook();
        this.effect.restart(this.size);
    }

    private enter(mode: "recording" | "replaying"): void {
        this.mode = mode;
        if (!this.hasWantedSize) {
            this.takeWantedSize();
        }
        this.passLook();
    }

    /** A new size is a new start; while a window is dragged larger there are many of them. */
    private followSize(): void {
        clearTimeout(this.resizeTimer);
        this.resizeTimer = window.setTimeout(() => {
            if (!this.lost && !this.hasWantedSize) {
                this.restart();
            }
        }, 150);
    }

    /** Nobody saw the time since the last frame: no water moved, and no frame is late. */
    private skipTime(): void {
        this.lastTick = performance.now();
        this.quality.skip();
        this.clock.skip(this.lastTick);
    }

    private schedule(): void {
        this.scheduled = true;
        requestAnimationFrame((now) => this.tick(now));
    }

    private tick(now: number): void {
        this.scheduled = false;
        ++this.counts.animationFrames;
        if (this.lost) {
            return;
        }
        if (!this.view.paused && this.mode === "free") {
            this.quality.note(now - this.lastTick);
        }
        for (const elapsed of this.dueFrames(now)) {
            this.frame(elapsed, now);
        }
        this.lastTick = now;
        drawOverlays(this.view, this.probe, this.overlay);
        const nobodySees = (this.rests || this.quality.trying) && !this.view.paused && !this.filming;
        if (nobodySees && !this.hasWantedSize && !this.calm.inkMayLie) {
            this.restart();
        } else if (!this.rests) {
            this.schedule();
        }
    }

    private dueFrames(now: number): number[] {
        if (this.view.paused) {
            const wanted = this.stepWanted || !this.still;
            this.stepWanted = false;
            return wanted ? [frameTime] : [];
        }
        this.still = null;
        return this.clock.take(now, this.look["timeScale"] as number, this.mode !== "free");
    }

    private get rests(): boolean {
        if (this.view.paused) {
            return !this.stepWanted && this.still !== null;
        }
        const moving = this.mode !== "free" || this.attract.runs || this.finger.pressed || this.quality.trying;
        return this.calm.calm && !moving && this.look["rain"] === 0;
    }

    private frame(elapsed: number, now: number): void {
        const start = performance.now();
        this.passLook();
        if (this.attract.runs) {
            this.attract.next(this.size);
        }
        this.moves.forEach((touch) => this.effect.touch(...touch));
        this.moves = [];
        this.effect.frame(elapsed);
        if (this.counts.frames++ === 0) {
            performance.mark("first frame");
        }
        this.followScript();
        this.calm.see(this.effect.waterIsCalm);
        this.times.push({ between: Math.min(now - this.lastFrame, 1000), effect: performance.now() - start });
        this.lastFrame = now;
        if (this.times.length > frameTimesKept) {
            this.times.shift();
        }
        this.still = this.view.paused ? copyOf(this.canvas) : null;
        this.afterFrame.forEach((call) => call());
    }

    /** Settings reach the effect only when they changed. */
    private passLook(): void {
        this.effect.setCellsPerVertex(this.quality.cellsPerVertex(this.look["meshDetail"] as number));
        const values = valuesOf(this.look, this.effect.fields);
        if (String(values) !== this.shownValues) {
            this.followInkMode();
            this.shownValues = String(values);
            this.effect.setValues(values);
            this.calm.disturb();
        }
    }

    /** With or without ink is another start of the effect. */
    private followInkMode(): void {
        const waterOnly = this.look["waterOnly"] as boolean;
        if (waterOnly !== this.waterOnly) {
            this.waterOnly = waterOnly;
            this.beforeRestart();
            this.mode = "free";
            this.quality.start(); // the ink takes most of a frame
            this.begin();
        }
    }

    /** A script may set the ink and the background, and comes to its end. */
    private followScript(): void {
        if (this.mode !== "replaying") {
            return;
        }
        Object.assign(this.look, lookOf(this.effect.getValues(), this.effect.fields));
        this.shownValues = String(valuesOf(this.look, this.effect.fields));
        this.onLook();
        if (!this.effect.replays) {
            this.mode = "free";
            this.calm.touch(); // the script's ink lies
            this.onReplayEnd();
        }
    }
}

function copyOf(canvas: HTMLCanvasElement): HTMLCanvasElement {
    const copy = document.createElement("canvas");
    copy.width = canvas.width;
    copy.height = canvas.height;
    copy.getContext("2d")?.drawImage(canvas, 0, 0);
    return copy;
}
