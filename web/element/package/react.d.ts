// Types of <velmora-water> in JSX of React. Import "velmora/react" once in a project.

import type { DetailedHTMLProps, HTMLAttributes } from "react";
import type { VelmoraWater, VelmoraWaterAttributes } from "velmora";

declare module "react" {
    namespace JSX {
        interface IntrinsicElements {
            "velmora-water": DetailedHTMLProps<HTMLAttributes<VelmoraWater>, VelmoraWater> & VelmoraWaterAttributes;
        }
    }
}
