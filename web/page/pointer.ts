// The first pointer that goes down, whatever its kind, as the effect's finger.

export interface PointerOwner {
    press(x: number, y: number, pressure: number): void;
    move(x: number, y: number, pressure: number): void;
    lift(how: "up" | "cancel", x: number, y: number): void;
    /** Returns the pressure of a pointer that measures none. */
    pressure(): number;
}

export class Pointer {
    private id: number | null = null;

    constructor(
        private readonly canvas: HTMLCanvasElement,
        private readonly owner: PointerOwner,
    ) {
        canvas.addEventListener("pointerdown", (event) => this.down(event));
        canvas.addEventListener("pointermove", (event) => this.move(event));
        canvas.addEventListener("pointerup", (event) => this.end(event, "up"));
        canvas.addEventListener("pointercancel", (event) => this.end(event, "cancel"));
        canvas.addEventListener("lostpointercapture", (event) => this.end(event, "cancel"));
        canvas.addEventListener("contextmenu", (event) => event.preventDefault());
        document.addEventListener("visibilitychange", () => document.hidden && this.cancel());
        window.addEventListener("blur", () => this.cancel());
    }

    get isPressed(): boolean {
        return this.id !== null;
    }

    cancel(): void {
        if (this.id !== null) {
            this.id = null;
            this.owner.lift("cancel", 0, 0);
        }
    }

    private down(event: PointerEvent): void {
        if (this.id !== null || event.button !== 0) {
            return;
        }
        this.id = event.pointerId;
        this.canvas.setPointerCapture(event.pointerId);
        this.owner.press(...this.place(event), this.pressureOf(event));
    }

    private move(event: PointerEvent): void {
        if (event.pointerId !== this.id) {
            return;
        }
        // With another button held as well, the first button comes up in a move.
        if ((event.buttons & 1) === 0) {
            this.end(event, "up");
        } else {
            this.owner.move(...this.place(event), this.pressureOf(event));
        }
    }

    private end(event: PointerEvent, how: "up" | "cancel"): void {
        if (event.pointerId === this.id) {
            this.id = null;
            this.owner.lift(how, ...this.place(event));
        }
    }

    /** Returns the pointer's place in pixels of the canvas. */
    private place(event: PointerEvent): [number, number] {
        const box = this.canvas.getBoundingClientRect();
        return [
            ((event.clientX - box.left) / box.width) * this.canvas.width,
            ((event.clientY - box.top) / box.height) * this.canvas.height,
        ];
    }

    /** A mouse reports 0.5 for a pressed button; a finger on a screen without the sensor may report 0 or 1. */
    private pressureOf(event: PointerEvent): number {
        const measured = event.pointerType === "pen" || (event.pressure > 0 && event.pressure < 1);
        return event.pointerType !== "mouse" && measured ? event.pressure : this.owner.pressure();
    }
}
