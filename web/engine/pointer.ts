// Passes one pointer to the effect: the first mouse, pen or finger that is pressed.

export interface PointerOwner {
    press(x: number, y: number, pressure: number): void;
    move(x: number, y: number, pressure: number): void;
    lift(how: "up" | "cancel", x: number, y: number): void;
    /** Returns the pressure for a pointer that does not measure it. */
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
        this.owner.press(...this.position(event), this.pressureOf(event));
    }

    private move(event: PointerEvent): void {
        if (event.pointerId !== this.id) {
            return;
        }
        // If another button is held too, the browser reports the release of the first button as a move.
        if ((event.buttons & 1) === 0) {
            this.end(event, "up");
        } else {
            this.owner.move(...this.position(event), this.pressureOf(event));
        }
    }

    private end(event: PointerEvent, how: "up" | "cancel"): void {
        if (event.pointerId === this.id) {
            this.id = null;
            this.owner.lift(how, ...this.position(event));
        }
    }

    /** Returns the position of the pointer in canvas pixels. */
    private position(event: PointerEvent): [number, number] {
        const box = this.canvas.getBoundingClientRect();
        return [
            ((event.clientX - box.left) / box.width) * this.canvas.width,
            ((event.clientY - box.top) / box.height) * this.canvas.height,
        ];
    }

    /**
     * Returns the measured pressure, or the pressure of the settings. A mouse always reports 0.5. A touch screen without
     * a sensor may report 0 or 1.
     */
    private pressureOf(event: PointerEvent): number {
        const measured = event.pointerType === "pen" || (event.pressure > 0 && event.pressure < 1);
        return event.pointerType !== "mouse" && measured ? event.pressure : this.owner.pressure();
    }
}
