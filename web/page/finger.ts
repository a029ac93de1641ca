// The one finger of the effect: the first pointer that goes down, whatever its kind.

import { TouchAction } from "./effect";

export interface FingerOwner {
    touch(action: TouchAction, x: number, y: number, pressure: number): void;
    /** Of a pointer that measures none. */
    pressure(): number;
}

export class Finger {
    private pointer: number | null = null;

    constructor(
        private readonly canvas: HTMLCanvasElement,
        private readonly owner: FingerOwner,
    ) {
        canvas.addEventListener("pointerdown", (event) => this.down(event));
        canvas.addEventListener("pointermove", (event) => this.move(event));
        canvas.addEventListener("pointerup", (event) => this.end(event, TouchAction.up));
        canvas.addEventListener("pointercancel", (event) => this.end(event, TouchAction.cancel));
        canvas.addEventListener("lostpointercapture", (event) => this.end(event, TouchAction.cancel));
        canvas.addEventListener("contextmenu", (event) => event.preventDefault());
        document.addEventListener("visibilitychange", () => document.hidden && this.cancel());
        window.addEventListener("blur", () => this.cancel());
    }

    get pressed(): boolean {
        return this.pointer !== null;
    }

    cancel(): void {
        if (this.pointer !== null) {
            this.pointer = null;
            this.owner.touch(TouchAction.cancel, 0, 0, 0);
        }
    }

    private down(event: PointerEvent): void {
        if (this.pointer !== null || event.button !== 0) {
            return;
        }
        this.pointer = event.pointerId;
        this.canvas.setPointerCapture(event.pointerId);
        this.pass(event, TouchAction.down);
    }

    private move(event: PointerEvent): void {
        if (event.pointerId !== this.pointer) {
            return;
        }
        // With another button held as well, the first one comes up in a move.
        if ((event.buttons & 1) === 0) {
            this.end(event, TouchAction.up);
            return;
        }
        const box = this.canvas.getBoundingClientRect();
        const inside =
            event.clientX >= box.left &&
            event.clientY >= box.top &&
            event.clientX < box.right &&
            event.clientY < box.bottom;
        if (inside) {
            this.pass(event, TouchAction.move);
        } else {
            this.end(event, TouchAction.cancel);
        }
    }

    private end(event: PointerEvent, action: TouchAction): void {
        if (event.pointerId === this.pointer) {
            this.pointer = null;
            this.pass(event, action);
        }
    }

    private pass(event: PointerEvent, action: TouchAction): void {
        const box = this.canvas.getBoundingClientRect();
        const x = ((event.clientX - box.left) / box.width) * this.canvas.width;
        const y = ((event.clientY - box.top) / box.height) * this.canvas.height;
        // A mouse reports 0.5 for a pressed button; a finger on a screen without the sensor may report 0 or 1.
        const measured = event.pointerType === "pen" || (event.pressure > 0 && event.pressure < 1);
        const down = action === TouchAction.down || action === TouchAction.move;
        const pressure = event.pointerType !== "mouse" && measured ? event.pressure : this.owner.pressure();
        this.owner.touch(action, x, y, down ? pressure : 0);
    }
}
