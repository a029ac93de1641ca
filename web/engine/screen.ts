// Size of the canvas in pixels, and its GL context.

import type { Size } from "./size";

/** Maximum number of canvas pixels. More pixels would slow a phone down and show no more detail of the water. */
const maxPixels = 1080 * 1920;
/** Minimum side of the canvas in pixels: four velocity cells of twelve pixels each. */
const minSide = 48;

/**
 * Returns the size in pixels that the canvas must have. `part` is the ratio of rendered pixels to screen pixels along a
 * side. `pixelRatio` is the ratio of screen pixels to CSS pixels.
 */
export function pixelSize(canvas: HTMLElement, part: number, pixelRatio = window.devicePixelRatio || 1): Size {
    const { clientWidth, clientHeight } = canvas;
    const ratio = Math.max(pixelRatio, 0.1);
    const area = Math.max(clientWidth * clientHeight, 1) * ratio * ratio;
    const scale = part * ratio * Math.min(1, Math.sqrt(maxPixels / area));
    return {
        width: Math.max(minSide, Math.round(clientWidth * scale)),
        height: Math.max(minSide, Math.round(clientHeight * scale)),
    };
}

/**
 * Calls `call` after each change of the device pixel ratio, for example by zoom or a move to another screen. `signal`
 * ends the calls.
 */
export function onPixelRatio(call: () => void, signal?: AbortSignal): void {
    const unchanged = matchMedia(`(resolution: ${devicePixelRatio}dppx)`);
    const changed = () => {
        onPixelRatio(call, signal);
        call();
    };
    unchanged.addEventListener("change", changed, signal ? { once: true, signal } : { once: true });
}

/** Returns the GL context, or null if the browser has no WebGL. The effect needs no depth or stencil buffer. */
export function openContext(canvas: HTMLCanvasElement): WebGLRenderingContext | null {
    return canvas.getContext("webgl", {
        alpha: false,
        antialias: false,
        depth: false,
        stencil: false,
        powerPreference: "high-performance",
    });
}
