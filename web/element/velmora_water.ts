// The custom element <velmora-water>.

import type { Settings } from "../../build/web/settings";
import { settingsOf, stateAttributes, stateOf } from "./attributes";
import { BackgroundWatch } from "./background_watch";
import type { Point, StrokeOptions } from "./finger_queue";
import type { PointerMode, WaterState } from "./live_water";
import { attributeOf, settingNames } from "./setting_values";
import { applyStyle } from "./style";
import { Water, type DropOptions } from "./water";

/** On a server that renders pages, HTMLElement does not exist. The empty class lets such a server import this file. */
const ElementClass = globalThis.HTMLElement ?? (class {} as unknown as typeof HTMLElement);

/** Attributes that the element copies to its internal img element, which loads `src`. */
const imageAttributes = ["src", "srcset", "sizes", "alt", "crossorigin", "loading"];
/** Names of the boolean properties. Each reflects a boolean attribute. */
const switches = ["attract", "paused", "waterOnly"];

/** Properties that reflect the attributes of single settings. A property is null if the attribute is missing. */
type SettingProperties = { [Name in Exclude<keyof Settings, "ink" | "secondBackground" | "waterOnly">]: number | null };

/** Properties of the element. Each reflects an attribute, whose name is the property's name in kebab-case. */
export interface VelmoraWater extends SettingProperties {
    /** Name of a shipped preset, or the settings as JSON. */
    preset: string | null;
    /** CSS colour of the ink. */
    ink: string | null;
    /** True if touches make only waves and draw no ink. */
    waterOnly: boolean;
    /** Pointer actions that count as a touch of the water. Null means `drag`. */
    pointer: PointerMode | null;
    /** True if attract mode draws strokes while nobody touches the water. */
    attract: boolean;
    /** True if the water stands still and shows its last frame. */
    paused: boolean;
    /** `auto` draws less detail on a slow machine, `full` never does. Null has the same effect as `auto`. */
    quality: WaterState["quality"] | null;
    /** Rendered pixels per CSS pixel. Null selects the screen's ratio. */
    pixelRatio: number | null;
    /** Address of the background image, if no child is the background. */
    src: string | null;
    /** Candidate images for `src`, as in the property of the same name of an img element. */
    srcset: string | null;
    /** Sizes that `srcset` refers to, as in the property of the same name of an img element. */
    sizes: string | null;
    /** Text that describes the image of `src` for assistive technology such as screen readers. */
    alt: string | null;
    /** CORS mode of the request for `src`: `anonymous` or `use-credentials`. */
    crossorigin: string | null;
    /** `lazy` loads `src` when the element comes near the viewport. */
    loading: string | null;
}

/** Types of the element's attributes in markup, for example in JSX. */
export interface VelmoraWaterAttributes {
    /** Name of a shipped preset, or the settings as JSON. */
    preset?: string;
    /** Fraction of a wave's velocity that remains after 1/60 s. */
    damping?: number | string;
    /** Distance that a wave travels per second, as a multiple of the element's shorter side. */
    "wave-speed"?: number | string;
    /** Height of the ripples of a touch. */
    ripple?: number | string;
    /** Raindrops per second. */
    rain?: number | string;
    /** Speed of the effect. 1 is real time. */
    "time-scale"?: number | string;
    /** Refractive index of the water: strength with which waves distort the background. 1 means no distortion. */
    "refractive-index"?: number | string;
    /** Strength of the reflections on waves. */
    sheen?: number | string;
    /** Extra reflection on slopes that face the light at the lower right. */
    fresnel?: number | string;
    /** Brightness of the highlights, as a factor of the reflection. */
    specular?: number | string;
    /** Sharpness of the highlights. High values give narrow highlights. */
    exponent?: number | string;
    /** Pressure of touches on devices that do not measure pressure, 0 to 1. */
    pressure?: number | string;
    /** Number of water cells along the element's shorter side. */
    "mesh-detail"?: number | string;
    /** CSS colour of the ink. */
    ink?: string;
    /** Turns off the ink: touches then make only waves. */
    "water-only"?: boolean | "";
    /** Input that touches the water. */
    pointer?: PointerMode;
    /** Turns on attract mode, which draws strokes while nobody touches the water. */
    attract?: boolean | "";
    /** Stops the water and keeps its last frame. */
    paused?: boolean | "";
    /** `auto` draws less detail on a slow machine, `full` never does. */
    quality?: WaterState["quality"];
    /** Rendered pixels per CSS pixel. Default: the ratio of the screen. */
    "pixel-ratio"?: number | string;
    /** Address of the background image, if no child is the background. */
    src?: string;
    /** Candidate images for `src`, as in the attribute of the same name of an img element. */
    srcset?: string;
    /** Sizes that `srcset` refers to, as in the attribute of the same name of an img element. */
    sizes?: string;
    /** Text that describes the image of `src` for assistive technology such as screen readers. */
    alt?: string;
    /** CORS mode of the request for `src`, as in the attribute of the same name of an img element. */
    crossorigin?: string;
    /** `lazy` loads `src` when the element comes near the viewport. */
    loading?: "lazy" | "eager";
}

