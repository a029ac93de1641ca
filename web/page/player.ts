// Runs the effect on the page's canvas. Connects its frames to canvas size, time, touches, pauses and overlays.

import { defaultSettings, type Settings } from "../../build/web/settings";
import { ArrowKeys } from "./arrow_keys";
import { AttractTimer } from "../engine/attract_timer";
import { setBoth, setPainting, type Source } from "./backgrounds";
import { ContextWatch } from "./context_watch";
import type { Effect } from "./effect";
import { FrameLoop } from "../engine/frame_loop";
import { FrameTimes } from "./frame_times";
import { Gestures } from "./gestures";
import { MovingPicture } from "./moving_picture";
import { Overlays } from "./overlays";
import { Pause } from "./pause";
import type { Picture } from "./read_picture";
import { Pointer, type PointerOwner } from "../engine/pointer";
import { SettingsSync } from "./settings_sync";
import { Stage } from "./stage";

export class Player {
    /** Settings that the page may change. The effect applies them with its next frame. */
    readonly settings: Settings = structuredClone(defaultSettings);
    readonly times = new FrameTimes();
    readonly pause: Pause;
    readonly overlays: Overlays;
    readonly gestures: Gestures;
    readonly context: ContextWatch;
    readonly stage: Stage;
    readonly loop: FrameLoop;
    /** Number of frames that the effect has drawn since the page was opened. */
    frames = 0;
    /** True while a video is being recorded. Adaptive quality then does not resize the canvas. */
    filming = false;
    /** Functions called after each frame, while the canvas still has its image. `elapsed` is in milliseconds. */
    readonly afterFrame = new Set<(elapsed: number) => void>();
    /** Called when the backgrounds have changed. */
    onBackgrounds = () => {};
    /** Called when a gesture script has changed the settings. */
    onSettings = () => {};
    /** Called when a replay has ended and the settings are those of the user again. */
    onReplayEnd = () => {};

    private readonly sync: SettingsSync;
    private readonly attractTimer: AttractTimer;
    private readonly pointer: Pointer;
    private readonly arrowKeys: ArrowKeys;
    private lastTick = 0;

    constructor(
        readonly effect: Effect,
        readonly canvas: HTMLCanvasElement,
    ) {
        this.sync = new SettingsSync(effect, this.settings);
        this.pause = new Pause(effect);
        this.overlays = new Overlays(effect, document.getElementById("overlay") as HTMLCanvasElement);
        this.stage = new Stage(effect, canvas, () => this.followSize());
        this.gestures = new Gestures(effect, this.pause, this);
        this.context = new ContextWatch(canvas, effect.gl, {
            lost: () => (this.pointer.cancel(), this.arrowKeys.release()),
            restored: () => this.regainContext(),
        });
        const finger: PointerOwner = {
            press: (...touch) => {
                this.pause.isOn = false;
                this.touch(() => effect.press(...touch));
            },
            move: (...touch) => this.touch(() => effect.move(...touch)),
            lift: (...touch) => (effect.lift(...touch), this.loop.wake()),
            pressure: () => this.settings.pressure,
        };
        this.pointer = new Pointer(canvas, finger);
        this.arrowKeys = new ArrowKeys(canvas, finger, () => this.pointer.isPressed);
        this.loop = new FrameLoop({
            canRun: () => !this.context.isLost && this.stage.hasStarted,
            skipTime: () => this.skipTime(),
            tick: (now) => this.tick(now),
        });
        this.attractTimer = new AttractTimer(effect, {
            isBusy: () => this.pause.isOn || this.context.isLost || this.isTouched,
            wake: () => this.loop.wake(),
        });
        this.pause.onChange = () => this.loop.wake();
        effect.onStart = () => this.onStart();
        effect.turnAttractMode(!matchMedia("(prefers-reduced-motion: reduce)").matches);
        effect.adaptQuality();
        effect.noteInput(); // starts the wait for attract mode
    }

    private get isTouched(): boolean {
        return this.pointer.isPressed || this.arrowKeys.isPressed;
    }

    /** True if no further frame is needed. */
    get isIdle(): boolean {
        return this.pause.isOn ? this.pause.isIdle : this.effect.isIdle;
    }

    /** Starts the effect at the wanted canvas size. Keeps the waves and drops the ink. */
    restart(): void {
        this.pushSettings();
        this.stage.restart();
    }

    /** Reports input other than a touch. Requests a frame and restarts the wait for attract mode. */
    noteInput(): void {
        this.effect.noteInput();
        this.attractTimer.restart();
        this.loop.wake();
    }

    /** Pauses and draws one frame. */
    step(): void {
        this.context.need();
        this.pause.step();
        this.loop.wake();
    }

    clearInk(): void {
        this.effect.clearInk();
        this.pause.frame.drop();
        this.loop.wake();
    }

    /** Shows the changed backgrounds, also during a pause. */
    onBackgroundsChanged(): void {
        if (!this.context.isLost) {
            this.stage.uploadBackgrounds();
        }
        this.pause.frame.drop();
        this.noteInput();
        this.onBackgrounds();
    }

