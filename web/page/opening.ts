// What the page needs of its browser, and a readable sentence where it is missing.

import { Effect } from "./effect";
import { openContext } from "./screen";

export function sorry(words: string): void {
    const sentence = document.createElement("p");
    sentence.className = "sorry";
    sentence.setAttribute("role", "alert");
    sentence.textContent = words;
    document.body.replaceChildren(sentence);
}

/** Undefined where the browser cannot show the effect; the page then says why. */
export async function openEffect(canvas: HTMLCanvasElement): Promise<Effect | undefined> {
    if (typeof WebAssembly !== "object") {
        sorry("The water is drawn by a WebAssembly program, and this browser runs none: please open the page in another.");
        return undefined;
    }
    const gl = openContext(canvas);
    if (!gl) {
        sorry(
            "The water is drawn with WebGL, and this browser has none to give: please turn on hardware acceleration, " +
                "or open the page in another browser.",
        );
        return undefined;
    }
    try {
        return await Effect.load(gl);
    } catch {
        sorry("The water's program does not run in this browser: it needs WebAssembly with vectors, as current browsers have it.");
        return undefined;
    }
}
