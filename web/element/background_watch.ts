// Finds the background among the children of the custom element, and reports changes of the background.

import type { BackgroundSource } from "./background";

const sourceNames = "img, video, canvas";
/** Attributes of a child that change its image or the box in which it is drawn. */
const watchedAttributes = ["src", "srcset", "sizes", "media", "class", "style", "width", "height", "slot"];
/** Events of a child that change its image. These events do not bubble, so the listeners use the capture phase. */
const watchedEvents = ["load", "error", "loadeddata", "resize", "seeked", "emptied", "play"];

export class BackgroundWatch {
    private readonly observer: MutationObserver;
    private readonly onEvent = ({ target }: Event) => this.isBelowWater(target as Node) && this.onChange();

    /**
     * `host` is the custom element. `fallback` is the background if `host` has no child that is an image, video or
     * canvas.
     */
    constructor(
        private readonly host: HTMLElement,
        private readonly fallback: HTMLImageElement,
        private readonly onChange: () => void,
    ) {
        this.observer = new MutationObserver((records) => {
            if (records.some((record) => this.concernsBackground(record))) {
                this.onChange();
            }
        });
    }

    start(): void {
        this.observer.observe(this.host, { childList: true, subtree: true, attributeFilter: watchedAttributes });
        for (const type of watchedEvents) {
            this.host.addEventListener(type, this.onEvent, true);
            this.fallback.addEventListener(type, this.onEvent);
        }
    }

    stop(): void {
        this.observer.disconnect();
        for (const type of watchedEvents) {
            this.host.removeEventListener(type, this.onEvent, true);
            this.fallback.removeEventListener(type, this.onEvent);
        }
    }

    /**
     * The first child image, video or canvas that is not in the slot "over". If there is none, the image of the
     * attribute `src`, or null.
     */
    get source(): BackgroundSource | null {
        for (const child of this.host.children) {
            const found = child.matches(sourceNames) ? child : child.querySelector(sourceNames);
            if (found && !child.slot) {
                return found as BackgroundSource;
            }
        }
        return this.fallback.hasAttribute("src") ? this.fallback : null;
    }

    /** Returns true if a node is below the water: it is not the custom element itself, and not in a named slot. */
    private isBelowWater(node: Node): boolean {
        return node !== this.host && ![...this.host.children].some((child) => child.slot && child.contains(node));
    }

    /** Returns false for changes that occur often but leave the background as it is, for example an animated overlay. */
    private concernsBackground({ target, attributeName }: MutationRecord): boolean {
        return target === this.host
            ? attributeName === null || attributeName === "class"
            : attributeName === "slot" || this.isBelowWater(target);
    }

    /** Text that describes the background, for assistive technology such as screen readers. */
    get label(): string {
        const { source } = this;
        return source?.getAttribute("aria-label") ?? source?.getAttribute("alt") ?? "";
    }
}
