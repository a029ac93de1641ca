// Shows toasts: short messages that disappear after some seconds.

const toast = document.getElementById("toast") as HTMLElement;
/** Maximum length of a toast in characters. */
const maxLength = 300;
/** True if the device has a mouse or trackpad, and so most likely a keyboard. Messages mention keys only then. */
export const hasKeys = !matchMedia("(pointer: coarse)").matches;
let timer = 0;

/** Shows a message for some seconds. Does nothing while the controls are hidden. */
export function showToast(message: string): void {
    if (!document.documentElement.classList.contains("clean")) {
        showErrorToast(message);
    }
}

/**
 * Shows an error message for some seconds, even while the controls are hidden. Replaces line breaks and control
 * characters with spaces.
 */
export function showErrorToast(message: string): void {
    const clean = message.replace(/[\p{Cc}\p{Cf}\s]+/gu, " ");
    toast.textContent = clean.length > maxLength ? clean.slice(0, maxLength) + "…" : clean;
    toast.classList.add("shown");
    clearTimeout(timer);
    timer = window.setTimeout(() => toast.classList.remove("shown"), 4000 + 40 * clean.length);
}

/** Runs an action and shows its error, if any, as a toast. Resolves to true on success. */
export async function attempt(action: () => unknown): Promise<boolean> {
    try {
        await action();
        return true;
    } catch (error) {
        showErrorToast(error instanceof Error ? error.message : String(error));
        return false;
    }
}
