// Applies style.css to the element's shadow tree as a constructed style sheet, because a page's content security policy
// may forbid inline styles.

import css from "./style.css";

/**
 * One style sheet per document, because a constructed style sheet works only in the document in which it was
 * constructed.
 */
const sheets = new WeakMap<Document, CSSStyleSheet>();

/** Applies the style to a shadow tree in its current document. */
export function applyStyle(root: ShadowRoot): void {
    const { ownerDocument } = root;
    let sheet = sheets.get(ownerDocument);
    if (!sheet) {
        const { CSSStyleSheet: Sheet } = ownerDocument.defaultView ?? globalThis;
        sheet = new Sheet();
        sheet.replaceSync(css);
        sheets.set(ownerDocument, sheet);
    }
    root.adoptedStyleSheets = [sheet];
}
