// Opens the effect, or shows the reason why the browser cannot run it.

import { Effect } from "./effect";
import { openContext } from "../engine/screen";

/** Replaces the page with an error message. */
export function showError(message: string): void {
    const paragraph = document.createElement("p");
    paragraph.className = "error";
    paragraph.setAttribute("role", "alert");
    paragraph.textContent = message;
    document.body.replaceChildren(paragraph);
}

/** Opens the effect on a canvas. If the browser cannot run it, shows an error and resolves to undefined. */
export async function openEffect(canvas: HTMLCanvasElement): Promise<Effect | undefined> {
    if (typeof WebAssembly !== "object") {
        showError("This browser has no WebAssembly. Please open the page in another browser.");
        return undefined;
    }
    const gl = openContext(canvas);
    if (!gl) {
        showError(
            "This browser has no WebGL. Please turn on hardware acceleration in the browser's settings, " +
                "or open the page in another browser.",
        );
        return undefined;
    }
    try {
        return await Effect.load(gl);
    } catch {
        showError("This browser cannot run WebAssembly with SIMD and exceptions. Please update it.");
        return undefined;
    }
}
