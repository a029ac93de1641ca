// What the finger does between two frames.

import { TouchAction } from "./effect";

export type Touch = [action: TouchAction, x: number, y: number, pressure: number];

export class Strokes {
    private touches: Touch[] = [];
    /** A finger is down that the effect knows of. */
    private runs = false;

    /** Returns whether it counts: a pause takes nothing but the end of a stroke, and what began in it never becomes one. */
    add(touch: Touch, paused: boolean): boolean {
        const [action] = touch;
        const goesOn = action === TouchAction.down || action === TouchAction.move;
        if ((goesOn && paused) || (action !== TouchAction.down && !this.runs)) {
            return false;
        }
        this.runs = goesOn;
        // Each event once, with its latest place: older places would make the finger count as slower.
        if (action === TouchAction.move && this.touches.at(-1)?.[0] === TouchAction.move) {
            this.touches.pop();
        }
        this.touches.push(touch);
        return true;
    }

    /** All since the last call. */
    take(): Touch[] {
        const taken = this.touches;
        this.touches = [];
        return taken;
    }

    /** For a new start of the effect: what is left of a stroke is none. */
    forget(): void {
        this.touches = [];
        this.runs = false;
    }
}
