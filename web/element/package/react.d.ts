// Types of <velmora-water> in JSX of React. Import "velmora/react" once in a project. React passes a prop to the property
// of the same name, or else to the attribute.

import type { DetailedHTMLProps, HTMLAttributes } from "react";
import type { VelmoraWater, VelmoraWaterAttributes } from "velmora";

/** Numeric properties with camel-case names. The attributes accept the same values. */
type CamelCase = "waveSpeed" | "timeScale" | "refractiveIndex" | "meshDetail" | "pixelRatio";

interface ReactProps extends Partial<Record<CamelCase, number | null>> {
    /** Turns off the ink: touches then make only waves. */
    waterOnly?: boolean;
    onready?: (event: Event) => void;
    onerror?: (event: ErrorEvent) => void;
    onidle?: (event: Event) => void;
    onactive?: (event: Event) => void;
    oncontextlost?: (event: Event) => void;
    oncontextrestored?: (event: Event) => void;
    ongestureend?: (event: Event) => void;
}

declare module "react" {
    namespace JSX {
        interface IntrinsicElements {
            "velmora-water": DetailedHTMLProps<HTMLAttributes<VelmoraWater>, VelmoraWater> & VelmoraWaterAttributes & ReactProps;
        }
    }
}
