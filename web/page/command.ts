// Commands with their keys. The keyboard handler, the panel's buttons and the help dialog use the same list.

export interface Command {
    /** KeyboardEvent.key in lower case. Empty for a command without a key. */
    key: string;
    /** Name of the key in the help dialog. */
    keyName: string;
    /** Text of the button and the help dialog. */
    label: string;
    run(): void;
    /** Returns the state of a toggle. Undefined for a command without a state. */
    isOn?: (() => boolean) | undefined;
}

/**
 * Runs commands by their keys. Ignores keys for a dialog or a text field, and shortcuts with Ctrl, Alt or Meta. Listens
 * in the capture phase, because the panel's elements stop the propagation of key events.
 */
export function listen(commands: Command[], onInput: () => void): void {
    const handle = (event: KeyboardEvent) => {
        const key = event.key.toLowerCase();
        const command = commands.find((each) => each.key === key);
        if (!command || event.ctrlKey || event.altKey || event.metaKey || event.repeat || isForElement(event, key)) {
            return;
        }
        onInput();
        // Within an open panel, Tab moves the focus.
        if (key !== "tab" || isCanvasFocused()) {
            event.preventDefault();
            command.run();
        }
    };
    window.addEventListener("keydown", handle, { capture: true });
}

function isForElement({ target }: KeyboardEvent, key: string): boolean {
    const matches = (selector: string) => target instanceof HTMLElement && target.matches(selector);
    const isPress = matches("button, input, select") && [" ", "enter"].includes(key);
    const isTyping = matches("textarea, input:not([type=checkbox], [type=color])") && !["escape", "f1"].includes(key);
    return isPress || isTyping || document.querySelector("dialog[open]") !== null;
}

function isCanvasFocused(): boolean {
    return document.activeElement === document.body || document.activeElement instanceof HTMLCanvasElement;
}

/** Fills the help dialog with a table of the keys. Esc and F1 close the dialog. */
export function fillHelp(dialog: HTMLDialogElement, commands: Command[]): void {
    const rows = commands.map(({ keyName, label }) => {
        const row = document.createElement("tr");
        const key = document.createElement("kbd");
        key.textContent = keyName;
        row.insertCell().append(key);
        row.insertCell().append(label);
        return row;
    });
    const table = document.createElement("table");
    table.append(...rows);
    const note = document.createElement("p");
    note.textContent =
        "Drop or paste an image to make it the background. The previous background becomes the second one. " +
        "You can also drop presets (.json) and gestures (.gesture).";
    const close = document.createElement("button");
    close.textContent = "Close";
    close.type = "button";
    close.addEventListener("click", () => dialog.close());
    const title = document.createElement("header");
    title.append("Keys", close); // comes first: the focused button keeps the dialog scrolled to its top
    dialog.replaceChildren(title, table, note);
    dialog.addEventListener("click", (event) => event.target === dialog && dialog.close());
    dialog.addEventListener("keydown", (event) => {
        if (event.key === "F1") {
            event.preventDefault(); // would open the browser's help
            dialog.close();
        }
    });
}
