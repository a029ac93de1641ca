// Settings in a link's fragment.

import type { Settings } from "../../build/web/settings";

/** Returns the page's address with all settings in its fragment. */
export function linkOf(settings: Settings, page: string): string {
    return `${page.replace(/#.*/, "")}#look=${encodeURIComponent(JSON.stringify(settings))}`;
}

/** Returns the preset's text in a fragment; undefined for any other fragment. */
export function presetInLink(fragment: string): string | undefined {
    const encoded = /^#look=(.*)$/.exec(fragment)?.[1];
    try {
        return encoded === undefined ? undefined : decodeURIComponent(encoded);
    } catch {
        return encoded;
    }
}
