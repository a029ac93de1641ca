// Water on a canvas of a page that does not use the custom element.

import { defaultSettings, type Settings } from "../../build/web/settings";
import type { BackgroundSource } from "./background";
import type { WaterState } from "./live_water";
import { presetOf } from "./setting_values";
import { Water } from "./water";

/** Options for water on a canvas. */
export interface WaterOptions extends Partial<Omit<WaterState, "settings">> {
    /** Name of a shipped preset, or the settings as JSON. */
    preset?: string;
    /** Single settings. They have priority over the preset. */
    settings?: Partial<Settings>;
    /** Image, video or canvas under the water; it must be loaded. Default: white. */
    background?: BackgroundSource;
}

/** Water on a canvas. Dispatches the same events as the custom element. */
export class CanvasWater extends EventTarget {
    private readonly water: Water;
    private background: BackgroundSource | null;

    constructor(
        private readonly canvas: HTMLCanvasElement,
        options: WaterOptions = {},
    ) {
        super();
        this.background = options.background ?? null;
        const source = () => this.background;
        this.water = new Water({
            area: canvas,
            hoverArea: canvas,
            events: this,
            get source() {
                return source();
            },
            makeCanvas: () => canvas,
            show: () => {},
            keepsContext: true,
        });
        this.update(options);
        this.water.connect();
    }

    /** Changes the given options. */
    update({ preset, settings, background, quality, ...state }: WaterOptions): void {
        if (preset !== undefined || settings) {
            const base = preset === undefined ? this.water.state.settings : { ...defaultSettings, ...presetOf(preset) };
            this.water.setSettings({ ...base, ...settings });
        }
        if (quality) {
            this.water.setQuality(quality);
        }
        Object.assign(this.water.state, state);
        // As in the element, a vertical swipe scrolls the page unless `pointer` is "capture".
        this.canvas.style.touchAction = this.water.state.pointer === "capture" ? "none" : "pan-y";
        this.water.update();
        if (background) {
            this.background = background;
            this.water.onBackground();
        }
    }

    /** True while the water draws no frames. */
    get idle(): boolean {
        return this.water.isIdle;
    }

    /** Touches the water at a point in CSS pixels of the canvas. Resolves when the touch has ended. */
    drop(...touch: Parameters<Water["drop"]>): Promise<void> {
        return this.water.drop(...touch);
    }

    /** Draws a stroke through points in CSS pixels of the canvas. Resolves when the stroke has ended. */
    stroke(...stroke: Parameters<Water["stroke"]>): Promise<void> {
        return this.water.stroke(...stroke);
    }

    /** Removes the ink. */
    clear(): void {
        this.water.clear();
    }

    /** Replays a gesture script. Resolves when the replay has started. Rejects if the script is faulty. */
    play(gesture: string): Promise<void> {
        return this.water.play(gesture);
    }

    /** Restarts the effect, then records all touches as a gesture script. */
    startRecording(): void {
        this.water.startRecording();
    }

    /** Ends the recording. Resolves to its gesture script, or to "" if nothing was recorded. */
    stopRecording(): Promise<string> {
        return this.water.stopRecording();
    }

    /** Resolves to the current frame as a PNG image. */
    toBlob(): Promise<Blob> {
        return this.water.toBlob();
    }

    /** Ends the water. The canvas can then be used again. */
    destroy(): void {
        this.water.disconnect();
    }
}

/**
 * Creates water on a canvas. Resolves after the water's first frame, so the canvas must be visible. Rejects if the
 * browser cannot draw water, or if the preset is invalid.
 */
export async function createWater(canvas: HTMLCanvasElement, options: WaterOptions = {}): Promise<CanvasWater> {
    const water = new CanvasWater(canvas, options);
    return new Promise((resolve, reject) => {
        water.addEventListener("ready", () => resolve(water), { once: true });
        water.addEventListener("error", (event) => reject((event as ErrorEvent).error as Error), { once: true });
    });
}
