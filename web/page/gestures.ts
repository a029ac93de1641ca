// Records and replays gestures.

import type { Effect } from "./effect";
import type { Pause } from "./pause";

export interface GestureOwner {
    /** Prepares the effect for the restart with which a gesture begins. Throws an Error if that is impossible. */
    beforeGesture(): void;
    /** Called after the restart. */
    afterRestart(): void;
}

export class Gestures {
    /** Called with the gesture script of a recording that has ended. */
    onRecording: (script: string) => void = () => {};
    /** Called when a replay has ended. */
    onReplayEnd = () => {};

    constructor(
        private readonly effect: Effect,
        private readonly pause: Pause,
        private readonly owner: GestureOwner,
    ) {}

    startRecording(): void {
        this.start(() => this.effect.startRecording());
    }

    finishRecording(): void {
        this.effect.finishRecording();
        this.takeRecording();
    }

    /** Restarts the effect, ends a pause and replays a gesture script. Returns the fault of the script, or "". */
    replay(script: string, name: string): string {
        const fault = this.effect.readScript(script, name);
        if (!fault) {
            this.start(() => this.effect.startReplay());
            this.pause.isOn = false;
        }
        return fault;
    }

    /** Reports a recording that has ended, for example by a restart. */
    takeRecording(): void {
        const script = this.effect.takeRecording();
        if (script) {
            this.onRecording(script);
        }
    }

    private start(restart: () => void): void {
        this.owner.beforeGesture();
        this.finishRecording();
        restart();
        this.owner.afterRestart();
    }
}
