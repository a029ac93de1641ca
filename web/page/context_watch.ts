// Watches for a loss of the canvas's GL context and for its restoration, and tells the user about both.

import { sharedTexts } from "../../build/web/settings";
import { showToast } from "./toast";

/** Time in milliseconds from a loss that `lose` causes to the restoration of the context. */
const restoreDelay = 400;

export interface ContextOwner {
    lost(): void;
    restored(): void;
}

export class ContextWatch {
    isLost = false;
    /** Number of GL contexts since the page was opened: 1, and 1 more for each restoration. */
    count = 1;

    constructor(
        private readonly canvas: HTMLCanvasElement,
        private readonly gl: WebGLRenderingContext,
        owner: ContextOwner,
    ) {
        canvas.addEventListener("webglcontextlost", (event) => {
            event.preventDefault(); // otherwise the browser does not restore the context
            this.isLost = true;
            owner.lost();
            showToast(sharedTexts.contextLost);
        });
        canvas.addEventListener("webglcontextrestored", () => {
            this.isLost = false;
            ++this.count;
            owner.restored();
            showToast("The graphics are back. The ink is lost; pictures and settings are unchanged");
        });
    }

    /** Throws an Error with a message for the user if the context is lost. */
    need(): void {
        if (this.isLost) {
            throw new Error(sharedTexts.contextLost);
        }
    }

    /** Loses the context on purpose and restores it after `restoreDelay`. */
    lose(): void {
        this.need();
        const extension = this.gl.getExtension("WEBGL_lose_context");
        if (!extension) {
            throw new Error("This browser cannot lose the context on request: it lacks the extension WEBGL_lose_context");
        }
        // restoreContext fails until the page has handled the event webglcontextlost.
        const restoreLater = () => setTimeout(() => extension.restoreContext(), restoreDelay);
        this.canvas.addEventListener("webglcontextlost", restoreLater, { once: true });
        extension.loseContext();
    }
}
