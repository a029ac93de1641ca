// The effect on the page's canvas: runs its frames while something moves, and rests when nothing does.

import { Attract } from "./attract";
import { CalmWatch } from "./calm";
import { type Effect, type Size, type TouchAction } from "./effect";
import { EffectProbe } from "./effect_probe";
import { Finger } from "./finger";
import { FrameClock, frameTime } from "./frame_clock";
import { FrameTimes } from "./frame_times";
import { firstLook, lookOf, valuesOf, type Look } from "./look";
import { drawOverlays, type Overlays } from "./overlays";
import { firstPictures, pixelsOf, type Pictures } from "./pictures";
import { Quality } from "./quality";
import { onPixelRatio, pixelSize } from "./screen";
import { blobOf, Still } from "./still";
import { Strokes } from "./strokes";

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
    readonly times = new FrameTimes();
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
    private readonly strokes = new Strokes();
    private scheduled = false;
    private stepWanted = false;
    private readonly still = new Still();
    /** What is recorded or replayed is the same on every machine: all of the pixels, and every frame. */
    private mode: "free" | "recording" | "replaying" = "free";
    private shownValues = "";
    private resizeTimer = 0;
    private waterOnly = false;
    private lastTick = 0;

    constructor(
        readonly effect: Effect,
        readonly canvas: HTMLCanvasElement,
    ) {
        this.look = firstLook(effect);
        this.probe = new EffectProbe(effect);
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
        onPixelRatio(() => this.followSize());
        document.addEventListener("visibilitychange", () => {
            this.skipTime(); // also where a frame waits, which a hidden page gets only when it is seen again
            this.wake();
        });
    }

    /** From the start on the canvas' present size: calm water, no ink. */
    restart(): void {
        this.endGesture();
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
        this.needContext();
        this.view.paused = true;
        this.stepWanted = true;
        this.wake();
    }

    clearInk(): void {
        this.passStrokes(); // what came before lies no more
        this.effect.clearInk();
        this.calm.start();
        this.still.drop();
        this.wake();
    }

    touch(action: TouchAction, x: number, y: number, pressure: number): void {
        if (this.strokes.add([action, x, y, pressure], this.view.paused)) {
            this.calm.touch();
            this.quality.trying = false;
            this.wake();
        }
    }

    /** What the screen shows. */
    screenshot(): Promise<Blob | null> {
        this.needContext();
        if (this.view.paused && this.still.stands) {
            return this.still.blob();
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
        if (!this.lost) {
            this.uploadPictures();
        }
        this.still.drop();
        this.userCame();
    }

    /** Restarts, and keeps what happens from there. */
    startRecording(): void {
        this.needContext();
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
        this.needContext();
        const fault = this.effect.readScript(script, name);
        if (!fault) {
            this.enter("replaying");
            this.effect.startReplay();
            this.view.paused = false;
            this.begin();
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
        if (this.hasWantedSize) {
            this.uploadPictures(); // those that came meanwhile
            this.showAnew();
        } else {
            this.restart();
        }
    }

    /** Throws in words for the visitor where there is none. */
    needContext(): void {
        if (this.lost) {
            throw new Error("the GL context is lost: not until it is back");
        }
    }

    private begin(): void {
        this.attract.userCame(false); // its finger is not the gesture's
        this.strokes.forget();
        this.showAnew();
    }

    /** The water may be calm or not, but no ink lies. */
    private showAnew(): void {
        this.probe.watch(this.size);
        this.calm.start();
        this.still.drop();
        this.wake();
    }

    /** What is recorded is kept, and what is replayed has ended. */
    private endGesture(): void {
        this.beforeRestart();
        const replayed = this.mode === "replaying";
        this.mode = "free";
        if (replayed) {
            this.onReplayEnd();
        }
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
        this.passLook();
        this.endGesture();
        this.mode = mode;
        if (!this.hasWantedSize) {
            this.takeWantedSize();
        }
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
        this.times.skip();
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
        if (!this.view.paused && this.mode === "free" && this.hasWantedSize) {
            this.quality.note(now - this.lastTick);
        }
        for (const elapsed of this.dueFrames(now)) {
            this.frame(elapsed, now);
        }
        this.lastTick = now;
        drawOverlays(this.view, this.probe, this.overlay);
        const nobodySees = (this.rests || this.quality.trying) && !this.view.paused && !this.filming;
        const noInk = this.waterOnly || !this.calm.inkMayLie;
        if (nobodySees && noInk && !this.hasWantedSize) {
            this.restart();
        } else if (!this.rests) {
            this.schedule();
        }
    }

    private dueFrames(now: number): number[] {
        if (this.view.paused) {
            return this.dueFrameOfPause();
        }
        this.still.drop();
        return this.clock.take(now, this.look["timeScale"] as number, this.mode !== "free");
    }

    /**
     * A step, or the same moment as it looks by now. The water stands then; ink that flows flows on by one frame, since
     * the library draws and moves it at once. Of a gesture each frame is a step: it counts them.
     */
    private dueFrameOfPause(): number[] {
        const stepped = this.stepWanted;
        this.stepWanted = false;
        const shown = this.still.stands && this.hasShownLook && (this.probe.saw || !this.hasOverlay);
        if (shown && !stepped) {
            return [];
        }
        return [stepped || this.mode !== "free" ? frameTime : 0];
    }

    private get rests(): boolean {
        if (this.view.paused) {
            return !this.stepWanted && this.still.stands;
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
        this.passStrokes();
        this.draw(elapsed);
        if (this.counts.frames++ === 0) {
            performance.mark("first frame");
        }
        this.followScript();
        this.calm.see(this.effect.waterIsCalm);
        this.times.note(now, performance.now() - start);
        this.afterFrame.forEach((call) => call());
        if (this.view.paused) {
            this.still.take(this.canvas);
        }
    }

    private passStrokes(): void {
        this.strokes.take().forEach((touch) => this.effect.touch(...touch));
    }

    private get hasOverlay(): boolean {
        return this.view.velocity || this.view.density;
    }

    private draw(elapsed: number): void {
        if (this.hasOverlay) {
            this.probe.see(() => this.effect.frame(elapsed));
        } else {
            this.probe.forget();
            this.effect.frame(elapsed);
        }
    }

    private get values(): number[] {
        return valuesOf(this.look, this.effect.fields);
    }

    private get hasShownLook(): boolean {
        return String(this.values) === this.shownValues;
    }

    /** Settings reach the effect only when they changed. */
    private passLook(): void {
        this.effect.setCellsPerVertex(this.quality.cellsPerVertex(this.look["meshDetail"] as number));
        if (!this.hasShownLook) {
            this.followInkMode();
            this.shownValues = String(this.values);
            this.effect.setValues(this.values);
            this.calm.disturb();
        }
    }

    /** With or without ink is another start of the effect. */
    private followInkMode(): void {
        const waterOnly = this.look["waterOnly"] as boolean;
        if (waterOnly !== this.waterOnly) {
            this.waterOnly = waterOnly;
            this.endGesture();
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
        this.shownValues = String(this.values);
        this.onLook();
        if (!this.effect.replays) {
            this.mode = "free";
            this.calm.touch(); // the script's ink lies
            this.onReplayEnd();
        }
    }
}