// The interface VelmoraWater above declares the properties that defineProperty adds to this class.
/** The custom element `<velmora-water>`. It shows its child image, video or canvas under water. */
export class VelmoraWater extends ElementClass {
    /** Attributes whose changes the browser reports to the element. */
    static readonly observedAttributes = [...stateAttributes, ...imageAttributes, "aria-label"];

    /** Image of the attribute `src`. It is the background if the element has no child image, video or canvas. */
    private readonly image: HTMLImageElement;
    /** Part of the shadow tree that covers the element's box, receives the input and contains the water's canvas. */
    private readonly stage: HTMLElement;
    /** Finds the background and reports its changes. */
    private readonly watch: BackgroundWatch;
    private readonly water: Water;

    constructor() {
        super();
        const root = this.attachShadow({ mode: "open" });
        this.image = document.createElement("img");
        this.stage = makePart("water");
        this.stage.addEventListener("keydown", (event) => this.onKey(event));
        this.stage.addEventListener("pointerenter", () => this.water.onUse());
        const fallback = document.createElement("slot");
        fallback.append(this.image);
        const over = makePart("over");
        const overSlot = document.createElement("slot");
        overSlot.name = "over";
        over.append(overSlot);
        root.append(fallback, this.stage, over);
        this.watch = new BackgroundWatch(this, this.image, () => this.onBackground());
        this.water = new Water(this.makeHost(fallback));
    }

    /** Starts the water. The browser calls this method when the element enters a document. */
    connectedCallback(): void {
        applyStyle(this.shadowRoot!);
        this.adoptProperties();
        this.readAttributes();
        this.nameStage();
        this.watch.start();
        this.water.connect();
    }

    /** Stops the water. The browser calls this method when the element leaves its document. */
    disconnectedCallback(): void {
        this.watch.stop();
        this.water.disconnect();
    }

    /** Applies a changed attribute. The browser calls this method after each change. */
    attributeChangedCallback(name: string, _before: string | null, value: string | null): void {
        if (imageAttributes.includes(name)) {
            copyAttribute(this.image, name, value);
            this.onBackground();
        } else if (this.isConnected) {
            this.readAttributes();
            this.nameStage();
        }
    }

    /** Current settings, as chosen by the preset and by the attributes. */
    get settings(): Settings {
        return structuredClone(settingsOf(this));
    }

    /** True while the water has a GL context. */
    get live(): boolean {
        return this.water.isLive;
    }

    /** True while the element draws no frames. */
    get idle(): boolean {
        return this.water.isIdle;
    }

    /** Touches the water at a point in CSS pixels of the element. Resolves when the touch has ended. */
    drop(x: number, y: number, options?: DropOptions): Promise<void> {
        return this.water.drop(x, y, options);
    }

    /** Draws a stroke along points in CSS pixels of the element. Resolves when the stroke has ended. */
    stroke(points: Point[], options?: StrokeOptions): Promise<void> {
        return this.water.stroke(points, options);
    }

