// Questions in a dialog of the page. In a frame of another origin, browsers block `prompt` and `confirm`. Both functions
// also stop the water until the user answers.

import { sharedTexts } from "../../build/web/settings";
import { make } from "./controls";

/**
 * Asks for a text. `initial` is the text that the field contains first, and `action` is the label of the button that
 * confirms. Resolves to the text, or to undefined if the user cancels.
 */
export async function askText(
    question: string,
    initial: string,
    maxLength: number,
    action: string,
): Promise<string | undefined> {
    const field = make("input", { value: initial, maxLength, required: true, autofocus: true });
    field.addEventListener("focus", () => field.select());
    const isConfirmed = await ask(question, make("label", {}, question, field), action);
    return isConfirmed ? field.value : undefined;
}

/** Asks for a confirmation. `action` is the label of the button that confirms. Resolves to false if the user cancels. */
export function askConfirmation(question: string, action: string): Promise<boolean> {
    return ask(question, make("p", {}, question), action);
}

/** Shows a dialog until the user answers. Enter confirms, and Esc cancels. Resolves to true if the user confirms. */
function ask(question: string, content: HTMLElement, action: string): Promise<boolean> {
    const cancel = make("button", { type: "button" }, sharedTexts.cancel);
    const confirm = make("button", { value: "confirm", autofocus: content.querySelector("input") === null }, action);
    const form = make("form", {}, content, make("div", { className: "answers" }, cancel, confirm));
    const dialog = make("dialog", { className: "question", ariaLabel: question }, form);
    cancel.addEventListener("click", () => dialog.close());
    confirm.addEventListener("click", (event) => {
        event.preventDefault(); // a sandboxed frame forbids the submission of forms
        if (form.reportValidity()) {
            dialog.close(confirm.value);
        }
    });
    document.body.append(dialog);
    dialog.showModal();
    return new Promise((resolve) => {
        dialog.addEventListener("close", () => {
            dialog.remove();
            resolve(dialog.returnValue === confirm.value);
        });
    });
}
