// Defines the custom element <velmora-water>.

import { VelmoraWater } from "./velmora_water";

declare global {
    interface HTMLElementTagNameMap {
        "velmora-water": VelmoraWater;
    }
}

// A server that renders pages has no elements. A page may load two copies of this script.
if (typeof customElements === "object" && !customElements.get("velmora-water")) {
    customElements.define("velmora-water", VelmoraWater);
}

export * from "./index";