    /** Removes the ink. */
    clear(): void {
        this.water.clear();
    }

    /**
     * Replays a gesture script. Resolves when the replay has started. Rejects with an Error that describes the script's
     * first fault.
     */
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

    /** Reads the background again, for example after the page has drawn on a canvas that is the background. */
    refresh(): void {
        this.onBackground();
    }

    private makeHost(fallback: HTMLElement) {
        const { stage, watch } = this;
        return {
            area: stage,
            hoverArea: this as HTMLElement,
            events: this as EventTarget,
            get source() {
                return watch.source;
            },
            makeCanvas: () => document.createElement("canvas"),
            show: (canvas: HTMLCanvasElement | null) => {
                stage.replaceChildren(...(canvas ? [canvas] : []));
                // Assistive technology such as a screen reader must find only one image: the water while it is shown,
                // and the plain background otherwise. Water and background have the same name.
                fallback.setAttribute("aria-hidden", String(canvas !== null));
                stage.setAttribute("aria-hidden", String(canvas === null));
                stage.tabIndex = canvas ? 0 : -1; // a hidden part must not have the focus
            },
        };
    }

    /** Applies properties that the page has set before the class of the element was defined. */
    private adoptProperties(): void {
        const values = this as unknown as Record<string, unknown>;
        for (const name of properties.filter((each) => Object.hasOwn(this, each))) {
            const value = values[name];
            delete values[name];
            values[name] = value;
        }
    }

    private readAttributes(): void {
        const { quality, ...state } = stateOf(this);
        Object.assign(this.water.state, state);
        this.water.setQuality(quality);
        this.water.setSettings(settingsOf(this));
    }

    private onBackground(): void {
        if (this.isConnected) {
            this.nameStage();
            this.water.onBackground();
        }
    }

    /** Gives the stage its role and label for assistive technology. */
    private nameStage(): void {
        this.stage.setAttribute("role", "img");
        this.stage.setAttribute("aria-label", this.getAttribute("aria-label") ?? (this.watch.label || "Water"));
    }

    /** Touches the centre of the water if the user presses Enter or Space. */
    private onKey(event: KeyboardEvent): void {
        if ((event.key === "Enter" || event.key === " ") && event.target === this.stage) {
            event.preventDefault();
            if (event.repeat) {
                return;
            }
            void this.drop(this.stage.clientWidth / 2, this.stage.clientHeight / 2);
        }
    }
}

/** Creates a div with this class. It is also a CSS part of this name, so the page's style sheets can select it. */
function makePart(name: string): HTMLElement {
    const part = document.createElement("div");
    part.className = name;
    part.part.add(name);
    return part;
}

function copyAttribute(to: Element, name: string, value: string | null): void {
    if (value === null) {
        to.removeAttribute(name);
    } else {
        to.setAttribute(name, value);
    }
}

/** Names of the properties that reflect an attribute. */
const properties: string[] = [];

/**
 * Adds a property that reflects an attribute. `read` converts the text of the attribute to the value of the property.
 */
function defineProperty(name: string, read: (text: string | null) => unknown): void {
    const attribute = attributeOf(name);
    properties.push(name);
    Object.defineProperty(VelmoraWater.prototype, name, {
        configurable: true,
        enumerable: true,
        get(this: Element) {
            return read(this.getAttribute(attribute));
        },
        set(this: Element, value: unknown) {
            const isOff = value === null || value === undefined || value === false;
            copyAttribute(this, attribute, isOff ? null : value === true ? "" : textOf(value));
        },
    });
}

function textOf(value: unknown): string {
    return typeof value === "object" ? JSON.stringify(value) : String(value);
}

for (const name of ["preset", "ink", "pointer", "quality", ...imageAttributes]) {
    defineProperty(name, (text) => text);
}
for (const name of switches) {
    defineProperty(name, (text) => text !== null && text !== "false");
}
for (const name of [...settingNames, "pixelRatio"]) {
    if (name !== "ink" && !switches.includes(name)) {
        defineProperty(name, (text) => (text === null ? null : Number(text)));
    }
}
