// Starts attract mode on an idle page when it is due, and wakes the page. An idle page draws no frames, so this needs
// a timer.

/** Members of the effect that the timer uses. */
export interface AttractEffect {
    /** Milliseconds until attract mode is due. Undefined if attract mode will not start by itself. */
    readonly attractModeDelay: number | undefined;
    readonly attractModeRuns: boolean;
    /** Starts attract mode if it is due. If `busy` is true, does not start it, but restarts the idle time. */
    startAttractModeIfIdle(busy: boolean): void;
}

export interface AttractOwner {
    /** Returns true if attract mode must not start now. */
    isBusy(): boolean;
    wake(): void;
}

export class AttractTimer {
    private timer = 0;

    constructor(
        private readonly effect: AttractEffect,
        private readonly owner: AttractOwner,
    ) {}

    /** Restarts the timer. Call it when the time until attract mode has changed, for example after input. */
    restart(): void {
        clearTimeout(this.timer);
        const delay = this.effect.attractModeDelay;
        if (delay !== undefined) {
            this.timer = window.setTimeout(() => this.start(), delay);
        }
    }

    stop(): void {
        clearTimeout(this.timer);
    }

    /**
     * Starts attract mode if it is due. Call this method in each frame: during a replay or recording, each call
     * restarts the idle time.
     */
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
