// Hides all controls, so that only the water is on the screen.

import { hidesControls } from "./links";
import { hasKeys, showToast } from "./toast";

/** Number of fingers that must touch the screen together to show the controls again. */
const fingersToShow = 3;

export class CleanView {
    private readonly root = document.documentElement;

    constructor() {
        this.readAddress();
        const show = (event: TouchEvent) => event.touches.length >= fingersToShow && this.show();
        window.addEventListener("touchstart", show, { passive: true });
    }

    /** Hides the controls if the page's address has `#clean`. */
    readAddress(): void {
        if (hidesControls(location.hash)) {
            this.root.classList.add("clean");
        }
    }

    get isOn(): boolean {
        return this.root.classList.contains("clean");
    }

    toggle(): void {
        if (this.isOn) {
            this.show();
        } else {
            showToast(hasKeys ? "H shows the controls again" : "Touch with three fingers to show the controls again");
            this.root.classList.add("clean");
        }
    }

    show(): void {
        this.root.classList.remove("clean");
    }
}
