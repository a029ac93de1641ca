// Records and replays gestures.

import { sharedTexts } from "../../build/web/settings";
import { showBadge } from "./badges";
import type { Effect } from "./effect";
import type { Pause } from "./pause";
import { showToast } from "./toast";

export interface GestureOwner {
    /** Prepares the effect for the restart that begins a recording or replay. Throws if the GL context is lost. */
    prepareGesture(): void;
    noteInput(): void;
    /** Called when a replay has ended. */
    noteReplayEnd(): void;
}

export class Gestures {
    private hideBadge = () => {};

    constructor(
        private readonly effect: Effect,
        private readonly pause: Pause,
        private readonly owner: GestureOwner,
    ) {
        effect.onReplayEnd = (finished) => {
            this.hideBadge();
            this.owner.noteReplayEnd();
            showToast(finished ? sharedTexts.gestureEnded : sharedTexts.gestureStopped);
        };
    }

    startRecording(): void {
        this.start(() => this.effect.startRecording());
    }

    finishRecording(): void {
        this.effect.finishRecording();
    }

    /**
     * Restarts the effect and replays a gesture script. Ends a pause, and stops a running replay. Throws an Error that
     * describes the fault if the script is invalid.
     */
    replay(script: string, name: string): void {
        const fault = this.effect.readScript(script, name);
        if (fault) {
            throw new Error(fault);
        }
        const stops = this.effect.isReplaying;
        this.start(() => this.effect.startReplay());
        this.pause.isOn = false;
        const label = `${sharedTexts.playing}${name}`;
        this.hideBadge = showBadge(label, sharedTexts.stopGesture, () => this.stopReplay());
        showToast(`${stops ? "The other gesture was stopped. " : ""}${label}`);
    }

    stopReplay(): void {
        this.effect.stopReplay();
        this.owner.noteInput(); // requests the frame that lifts the finger of the gesture
    }

    private start(restart: () => void): void {
        this.owner.prepareGesture();
        restart();
    }
}
