// Sees at the library's GL calls what it draws with, for the overlays.

import type { Size } from "./effect";

/** A velocity texture as the library uploaded it, RGBA8, the bottom row first. */
export interface VelocityField {
    columns: number;
    rows: number;
    bytes: Uint8Array;
}

export class EffectProbe {
    velocity: VelocityField = { columns: 0, rows: 0, bytes: new Uint8Array() };
    /** The texture with the ink of the last frame. */
    ink: WebGLTexture | null = null;
    private screen: Size = { width: 0, height: 0 };
    private unit = 0;
    private readonly units: (WebGLTexture | null)[] = [];

    /** From now on calls of this context pass here first. */
    constructor(
        private readonly gl: WebGLRenderingContext,
        private readonly pixelsPerCell: number,
    ) {
        const { activeTexture, bindTexture, drawElements, texImage2D } = gl;
        gl.activeTexture = (unit) => {
            this.unit = unit - gl.TEXTURE0;
            activeTexture.call(gl, unit);
        };
        gl.bindTexture = (target, texture) => {
            this.units[this.unit] = texture;
            bindTexture.call(gl, target, texture);
        };
        gl.drawElements = (...call) => {
            this.ink = this.units[2] ?? null; // the water is drawn over the picture with it
            drawElements.apply(gl, call);
        };
        gl.texImage2D = (...call: unknown[]) => {
            this.seeUpload(call);
            Reflect.apply(texImage2D, gl, call);
        };
    }

    /** Forgets all, for a new start on a screen of that size. */
    watch(screen: Size): void {
        this.screen = screen;
        this.velocity = { columns: 0, rows: 0, bytes: new Uint8Array() };
        this.ink = null;
    }

    /** The ink's texture as bytes, bottom row first; null where no ink is drawn. */
    inkBytes(): (Size & { bytes: Uint8Array }) | null {
        const { gl } = this;
        if (!this.ink) {
            return null;
        }
        const [width, height] = this.screen.width > this.screen.height ? [1024, 512] : [512, 1024];
        const bytes = new Uint8Array(width * height * 4);
        const framebuffer = gl.createFramebuffer();
        gl.bindFramebuffer(gl.FRAMEBUFFER, framebuffer);
        gl.framebufferTexture2D(gl.FRAMEBUFFER, gl.COLOR_ATTACHMENT0, gl.TEXTURE_2D, this.ink, 0);
        gl.readPixels(0, 0, width, height, gl.RGBA, gl.UNSIGNED_BYTE, bytes);
        gl.bindFramebuffer(gl.FRAMEBUFFER, null);
        gl.deleteFramebuffer(framebuffer);
        return { width, height, bytes };
    }

    private seeUpload(call: unknown[]): void {
        const [, , , columns, rows, , , , pixels] = call as number[];
        const cells = { columns: this.screen.width / this.pixelsPerCell, rows: this.screen.height / this.pixelsPerCell };
        const bytes = pixels as unknown;
        if (bytes instanceof Uint8Array && columns === Math.floor(cells.columns) && rows === Math.floor(cells.rows)) {
            this.velocity = { columns, rows, bytes: bytes.slice(0, columns * rows * 4) };
        }
    }
}
