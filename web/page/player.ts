// The effect on the page's canvas: passes settings, touches and time to it, and shows what it draws.

import { defaultSettings, numbersOf, type Settings } from "../../build/web/settings";
import { AttractTimer } from "./attract_timer";
import type { Effect } from "./effect";
import { EffectProbe } from "./effect_probe";
import { FrameLoop } from "./frame_loop";
import { FrameTimes } from "./frame_times";
import { drawOverlays, type Overlays } from "./overlays";
import { PausedFrame } from "./paused_frame";
import { Pointer } from "./pointer";
import { Stage } from "./stage";

export class Player {
    /** Changed by the page; the effect has them from its next frame on. */
    readonly settings: Settings = structuredClone(defaultSettings);
    readonly view: Overlays & { paused: boolean } = { velocity: false, density: false, paused: false };
    readonly times = new FrameTimes();
    readonly pausedFrame = new PausedFrame();
    readonly probe: EffectProbe;
    readonly stage: Stage;
    readonly loop: FrameLoop;
    /** Frames of the effect since the page was opened. */
    frames = 0;
    /** GL contexts since then. */
    contexts = 1;
    /** A film's pictures keep their size. */
    filming = false;
    /** Called after each frame with its milliseconds, while the canvas still has its image. */
    readonly afterFrame = new Set<(elapsed: number) => void>();
    /** Called when a script has changed the settings. */
    onSettings = () => {};
    onReplayEnd = () => {};
    /** Called with the gesture script of a recording that has ended. */
    onRecording: (script: string) => void = () => {};

    private readonly attractTimer: AttractTimer;
    private readonly pointer: Pointer;
    private readonly overlay = document.getElementById("overlay") as HTMLCanvasElement;
    private contextLost = false;
    private stepWanted = false;
    private shownSettings = "";
    private shownWaterOnly = false;
    private lastTick = 0;

    constructor(
        readonly effect: Effect,
        readonly canvas: HTMLCanvasElement,
    ) {
        this.probe = new EffectProbe(effect);
        this.stage = new Stage(effect, canvas, () => this.followSize());
        this.pointer = new Pointer(canvas, {
            press: (...touch) => this.touch(() => effect.press(...touch)),
            move: (...touch) => this.touch(() => effect.move(...touch)),
            lift: (...touch) => (effect.lift(...touch), this.loop.wake()),
            pressure: () => this.settings.pressure,
        });
        this.loop = new FrameLoop({
            canRun: () => !this.contextLost,
            skipTime: () => this.skipTime(),
            tick: (now) => this.tick(now),
        });
        this.attractTimer = new AttractTimer(effect, {
            isBusy: () => this.view.paused || this.contextLost || this.pointer.isPressed,
            wake: () => this.loop.wake(),
        });
        effect.attractModeOn = !matchMedia("(prefers-reduced-motion: reduce)").matches;
        effect.adaptQuality();
        effect.noteInput(); // attract mode waits from now on
    }

    get isContextLost(): boolean {
        return this.contextLost;
    }

    /** Whether another frame is not needed. */
    get isResting(): boolean {
        return this.view.paused ? !this.stepWanted && this.pausedFrame.isCurrent : this.effect.isIdle;
    }

    /** Starts anew on the canvas' present size: calm water, no ink. */
    restart(): void {
        this.passSettings();
        this.stage.restart();
        this.noteStart();
    }

    /** Notes input that is no touch: the next frame is drawn, and attract mode waits anew. */
    noteInput(): void {
        this.effect.noteInput();
        this.attractTimer.restart();
        this.loop.wake();
    }

    /** Draws one frame, paused. */
    step(): void {
        this.needContext();
        this.view.paused = true;
        this.stepWanted = true;
        this.loop.wake();
    }

    clearInk(): void {
        this.effect.clearInk();
        this.pausedFrame.drop();
        this.loop.wake();
    }

    picturesChanged(): void {
        if (!this.contextLost) {
            this.stage.uploadPictures();
        }
        this.pausedFrame.drop();
        this.noteInput();
    }

    startRecording(): void {
        this.needContext();
        this.startGesture(() => this.effect.startRecording());
    }

    finishRecording(): void {
        this.effect.finishRecording();
        this.takeRecording();
    }

    /** Plays a gesture script from a fresh start; returns the fault of the script, or "". */
    replay(script: string, name: string): string {
        this.needContext();
        const fault = this.effect.readScript(script, name);
        if (!fault) {
            this.startGesture(() => this.effect.startReplay());
            this.view.paused = false;
        }
        return fault;
    }

    loseContext(): void {
        this.pointer.cancel();
        this.contextLost = true;
    }

