// The canvas and its size in pixels.

import type { Size } from "./effect";

/** More pixels than these cost a phone its frame rate and show no more of the water. */
const mostPixels = 1080 * 1920;
/** The flow needs twelve pixels a cell, and a few cells. */
const fewest = 48;

/** `part` of the pixels that there are along a side. */
export function pixelSize(canvas: HTMLCanvasElement, part: number): Size {
    const { clientWidth, clientHeight } = canvas;
    const ratio = Math.max(window.devicePixelRatio || 1, 0.1);
    const area = Math.max(clientWidth * clientHeight, 1) * ratio * ratio;
    const scale = part * ratio * Math.min(1, Math.sqrt(mostPixels / area));
    return {
        width: Math.max(fewest, Math.round(clientWidth * scale)),
        height: Math.max(fewest, Math.round(clientHeight * scale)),
    };
}

/** Calls where the display's pixels become smaller or larger, by zooming or on another screen. */
export function onPixelRatio(call: () => void): void {
    const unchanged = matchMedia(`(resolution: ${devicePixelRatio}dppx)`);
    const changed = () => {
        onPixelRatio(call);
        call();
    };
    unchanged.addEventListener("change", changed, { once: true });
}

/** Null where the browser has no WebGL. What GL draws covers the screen, so nothing but colour is asked for. */
export function openContext(canvas: HTMLCanvasElement): WebGLRenderingContext | null {
    return canvas.getContext("webgl", {
        alpha: false,
        antialias: false,
        depth: false,
        stencil: false,
        powerPreference: "high-performance",
    });
}
