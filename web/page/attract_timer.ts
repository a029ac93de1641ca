// Wakes an idle page when attract mode is due. An idle page draws no frames that could start it.

import type { Effect } from "./effect";

export interface AttractOwner {
    /** Returns true if attract mode must not start now. */
    isBusy(): boolean;
    wake(): void;
}

export class AttractTimer {
    private timer = 0;

    constructor(
        private readonly effect: Effect,
        private readonly owner: AttractOwner,
    ) {}

    /** Starts the wait again, for example after input. */
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
