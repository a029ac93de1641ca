// Runs the effect on the page's canvas. Passes settings, touches and time to it, and draws its frames and overlays.

import { defaultSettings, numbersOf, type Settings } from "../../build/web/settings";
import { AttractTimer } from "./attract_timer";
import { setPainting } from "./backgrounds";
import type { Effect } from "./effect";
import { EffectProbe } from "./effect_probe";
import { FrameLoop } from "./frame_loop";
import { FrameTimes } from "./frame_times";
import { drawOverlays, type Overlays } from "./overlays";
import { PausedFrame } from "./paused_frame";
import { Pointer } from "./pointer";
import { Stage } from "./stage";

export class Player {
    /** Settings that the page may change. The effect applies them with its next frame. */
    readonly settings: Settings = structuredClone(defaultSettings);
    readonly view: Overlays & { paused: boolean } = { velocity: false, density: false, paused: false };
    readonly times = new FrameTimes();
    readonly pausedFrame = new PausedFrame();
    readonly probe: EffectProbe;
    readonly stage: Stage;
    readonly loop: FrameLoop;
    /** Number of frames of the effect since the page was opened. */
    frames = 0;
    /** Number of GL contexts since the page was opened. */
    contexts = 1;
    /** True during a film. The canvas then keeps its size. */
    filming = false;
    /** Functions to call after each frame with its duration in milliseconds, while the canvas still has its image. */
    readonly afterFrame = new Set<(elapsed: number) => void>();
    /** Called when a script has changed the settings. */
    onSettings = () => {};
    /** Called when a replay has ended. */
    onReplayEnd = () => {};
    /** Called with the gesture script of a recording that has ended. */
    onRecording: (script: string) => void = () => {};

    private readonly attractTimer: AttractTimer;
    private readonly pointer: Pointer;
    private readonly overlay = document.getElementById("overlay") as HTMLCanvasElement;
    private contextLost = false;
    private stepWanted = false;
    private passedSettings = "";
    private passedWaterOnly = false;
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
        effect.noteInput(); // starts the wait for attract mode
    }

    get isContextLost(): boolean {
        return this.contextLost;
    }

    /** True if no further frame is needed. */
    get isIdle(): boolean {
        return this.view.paused ? !this.stepWanted && this.pausedFrame.isCurrent : this.effect.isIdle;
    }

    /** Restarts the effect at the wanted canvas size, with flat water and no ink. */
    restart(): void {
        this.passSettings();
        this.stage.restart();
        this.afterRestart();
    }

    /** Reports input other than a touch. Requests a frame and restarts the wait for attract mode. */
    noteInput(): void {
        this.effect.noteInput();
        this.attractTimer.restart();
        this.loop.wake();
    }

    /** Pauses and draws one frame. */
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

    /** Shows changed backgrounds. */
    onBackgroundsChanged(): void {
        if (!this.contextLost) {
            this.stage.uploadBackgrounds();
        }
        this.pausedFrame.drop();
        this.noteInput();
    }

    /** Makes the painting the background, and shows it. */
    showPainting(name: string): void {
        setPainting(this.stage.backgrounds, name);
        this.settings.secondBackground = false;
        this.onBackgroundsChanged();
        this.onSettings();
    }

    startRecording(): void {
        this.needContext();
        this.startGesture(() => this.effect.startRecording());
    }

    finishRecording(): void {
        this.effect.finishRecording();
        this.takeRecording();
    }

    /** Restarts the effect and replays a gesture script. Returns the fault of the script, or "". */
    replay(script: string, name: string): string {
        this.needContext();
        const fault = this.effect.readScript(script, name);
        if (!fault) {
            this.stage.needSecond(); // the script may show it
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
            this.stage.uploadBackgrounds(); // they may have changed meanwhile
            this.afterRestart();
        } else {
            this.restart();
        }
    }

    /** Throws an Error with a message for the user if the context is lost. */
    needContext(): void {
        if (this.contextLost) {
            throw new Error("the GL context is lost: try again after it is restored");
        }
    }

    /** Passes a touch to the effect. Drops touches during a pause, so a stroke that begins in a pause draws no ink. */
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
        this.afterRestart();
    }

    /** Resets the state that belongs to the effect's last run. */
    private afterRestart(): void {
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
        return !this.loop.isRunning && !this.isIdle;
    }

    /** True if a restart at another size goes unnoticed: it removes no ink and interrupts no film. */
    private get maySizeChange(): boolean {
        const isUnnoticed = this.isIdle || this.effect.qualityPhase === "searching";
        return isUnnoticed && !this.view.paused && !this.filming && !this.effect.mayShowInk;
    }

    private dueFrames(now: number): number[] {
        if (this.view.paused) {
            return this.dueFramesOfPause();
        }
        this.pausedFrame.drop();
        this.passSettings(); // the time scale must be set before takeDueFrames
        return this.effect.takeDueFrames(now);
    }

    /**
     * Returns the duration of the frame that a pause must draw: a whole frame for a step, 0 to show changed settings.
     * The water does not move in 0 ms. Ink does move by one frame, because the library moves ink whenever it draws.
     * During a recording or replay every frame is a step, because gestures count frames.
     */
    private dueFramesOfPause(): number[] {
        const stepped = this.stepWanted;
        this.stepWanted = false;
        const shown = this.pausedFrame.isCurrent && this.areSettingsPassed && (this.probe.hasFrame || !this.hasOverlay);
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
            this.probe.observe(() => this.effect.frame(elapsed));
        } else {
            this.probe.forget();
            this.effect.frame(elapsed);
        }
    }

    private get areSettingsPassed(): boolean {
        return String(numbersOf(this.settings)) === this.passedSettings;
    }

    /** Settings reach the effect only when they have changed. */
    private passSettings(): void {
        if (this.areSettingsPassed) {
            return;
        }
        if (this.settings.secondBackground) {
            this.stage.needSecond();
        }
        if (this.settings.waterOnly !== this.passedWaterOnly) {
            this.passedWaterOnly = this.settings.waterOnly;
            this.probe.watch(this.stage.size); // the effect restarts
        }
        this.passedSettings = String(numbersOf(this.settings));
        this.effect.settings = this.settings;
    }

    /** Copies the settings that a script has changed, and reports the end of the replay. */
    private followScript(): void {
        Object.assign(this.settings, this.effect.settings);
        this.passedSettings = String(numbersOf(this.settings));
        this.onSettings();
        if (!this.effect.isReplaying) {
            this.onReplayEnd();
        }
    }
}
