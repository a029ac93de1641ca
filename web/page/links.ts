// Stores settings in the fragment of a link.

import type { Settings } from "../../build/web/settings";

/** Returns the page's URL with all settings in the fragment. */
export function linkOf(settings: Settings, page: string): string {
    return `${page.replace(/#.*/, "")}#look=${encodeURIComponent(JSON.stringify(settings))}`;
}

/** Returns the text of the preset in a fragment, or undefined if there is none. */
export function presetInLink(fragment: string): string | undefined {
    const encoded = /^#look=(.*)$/.exec(fragment)?.[1];
    try {
        return encoded === undefined ? undefined : decodeURIComponent(encoded);
    } catch {
        return encoded;
    }
}
