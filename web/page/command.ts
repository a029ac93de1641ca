// Commands with their keys. The keyboard handler, the panel's buttons and the help dialog use the same list.

export interface Command {
    /** KeyboardEvent.key in lower case. Empty for a command without a key. */
    key: string;
    /** Name of the key in the help dialog. */
    keyName: string;
    /** Text of the button. */
    label: string;
    /** Text of the help dialog and of the button's tooltip. */
    description: string;
    run(): void;
    /** Returns the state of a toggle. Undefined for a command that is not a toggle. */
    isOn?: (() => boolean) | undefined;
    /** Returns false while the button must be hidden. Undefined for a button that is always shown. */
    isShown?: (() => boolean) | undefined;
}

/** True if another page shows this page in an iframe. Tab, mouse wheel and focus then belong to the outer page. */
export const isFramed = window.parent !== window;

/**
 * Runs a command when its key is pressed. Ignores keys while a dialog is open, keys that the focused element uses, and
 * shortcuts with Ctrl, Alt or Meta. Listens in the capture phase, so that no element can stop the event first.
 */
export function listen(commands: Command[], onInput: () => void): void {
    const handle = (event: KeyboardEvent) => {
        const key = latinKey(event);
        const command = commands.find((each) => each.key === key);
        if (!command || event.ctrlKey || event.altKey || event.metaKey || event.repeat || isForElement(event, key)) {
            return;
        }
        onInput();
        event.preventDefault();
        command.run();
    };
    window.addEventListener("keydown", handle, { capture: true });
}

/**
 * Returns the key in lower case. For a non-Latin layout, returns the key at the same place on a US keyboard. Such a
 * layout can have punctuation at the place of a letter. Punctuation that needs Shift, such as "?", counts as Latin.
 */
function latinKey({ key, code, shiftKey }: KeyboardEvent): string {
    const isLatin = /^[a-z0-9. ]/i.test(key) || (shiftKey && /^[!-~]/.test(key));
    return isLatin ? key.toLowerCase() : code.replace(/^Key/, "").replace("Period", ".").toLowerCase();
}

function isForElement(event: KeyboardEvent, key: string): boolean {
    const { target } = event;
    const matches = (selector: string) => target instanceof HTMLElement && target.matches(selector);
    const isPress = matches("button, input, select, summary") && [" ", "enter"].includes(key);
    const isTyping = matches("textarea, input:not([type=checkbox], [type=color], [type=range])");
    // Tab opens the panel while the water has the focus. Otherwise Tab moves the focus, as in every page.
    const isFocusMove = key === "tab" && (event.shiftKey || isFramed || !isWaterFocused());
    const isText = isTyping && !["escape", "f1"].includes(key);
    return isPress || isText || isFocusMove || document.querySelector("dialog[open]") !== null;
}

/** Returns true if the focus is on the water, or on the settings button while the panel is closed. */
function isWaterFocused(): boolean {
    const { activeElement } = document;
    // If a focused button of the open panel disappears, the body has the focus. Tab then moves the focus within the panel.
    const isPanelOpen = document.querySelector("[aria-expanded=true]") !== null;
    const isWater = activeElement instanceof HTMLCanvasElement || (activeElement === document.body && !isPanelOpen);
    return isWater || activeElement?.getAttribute("aria-expanded") === "false";
}

/** Fills the help dialog with a table of the keys. Esc and F1 close the dialog. */
export function fillHelp(dialog: HTMLDialogElement, commands: Command[]): void {
    const rows = commands.map(({ keyName, description }) => {
        const row = document.createElement("tr");
        const key = document.createElement("kbd");
        key.textContent = keyName;
        row.insertCell().append(key);
        row.insertCell().append(description);
        return row;
    });
    const table = document.createElement("table");
    table.append(...rows);
    const note = document.createElement("p");
    note.textContent =
        "Drag the mouse, or hold the arrow keys, to stir the water. " +
        "Drop or paste a picture or video to make it the background. The page keeps the previous background; the key B shows it. " +
        "You can also drop presets (.json) and gestures (.gesture).";
    const close = document.createElement("button");
    close.textContent = "Close";
    close.type = "button";
    close.addEventListener("click", () => dialog.close());
    const title = document.createElement("header");
    title.append("Keys", close); // first in the dialog, because the focused button keeps the dialog scrolled to its top
    dialog.replaceChildren(title, table, note);
    dialog.addEventListener("click", (event) => event.target === dialog && dialog.close());
    dialog.addEventListener("keydown", (event) => {
        if (event.key === "F1") {
            event.preventDefault(); // would open the browser's help
            dialog.close();
        }
    });
}
