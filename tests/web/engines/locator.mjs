// Finds elements of a page by role, text, label or CSS selector, and acts on them as a user does: with the mouse and
// the keyboard. The functions are named as in Playwright, and serve the engines that Playwright does not drive. Testing
// Library, which runs in the page, finds the elements.

import { readFileSync } from "node:fs";
import { createRequire } from "node:module";

const { resolve } = createRequire(new URL("../../../web/package.json", import.meta.url));
const testingLibrary = readFileSync(resolve("@testing-library/dom/dist/@testing-library/dom.umd.min.js"), "utf8");

/** Runs in a page. Adds `window.findElements`, which returns the elements that a locator describes. */
function addFinder() {
    const { queryAllByLabelText, queryAllByRole, queryAllByText } = window.TestingLibraryDom;
    const escape = (text) => text.replace(/[\\^$.*+?()[\]{}|/]/g, "\\$&");
    const containing = (text) => new RegExp(escape(text), "i");
    const finders = {
        selector: (root, { selector }) => [...root.querySelectorAll(selector)],
        text: (root, { text, exact }) => queryAllByText(root, exact ? text : containing(text)),
        label: (root, { text }) => queryAllByLabelText(root, containing(text)),
        role: (root, { role, name, exact, pressed }) =>
            queryAllByRole(root, role, { pressed, name: exact || !name ? name : containing(name) }),
    };
    window.findElements = (steps) =>
        steps.reduce((roots, step) => {
            const found = roots.flatMap((root) => finders[step.by](root, step));
            return step.hasText ? found.filter((one) => new RegExp(step.hasText).test(one.textContent)) : found;
        }, [document.body]);
}

/**
 * Runs in a page. Waits until `find` finds exactly one element and the element stands still. Returns its middle, where a
 * click hits the element and nothing that covers it. Scrolls the element into view if necessary.
 */
async function findClickPoint(find) {
    const end = Date.now() + 30000;
    let [fault, last] = ["", ""];
    while (Date.now() < end) {
        const elements = find().filter((element) => element.checkVisibility());
        fault = `found ${elements.length} visible elements`;
        if (elements.length === 1) {
            const { x, y, width, height } = elements[0].getBoundingClientRect();
            const middle = [x + width / 2, y + height / 2];
            const top = document.elementFromPoint(...middle);
            if (!elements[0].contains(top)) {
                fault = `${top?.outerHTML.slice(0, 200)} is at ${middle}`;
                elements[0].scrollIntoView({ block: "center", behavior: "instant" });
            } else if (String(middle) === last) {
                return middle;
            }
            last = String(middle);
        }
        await new Promise((done) => setTimeout(done, 20));
    }
    throw new Error(`expected one visible element that nothing covers, but ${fault}`);
}

/** Runs in a page. Waits until `find` finds a visible element. */
async function waitUntilVisible(find) {
    const end = Date.now() + 30000;
    while (!find().some((element) => element.checkVisibility())) {
        if (Date.now() > end) {
            throw new Error(`expected a visible element, but found ${find().length} hidden elements`);
        }
        await new Promise((done) => setTimeout(done, 20));
    }
}

/** Runs in a page. Gives a colour field its colour and returns false. Selects the text of other fields and returns true. */
function prepareField(find, color) {
    const field = find()[0];
    field.focus();
    if (field.type === "color") {
        field.value = color;
        field.dispatchEvent(new Event("input", { bubbles: true }));
        field.dispatchEvent(new Event("change", { bubbles: true }));
        return false;
    }
    field.select();
    return true;
}

class Locator {
    #page;
    #steps;

    /** `page` is a page of an engine. `steps` describe the search: each step searches within the last step's elements. */
    constructor(page, steps = []) {
        this.#page = page;
        this.#steps = steps;
    }

    /** `hasText` is a regular expression, or a text without characters that are special in regular expressions. */
    locator(selector, { hasText } = {}) {
        return this.#within({ by: "selector", selector, hasText: hasText?.source ?? hasText });
    }

    getByRole(role, { name, exact, pressed } = {}) {
        return this.#within({ by: "role", role, name, exact, pressed });
    }

    getByText(text, { exact } = {}) {
        return this.#within({ by: "text", text, exact });
    }

    getByLabel(text) {
        return this.#within({ by: "label", text });
    }

    async click() {
        await this.#page.mouse.click(...(await this.#run(findClickPoint)));
    }

    async press(key) {
        await this.focus();
        await this.#page.keyboard.press(key);
    }

    async fill(text) {
        if (await this.#run(prepareField, text)) {
            for (const character of text) {
                await this.#page.keyboard.press(character);
            }
        }
    }

    waitFor() {
        return this.#run(waitUntilVisible);
    }

    focus() {
        return this.#run((find) => find()[0].focus());
    }

    blur() {
        return this.#run((find) => find()[0].blur());
    }

    count() {
        return this.#run((find) => find().length);
    }

    isVisible() {
        return this.#run((find) => find().some((element) => element.checkVisibility()));
    }

    inputValue() {
        return this.#run((find) => find()[0].value);
    }

    textContent() {
        return this.#run((find) => find()[0].textContent);
    }

    allTextContents() {
        return this.#run((find) => find().map((element) => element.textContent));
    }

    getAttribute(name) {
        return this.#run((find, wanted) => find()[0].getAttribute(wanted), name);
    }

    boundingBox() {
        return this.#run((find) => {
            const { x, y, width, height } = find()[0].getBoundingClientRect();
            return { x, y, width, height };
        });
    }

    #within(step) {
        return new Locator(this.#page, [...this.#steps, step]);
    }

    /** Runs `call(find, argument)` in the page. `find` returns the elements that the locator finds at that moment. */
    async #run(call, argument) {
        if (!(await this.#page.evaluate(() => "findElements" in window))) {
            await this.#page.evaluate(Function(`${testingLibrary}\n(${addFinder})();`));
        }
        const run = Function("[steps, argument]", `return (${call})(() => window.findElements(steps), argument);`);
        try {
            return await this.#page.evaluate(run, [this.#steps, argument]);
        } catch (error) {
            throw new Error(`${JSON.stringify(this.#steps)}: ${error.message}`, { cause: error });
        }
    }
}

/** Adds Playwright's functions that find elements to a page. Returns the page. */
export function addLocators(page) {
    const whole = new Locator(page);
    for (const name of ["locator", "getByRole", "getByText", "getByLabel"]) {
        page[name] = (...search) => whole[name](...search);
    }
    return page;
}
