// Sees at the library's GL calls what it draws with, for the overlays.

import type { Effect, Size } from "./effect";

/** A velocity texture as the library uploaded it, RGBA8, the bottom row first. */
export interface VelocityField {
    columns: number;
    rows: number;
    bytes: Uint8Array;
}

const noField: VelocityField = { columns: 0, rows: 0, bytes: new Uint8Array() };

export class EffectProbe {
    /** Whether the last frame was seen; the velocities are that one's. */
    saw = false;
    velocity = noField;
    private ink: WebGLTexture | null = null;
    private screen: Size = { width: 0, height: 0 };

    constructor(private readonly effect: Effect) {}

    /** Forgets all, for a new start on a screen of that size. */
    watch(screen: Size): void {
        this.screen = screen;
        this.forget();
    }

    forget(): void {
        this.saw = false;
        this.velocity = noField;
        this.ink = null;
    }

    /** Sees what is drawn with meanwhile. */
    see(draw: () => void): void {
        this.saw = true;
        const { gl } = this.effect;
        const { drawElements, texImage2D } = gl;
        gl.drawElements = (...call) => {
            this.ink = this.textureOfUnit(gl.TEXTURE2); // the water is drawn over the picture with it
            drawElements.apply(gl, call);
        };
        gl.texImage2D = (...call: unknown[]) => {
            this.seeUpload(call);
            Reflect.apply(texImage2D, gl, call);
        };
        try {
            draw();
        } finally {
            Object.assign(gl, { drawElements, texImage2D });
        }
    }

    /** The ink's texture as bytes, bottom row first; null where no ink is drawn. */
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

    private seeUpload(call: unknown[]): void {
        const [, , , width, height, , , , bytes] = call;
        const side = this.effect.pixelsPerCell;
        const columns = Math.floor(this.screen.width / side);
        const rows = Math.floor(this.screen.height / side);
        const ofCells = width === columns && height === rows;
        if (bytes instanceof Uint8Array && ofCells) {
            this.velocity = { columns, rows, bytes: bytes.slice(0, columns * rows * 4) };
        }
    }
}
