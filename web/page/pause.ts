// Pauses the effect, draws single steps during a pause, and keeps the frame that the pause shows.

import { sharedTexts } from "../../build/web/settings";
import { showBadge } from "./badges";
import type { Effect } from "./effect";
import { PausedFrame } from "./paused_frame";

export class Pause {
    readonly frame = new PausedFrame();
    /** Called when a pause has begun or ended. */
    onChange = () => {};
    private hideBadge: (() => void) | null = null;
    private stepWanted = false;

    constructor(private readonly effect: Effect) {}

    get isOn(): boolean {
        return this.hideBadge !== null;
    }
    set isOn(on: boolean) {
        if (on === this.isOn) {
            return;
        }
        this.hideBadge?.();
        this.hideBadge = on ? showBadge(sharedTexts.paused, sharedTexts.resume, () => (this.isOn = false), true) : null;
        this.onChange();
    }

    /** True if the pause needs no further frame. */
    get isIdle(): boolean {
        return !this.stepWanted && this.frame.isCurrent;
    }

    /** Pauses and requests one frame. */
    step(): void {
        this.isOn = true;
        this.stepWanted = true;
    }

    /**
     * Returns the duration in milliseconds of the frame that the pause must draw, or an empty array if no frame is
     * needed. A single step lasts one frame of the effect. `changed` is true if settings or overlays have changed; the
     * frame that shows the change lasts 0 ms, so that the water does not move. The ink still moves by one frame,
     * because the library moves the ink in every drawn frame. During a recording or replay every frame is a single
     * step, because gestures count frames.
     */
    dueFrames(changed: boolean): number[] {
        const { effect } = this;
        const stepped = this.stepWanted;
        this.stepWanted = false;
        if (!stepped && !changed && this.frame.isCurrent) {
            return [];
        }
        return [stepped || effect.isRecording || effect.isReplaying ? effect.frameTime : 0];
    }
}
