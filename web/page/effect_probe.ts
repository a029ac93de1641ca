// Observes the library's GL calls and keeps the velocities and the ink texture for the overlays.

import type { Effect, Size } from "./effect";

/** Velocity texture as uploaded by the library: RGBA8, bottom row first. */
export interface VelocityField {
    columns: number;
    rows: number;
    bytes: Uint8Array;
}

const noField: VelocityField = { columns: 0, rows: 0, bytes: new Uint8Array() };

export class EffectProbe {
    /** True if the last frame was observed. */
    hasFrame = false;
    velocity = noField;
    private ink: WebGLTexture | null = null;
    private screen: Size = { width: 0, height: 0 };

    constructor(private readonly effect: Effect) {}

    /** Clears the state for an effect that has restarted on a screen of the given size. */
    watch(screen: Size): void {
        this.screen = screen;
        this.forget();
    }

    forget(): void {
        this.hasFrame = false;
        this.velocity = noField;
        this.ink = null;
    }

    /** Calls `draw` and observes its GL calls. */
    observe(draw: () => void): void {
        this.hasFrame = true;
        const { gl } = this.effect;
        const { drawElements, texImage2D } = gl;
        gl.drawElements = (...call) => {
            this.ink = this.textureOfUnit(gl.TEXTURE2); // the unit of the ink in the water's draw call
            drawElements.apply(gl, call);
        };
        gl.texImage2D = (...call: unknown[]) => {
            this.observeUpload(call);
            Reflect.apply(texImage2D, gl, call);
        };
        try {
            draw();
        } finally {
            Object.assign(gl, { drawElements, texImage2D });
        }
    }

    /** Returns the texels of the ink texture, bottom row first, or null if the effect draws no ink. */
    inkBytes(): (Size & { bytes: Uint8Array }) | null {
        const { gl, inkSides } = this.effect;
        if (!this.ink) {
            return null;
        }
        const [shorter, longer] = inkSides;
        const [width, height] = this.screen.width > this.screen.height ? [longer, shorter] : [shorter, longer];
        const bytes = new Uint8Array(width * height * 4);
        const framebuffer = gl.createFramebuffer();
        gl.bindFramebuffer(gl.FRAMEBUFFER, framebuffer);
        gl.framebufferTexture2D(gl.FRAMEBUFFER, gl.COLOR_ATTACHMENT0, gl.TEXTURE_2D, this.ink, 0);
        gl.readPixels(0, 0, width, height, gl.RGBA, gl.UNSIGNED_BYTE, bytes);
        gl.bindFramebuffer(gl.FRAMEBUFFER, null);
        gl.deleteFramebuffer(framebuffer);
        return { width, height, bytes };
    }

    private textureOfUnit(unit: number): WebGLTexture | null {
        const { gl } = this.effect;
        const active: number = gl.getParameter(gl.ACTIVE_TEXTURE);
        gl.activeTexture(unit);
        const texture = gl.getParameter(gl.TEXTURE_BINDING_2D) as WebGLTexture | null;
        gl.activeTexture(active);
        return texture;
    }

    private observeUpload(call: unknown[]): void {
        const [, , , width, height, , , , bytes] = call;
        const side = this.effect.pixelsPerCell;
        const columns = Math.floor(this.screen.width / side);
        const rows = Math.floor(this.screen.height / side);
        const isVelocity = width === columns && height === rows;
        if (bytes instanceof Uint8Array && isVelocity) {
            this.velocity = { columns, rows, bytes: bytes.slice(0, columns * rows * 4) };
        }
    }
}
