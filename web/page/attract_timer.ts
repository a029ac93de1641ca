// Wakes an idle page when attract mode is due, since it has no frames in which attract mode could start.

import type { Effect } from "./effect";

export interface AttractOwner {
    /** Whether the page holds attract mode back. */
    isBusy(): boolean;
    wake(): void;
}

export class AttractTimer {
    private timer = 0;

    constructor(
        private readonly effect: Effect,
        private readonly owner: AttractOwner,
    ) {}

    /** Waits anew, after input for instance. */
    restart(): void {
        clearTimeout(this.timer);
        const delay = this.effect.attractModeDelay;
        if (delay !== undefined) {
            this.timer = window.setTimeout(() => this.start(), delay);
        }
    }

    /** Starts attract mode if it is due. Call it in each frame, so that replays and recordings hold it back. */
    startIfIdle(): void {
        this.effect.startAttractModeIfIdle(this.owner.isBusy() || document.hidden);
    }

    private start(): void {
        this.startIfIdle();
        if (this.effect.attractModeRuns) {
            this.owner.wake();
        } else {
            this.restart();
        }
    }
}
