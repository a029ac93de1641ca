// Follows the loss and the return of the canvas's GL context, and tells the user about them.

import { sharedTexts } from "../../build/web/settings";
import { showToast } from "./toast";

/** Milliseconds from a loss on request to the request to restore the context. */
const restoreDelay = 400;

export interface ContextOwner {
    lost(): void;
    restored(): void;
}

export class ContextWatch {
    isLost = false;
    /** Number of GL contexts since the page was opened. */
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
            showToast("Graphics are back. The ink is gone; picture and settings are unchanged");
        });
    }

    /** Throws an Error with a message for the user if the context is lost. */
    need(): void {
        if (this.isLost) {
            throw new Error(sharedTexts.contextLost);
        }
    }

    /** Loses the context and restores it soon after. */
    lose(): void {
        this.need();
        const extension = this.gl.getExtension("WEBGL_lose_context");
        if (!extension) {
            showToast("This browser cannot lose the context on request: it lacks WEBGL_lose_context");
            return;
        }
        // The context may be restored only after the page has handled its loss.
        const restoreLater = () => setTimeout(() => extension.restoreContext(), restoreDelay);
        this.canvas.addEventListener("webglcontextlost", restoreLater, { once: true });
        extension.loseContext();
    }
}
