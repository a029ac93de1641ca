// Finds elements of a page by role, text, label or CSS selector, and clicks and types as a user does. The functions are
// named as in Playwright. They serve the engines that Playwright cannot drive. Testing Library finds the elements; it
// runs in the page.

import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { waitLimit } from "./common.mjs";

const { resolve } = createRequire(new URL("../../../web/package.json", import.meta.url));
const testingLibrary = readFileSync(resolve("@testing-library/dom/dist/@testing-library/dom.umd.min.js"), "utf8");

/** Runs in a page. Adds `window.findElements`, which returns the elements that a locator describes. */
function addFinder() {
    const { queryAllByLabelText, queryAllByRole, queryAllByText } = window.TestingLibraryDom;
    const textOf = ({ text, exact }) => (exact ? text : new RegExp(...text));
    const finders = {
        selector: (root, { selector }) => [...root.querySelectorAll(selector)],
        text: (root, { text }) => queryAllByText(root, textOf(text)),
        label: (root, { text }) => queryAllByLabelText(root, textOf(text)),
        role: (root, { role, name, pressed }) => queryAllByRole(root, role, { pressed, name: name && textOf(name) }),
    };
    window.findElements = (steps) =>
        steps.reduce((roots, step) => {
            const found = roots.flatMap((root) => finders[step.by](root, step));
            return step.hasText ? found.filter((one) => new RegExp(...step.hasText.text).test(one.textContent)) : found;
        }, [document.body]);
}

/**
 * Runs in a page. Waits until exactly one element of `find` is visible. This element must not move, and nothing may
 * cover its middle. Scrolls the element into view if necessary. Returns its middle.
 */
async function findClickPoint(find, limit) {
    const end = Date.now() + limit;
    let [fault, last] = ["", ""];
    while (Date.now() < end) {
        const elements = find().filter((element) => element.checkVisibility());
        fault = `the number of visible elements is ${elements.length}`;
        if (elements.length === 1) {
            const { x, y, width, height } = elements[0].getBoundingClientRect();
            const middle = [x + width / 2, y + height / 2];
            const top = document.elementFromPoint(...middle);
            if (!elements[0].contains(top)) {
                fault = `its middle (${middle}) shows ${top?.outerHTML.slice(0, 200) ?? "nothing (outside the window)"}`;
                elements[0].scrollIntoView({ block: "center", behavior: "instant" });
            } else if (String(middle) === last) {
                return middle;
            } else {
                fault = "the element moves";
            }
            last = String(middle);
        }
        await new Promise((done) => setTimeout(done, 20));
    }
    const expected = "one visible element that does not move and that nothing covers";
    throw new Error(`expected ${expected}, but ${fault}. Correct the locator or the page`);
}

/** Runs in a page. Waits until `find` finds a visible element. */
async function waitUntilVisible(find, limit) {
    const end = Date.now() + limit;
    while (!find().some((element) => element.checkVisibility())) {
        if (Date.now() > end) {
            const count = find().length;
            throw new Error(`expected a visible element, but all ${count} are hidden. Correct the locator or the page`);
        }
        await new Promise((done) => setTimeout(done, 20));
    }
}

/** Runs in a page. Waits until `find` finds exactly one element. Then calls `use(element, argument)`. */
async function useElement(find, [use, argument, limit]) {
    const end = Date.now() + limit;
    let elements = find();
    while (elements.length !== 1) {
        if (Date.now() > end) {
            throw new Error(`expected one element, but found ${elements.length}. Correct the locator or the page`);
        }
        await new Promise((done) => setTimeout(done, 20));
        elements = find();
    }
    return use(elements[0], argument);
}

/** Runs in a page. Sets the colour of a colour field, because keys cannot change it. */
function setColor(field, color) {
    field.value = color;
    field.dispatchEvent(new Event("input", { bubbles: true }));
    field.dispatchEvent(new Event("change", { bubbles: true }));
}

const escape = (text) => text.replace(/[\\^$.*+?()[\]{}|/]/g, "\\$&");

/** Returns a text in the form that `addFinder` expects: exact, or as source and flags of a regular expression. */
function textStep(text, exact = false) {
    const pattern = text instanceof RegExp ? [text.source, text.flags] : [escape(text), "i"];
    return { text: exact ? text : pattern, exact };
}

class Locator {
    #page;
    #steps;

    /**
     * `page` is a page of an engine. `steps` describe the search. Each step searches within the previous step's
     * elements.
     */
    constructor(page, steps = []) {
        this.#page = page;
        this.#steps = steps;
    }

    locator(selector, { hasText } = {}) {
        return this.#within({ by: "selector", selector, hasText: hasText && textStep(hasText) });
    }

    getByRole(role, { name, exact, pressed } = {}) {
        return this.#within({ by: "role", role, name: name && textStep(name, exact), pressed });
    }

    getByText(text, { exact } = {}) {
        return this.#within({ by: "text", text: textStep(text, exact) });
    }

    getByLabel(text) {
        return this.#within({ by: "label", text: textStep(text) });
    }

    async click() {
        await this.#page.mouse.click(...(await this.#run(findClickPoint, waitLimit)));
    }

    async press(key) {
        await this.focus();
        await this.#page.keyboard.press(key);
    }

    async fill(text) {
        if (await this.#use((field) => field.type === "color")) {
            return this.#use(setColor, text);
        }
        await this.#use((field) => (field.focus(), field.select()));
        for (const character of text) {
            await this.#page.keyboard.press(character);
        }
    }

    waitFor() {
        return this.#run(waitUntilVisible, waitLimit);
    }

    focus() {
        return this.#use((element) => element.focus());
    }

    blur() {
        return this.#use((element) => element.blur());
    }

    inputValue() {
        return this.#use((element) => element.value);
    }

    textContent() {
        return this.#use((element) => element.textContent);
    }

    getAttribute(name) {
        return this.#use((element, wanted) => element.getAttribute(wanted), name);
    }

    boundingBox() {
        return this.#use((element) => {
            const { x, y, width, height } = element.getBoundingClientRect();
            return { x, y, width, height };
        });
    }

    isVisible() {
        return this.#run((find) => find().some((element) => element.checkVisibility()));
    }

    count() {
        return this.#run((find) => find().length);
    }

    allTextContents() {
        return this.#run((find) => find().map((element) => element.textContent));
    }

    #within(step) {
        return new Locator(this.#page, [...this.#steps, step]);
    }

    /** Waits until the locator finds exactly one element. Then runs `call(element, argument)` in the page. */
    #use(call, argument) {
        const run = Function("find", "argument", `return (${useElement})(find, [${call}, argument, ${waitLimit}]);`);
        return this.#run(run, argument);
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

/** Adds functions to the page that find elements and are named as in Playwright. Returns the page. */
export function addLocators(page) {
    const whole = new Locator(page);
    for (const name of ["locator", "getByRole", "getByText", "getByLabel"]) {
        page[name] = (...search) => whole[name](...search);
    }
    return page;
}