    /** Replaces both backgrounds. */
    showBackgrounds(sources: [Source, Source]): void {
        setBoth(this.stage.backgrounds, sources);
        sources.forEach((source) => typeof source !== "string" && this.watchPicture(source));
        this.onBackgroundsChanged();
    }

    /** Makes the painting the first background. */
    choosePainting(name: string): void {
        setPainting(this.stage.backgrounds, name);
        this.onBackgroundsChanged();
    }

    /** Makes the player draw a frame whenever a moving picture has a new image. */
    watchPicture(picture: Picture): void {
        if (picture instanceof MovingPicture) {
            picture.onFrame = () => this.onPictureMoved(picture);
        }
    }

    /**
     * If the moving picture is the visible background, requests the upload of its new image and a frame. A pause delays
     * the upload.
     */
    private onPictureMoved(picture: MovingPicture): void {
        if (this.stage.backgrounds.sources[this.settings.secondBackground ? 1 : 0] === picture) {
            this.stage.hasMoved = true;
            this.loop.wake();
        }
    }

    /** Prepares a recording or replay, which restarts the effect. Throws if the context is lost. */
    prepareGesture(): void {
        this.context.need();
        this.pushSettings();
        this.stage.needSecond(); // the script may show the second background
        this.stage.useAllPixels();
    }

    /** Drops the frame that a pause has kept, restarts the wait for attract mode and requests a frame. */
    private onStart(): void {
        this.pause.frame.drop();
        this.attractTimer.restart();
        this.loop.wake();
    }

    private regainContext(): void {
        this.effect.regainContext();
        if (this.stage.hasWantedSize) {
            this.stage.uploadBackgrounds(); // they may have changed while the context was lost
            this.onStart();
        } else {
            this.restart();
        }
    }

    /** Passes a touch to the effect. Ignores touches during a pause: a key can begin a pause during a stroke. */
    private touch(pass: () => void): void {
        if (!this.pause.isOn) {
            pass();
            this.attractTimer.restart();
            this.loop.wake();
        }
    }

    private followSize(): void {
        if (this.stage.hasStarted && !this.context.isLost && !this.stage.hasWantedSize) {
            this.restart();
        }
    }

    private skipTime(): void {
        this.lastTick = performance.now();
        this.times.skip();
        this.effect.skipTime();
    }

    /** Draws the due frames. Returns true if another frame is needed. */
    private tick(now: number): boolean {
        this.attractTimer.startIfIdle();
        if (!this.pause.isOn) {
            this.stage.uploadMoved();
        }
        if (!this.pause.isOn && this.stage.hasWantedSize) {
            this.effect.noteInterval(now - this.lastTick);
        }
        for (const elapsed of this.dueFrames(now)) {
            this.frame(elapsed, now);
        }
        this.lastTick = now;
        this.overlays.draw();
        if (this.maySizeChange && !this.stage.hasWantedSize) {
            this.restart();
        }
        return !this.loop.isRunning && !this.isIdle;
    }

    /** True if the user would not notice a restart at another size: no ink is lost and no video is being recorded. */
    private get maySizeChange(): boolean {
        const isUnnoticed = this.isIdle || this.effect.qualityPhase === "searching";
        return isUnnoticed && !this.pause.isOn && !this.filming && !this.effect.mayShowInk;
    }

    private dueFrames(now: number): number[] {
        if (this.pause.isOn) {
            return this.pause.dueFrames(!this.sync.isCurrent || !this.overlays.isCurrent);
        }
        this.pause.frame.drop();
        this.pushSettings(); // the time scale must be set before takeDueFrames
        return this.effect.takeDueFrames(now);
    }

    private frame(elapsed: number, now: number): void {
        const start = performance.now();
        const { effect } = this;
        this.pushSettings();
        this.overlays.drawFrame(elapsed);
        if (this.frames++ === 0) {
            performance.mark("first frame");
        }
        if (effect.isReplaying) {
            this.followScript();
        }
        this.times.note(now, performance.now() - start);
        this.afterFrame.forEach((call) => call(elapsed));
        if (this.pause.isOn) {
            this.pause.frame.take(this.canvas);
        }
    }

    private pushSettings(): void {
        if (this.settings.secondBackground) {
            this.stage.needSecond();
        }
        this.sync.push();
    }

    /** Restores the settings that the script of the replay has changed. */
    noteReplayEnd(): void {
        // If the settings are not current, the user has changed them since the last frame. Then the script has not.
        if (this.sync.isCurrent) {
            this.followScript();
        }
        this.sync.restore();
        this.onSettings();
        this.onReplayEnd();
        this.noteInput(); // requests the frame that applies the restored settings
    }

    /** Shows the settings that the gesture script has changed. */
    private followScript(): void {
        if (this.sync.pull()) {
            this.onSettings();
        }
    }
}