    regainContext(): void {
        this.contextLost = false;
        ++this.contexts;
        this.effect.regainContext();
        if (this.stage.hasWantedSize) {
            this.stage.uploadPictures(); // those that came meanwhile
            this.noteStart();
        } else {
            this.restart();
        }
    }

    /** Throws in words for the visitor while the context is lost. */
    needContext(): void {
        if (this.contextLost) {
            throw new Error("the GL context is lost: not until it is back");
        }
    }

    /** The touches of a pause are dropped, and a stroke that begins in one never lays ink. */
    private touch(pass: () => void): void {
        if (!this.view.paused) {
            pass();
            this.attractTimer.restart();
            this.loop.wake();
        }
    }

    private followSize(): void {
        if (!this.contextLost && !this.stage.hasWantedSize) {
            this.restart();
        }
    }

    private startGesture(start: () => void): void {
        this.passSettings();
        this.finishRecording();
        this.stage.useAllPixels();
        start();
        this.noteStart();
    }

    /** Forgets what the page knows of an effect that has started anew. */
    private noteStart(): void {
        this.takeRecording();
        this.probe.watch(this.stage.size);
        this.pausedFrame.drop();
        this.attractTimer.restart();
        this.loop.wake();
    }

    private takeRecording(): void {
        const script = this.effect.takeRecording();
        if (script) {
            this.onRecording(script);
        }
    }

    private skipTime(): void {
        this.lastTick = performance.now();
        this.times.skip();
        this.effect.skipTime();
    }

    private tick(now: number): boolean {
        this.attractTimer.startIfIdle();
        if (!this.view.paused && this.stage.hasWantedSize) {
            this.effect.noteInterval(now - this.lastTick);
        }
        for (const elapsed of this.dueFrames(now)) {
            this.frame(elapsed, now);
        }
        this.lastTick = now;
        drawOverlays(this.view, this.effect, this.probe, this.overlay);
        if (this.maySizeChange && !this.stage.hasWantedSize) {
            this.restart();
        }
        return !this.loop.isRunning && !this.isResting;
    }

    /** A start with fewer or more pixels takes no ink away, and no picture of a film. */
    private get maySizeChange(): boolean {
        const nobodySees = this.isResting || this.effect.qualityPhase === "searching";
        return nobodySees && !this.view.paused && !this.filming && !this.effect.mayShowInk;
    }

    private dueFrames(now: number): number[] {
        if (this.view.paused) {
            return this.dueFramesOfPause();
        }
        this.pausedFrame.drop();
        this.passSettings(); // the time scale counts from now on
        return this.effect.takeDueFrames(now);
    }

    /**
     * Returns a step, or the same moment in the settings of now. The water stands then; ink that flows moves on by one
     * frame, since the library draws and moves it at once. Of a gesture each frame is a step, because it counts frames.
     */
    private dueFramesOfPause(): number[] {
        const stepped = this.stepWanted;
        this.stepWanted = false;
        const shown = this.pausedFrame.isCurrent && this.hasShownSettings && (this.probe.saw || !this.hasOverlay);
        if (shown && !stepped) {
            return [];
        }
        const { effect } = this;
        return [stepped || effect.isRecording || effect.isReplaying ? effect.frameTime : 0];
    }

    private frame(elapsed: number, now: number): void {
        const start = performance.now();
        const { effect } = this;
        this.passSettings();
        const wasReplaying = effect.isReplaying;
        this.draw(elapsed);
        if (this.frames++ === 0) {
            performance.mark("first frame");
        }
        this.takeRecording();
        if (wasReplaying) {
            this.followScript();
        }
        this.times.note(now, performance.now() - start);
        this.afterFrame.forEach((call) => call(elapsed));
        if (this.view.paused) {
            this.pausedFrame.take(this.canvas);
        }
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

    private get hasShownSettings(): boolean {
        return String(numbersOf(this.settings)) === this.shownSettings;
    }

    /** Settings reach the effect only when they have changed. */
    private passSettings(): void {
        if (this.hasShownSettings) {
            return;
        }
        if (this.settings.waterOnly !== this.shownWaterOnly) {
            this.shownWaterOnly = this.settings.waterOnly;
            this.probe.watch(this.stage.size); // the effect starts anew
        }
        this.shownSettings = String(numbersOf(this.settings));
        this.effect.settings = this.settings;
    }

    /** A script may set ink and background, and ends. */
    private followScript(): void {
        Object.assign(this.settings, this.effect.settings);
        this.shownSettings = String(numbersOf(this.settings));
        this.onSettings();
        if (!this.effect.isReplaying) {
            this.onReplayEnd();
        }
    }
}
