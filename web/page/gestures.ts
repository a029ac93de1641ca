// Records and replays gestures.

import type { Effect } from "./effect";
import type { Pause } from "./pause";

export class Gestures {
    /** Called when a replay has ended. */
    onReplayEnd = () => {};

    constructor(
        private readonly effect: Effect,
        private readonly pause: Pause,
        /** Prepares the effect for the restart with which a gesture begins. Throws an Error if that is impossible. */
        private readonly prepare: () => void,
    ) {}

    startRecording(): void {
        this.start(() => this.effect.startRecording());
    }

    finishRecording(): void {
        this.effect.finishRecording();
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

    private start(restart: () => void): void {
        this.prepare();
        restart();
    }
}
