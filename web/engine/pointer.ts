// Passes one pointer to the effect: the mouse, pen or finger that is pressed first, or a hovering mouse.

export interface PointerOwner {
    press(x: number, y: number, pressure: number): void;
    move(x: number, y: number, pressure: number): void;
    lift(how: "up" | "cancel", x: number, y: number): void;
    /** Returns the pressure for a pointer that does not measure it. */
    pressure(): number;
}

export interface PointerOptions {
    /** Signal that removes all event listeners. */
    signal?: AbortSignal;
    /** Returns true if a mouse draws without a pressed button. */
    hovers?(): boolean;
    /** Element in which a mouse hovers. Default: the canvas. */
    area?: HTMLElement;
    /** True to keep the browser's context menu. */
    keepsMenu?: boolean;
}

/** Milliseconds without movement after which the stroke of a hovering mouse ends. */
const hoverRest = 120;

export class Pointer {
    private id: number | null = null;
    /**
     * True if the stroke ended because the page was hidden, or lost the pointer or the focus. If the button is still
     * held, the next move starts another stroke.
     */
    private isAway = false;
    private isHovering = false;
    /** Last position of the pointer in canvas pixels. */
    private last: [number, number] = [0, 0];
    private restTimer = 0;

    constructor(
        private readonly canvas: HTMLCanvasElement,
        private readonly owner: PointerOwner,
        private readonly options: PointerOptions = {},
    ) {
        const passive = options.signal ? { signal: options.signal } : {};
        const area = options.area ?? canvas;
        canvas.addEventListener("pointerdown", (event) => this.down(event), passive);
        canvas.addEventListener("pointerup", (event) => this.end(event, "up"), passive);
        canvas.addEventListener("pointercancel", (event) => this.end(event, "cancel"), passive);
        canvas.addEventListener("lostpointercapture", (event) => event.pointerId === this.id && this.leave(), passive);
        area.addEventListener("pointermove", (event) => this.move(event), passive);
        area.addEventListener("pointerleave", () => this.endHover(), passive);
        if (!options.keepsMenu) {
            canvas.addEventListener("contextmenu", (event) => event.preventDefault(), passive);
        }
        document.addEventListener("visibilitychange", () => document.hidden && this.leave(), passive);
        window.addEventListener("blur", () => this.leave(), passive);
    }

    get isPressed(): boolean {
        return this.id !== null && !this.isAway;
    }

    cancel(): void {
        clearTimeout(this.restTimer);
        this.isHovering = false;
        if (this.isPressed) {
            this.owner.lift("cancel", ...this.last);
        }
        this.id = null;
    }

    /** Ends the stroke and keeps its ink. A later move with the button still held starts another stroke. */
    private leave(): void {
        this.endHover();
        if (this.isPressed) {
            this.isAway = true;
            this.owner.lift("up", ...this.last);
        }
    }

    private down(event: PointerEvent): void {
        if (this.isPressed || event.button !== 0) {
            return;
        }
        this.id = event.pointerId;
        this.canvas.setPointerCapture(event.pointerId);
        this.press(event);
    }

    private press(event: PointerEvent): void {
        this.isAway = false;
        this.owner.press(...this.position(event), this.pressureOf(event));
    }

    private move(event: PointerEvent): void {
        if (this.id === null && event.pointerType === "mouse" && event.buttons === 0 && this.options.hovers?.()) {
            this.id = event.pointerId;
            this.isHovering = true;
            this.press(event);
        }
        if (event.pointerId !== this.id) {
            return;
        }
        // If another button is held too, the browser reports the release of the first button as a move.
        if (!this.isHovering && (event.buttons & 1) === 0) {
            this.end(event, "up");
        } else if (this.isAway) {
            this.press(event);
        } else {
            this.owner.move(...this.position(event), this.pressureOf(event));
        }
        if (this.isHovering) {
            clearTimeout(this.restTimer);
            this.restTimer = window.setTimeout(() => this.endHover(), hoverRest);
        }
    }

    private end(event: PointerEvent, how: "up" | "cancel"): void {
        if (event.pointerId === this.id && !this.isHovering) {
            const wasPressed = this.isPressed;
            this.id = null;
            if (wasPressed) {
                this.owner.lift(how, ...this.position(event));
            }
        }
    }

    /** Ends the stroke of a hovering mouse. The ink of the stroke stays and fades. */
    private endHover(): void {
        if (this.isHovering) {
            clearTimeout(this.restTimer);
            this.isHovering = false;
            this.id = null;
            this.owner.lift("up", ...this.last);
        }
    }

    /** Returns the position of the pointer in canvas pixels, and keeps it in `last`. */
    private position(event: PointerEvent): [number, number] {
        const box = this.canvas.getBoundingClientRect();
        this.last = [
            ((event.clientX - box.left) / box.width) * this.canvas.width,
            ((event.clientY - box.top) / box.height) * this.canvas.height,
        ];
        return this.last;
    }

    /**
     * Returns the measured pressure, or the pressure of the settings if the device measures none. A mouse always
     * reports 0.5. A touch screen without a pressure sensor may report 0 or 1.
     */
    private pressureOf(event: PointerEvent): number {
        const measured = event.pointerType === "pen" || (event.pressure > 0 && event.pressure < 1);
        return event.pointerType !== "mouse" && measured ? event.pressure : this.owner.pressure();
    }
}
