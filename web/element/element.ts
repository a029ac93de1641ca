// Defines the custom element <velmora-water>.

import { VelmoraWater } from "./velmora_water";

declare global {
    interface HTMLElementTagNameMap {
        "velmora-water": VelmoraWater;
    }
}

// On a server that renders pages, `customElements` does not exist. If a page loads this script twice, the element is
// already defined.
if (typeof customElements === "object" && !customElements.get("velmora-water")) {
    customElements.define("velmora-water", VelmoraWater);
}

export * from "./index";
