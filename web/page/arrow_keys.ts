// Stirs the water with the arrow keys: a held key moves a finger that touches the water.

import { isFramed } from "./command";
import type { PointerOwner } from "../engine/pointer";

/** Speed of the finger: fraction of the shorter canvas side per second. */
const speed = 0.5;
/** Maximum time step in seconds, so that the finger does not jump far in a late frame. */
const maxStep = 0.1;

const directions = new Map<string, readonly [number, number]>([
    ["ArrowLeft", [-1, 0]],
    ["ArrowRight", [1, 0]],
    ["ArrowUp", [0, -1]],
    ["ArrowDown", [0, 1]],
]);

export class ArrowKeys {
    private readonly held = new Set<string>();
    /** Position of the finger: fractions of the canvas width and height. */
    private x = 0.5;
    private y = 0.5;
    private lastTime = 0;

    /** `isBusy` returns true while a pointer touches the water. The arrow keys then do nothing. */
    constructor(
        private readonly canvas: HTMLCanvasElement,
        private readonly owner: PointerOwner,
        private readonly isBusy: () => boolean,
    ) {
        window.addEventListener("keydown", (event) => this.isForWater(event) && this.down(event));
        window.addEventListener("keyup", (event) => this.up(event.key));
        window.addEventListener("blur", () => this.release());
        window.addEventListener("focusin", () => this.release()); // the keys now act on the focused element
        canvas.addEventListener("pointerdown", () => this.release(), { capture: true });
    }

    get isPressed(): boolean {
        return this.held.size > 0;
    }

    /** Lifts the finger. */
    release(): void {
        if (this.isPressed) {
            this.held.clear();
            this.owner.lift("up", ...this.position);
        }
    }

    /**
     * Returns true if the focus is on the water, or on no element, as on a fresh page. If no element of an embedded page
     * has the focus, the arrow keys scroll the outer page.
     */
    private isForWater({ target }: KeyboardEvent): boolean {
        const isForPage = target === document.body && !isFramed && !document.querySelector("dialog[open]");
        return target === this.canvas || isForPage;
    }

    private down(event: KeyboardEvent): void {
        const { key, ctrlKey, altKey, metaKey, repeat } = event;
        if (!directions.has(key) || ctrlKey || altKey || metaKey || this.isBusy()) {
            return;
        }
        event.preventDefault(); // would scroll the page
        if (repeat) {
            return;
        }
        if (!this.isPressed) {
            this.owner.press(...this.position, this.owner.pressure());
            this.lastTime = performance.now();
            requestAnimationFrame(() => this.follow());
        }
        this.held.add(key);
    }

    private up(key: string): void {
        if (this.held.size === 1 && this.held.has(key)) {
            this.release();
        }
        this.held.delete(key);
    }

    /** Moves the finger in each frame while a key is held. */
    private follow(): void {
        if (!this.isPressed) {
            return;
        }
        const now = performance.now();
        const length = speed * Math.min((now - this.lastTime) / 1000, maxStep);
        this.lastTime = now;
        const { width, height } = this.canvas;
        const shorter = Math.min(width, height);
        for (const key of this.held) {
            const [right, down] = directions.get(key) ?? [0, 0];
            this.x = clamp(this.x + (right * length * shorter) / width);
            this.y = clamp(this.y + (down * length * shorter) / height);
        }
        this.owner.move(...this.position, this.owner.pressure());
        requestAnimationFrame(() => this.follow());
    }

    /** Position of the finger in canvas pixels. */
    private get position(): [number, number] {
        return [this.x * this.canvas.width, this.y * this.canvas.height];
    }
}

function clamp(part: number): number {
    return Math.min(Math.max(part, 0), 1);
}
