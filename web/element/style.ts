// Style of the element's shadow tree. It is a constructed style sheet, because a page's content security policy may
// forbid inline styles.

const css = `
:host { display: inline-block; position: relative; max-width: 100%; overflow: hidden; }
:host([hidden]) { display: none; }
slot:not([name])::slotted(*), img { display: block; max-width: 100%; }
img { width: 100%; height: 100%; object-fit: cover; }
img:not([src]) { display: none; }
.water, .over, .water canvas { position: absolute; inset: 0; width: 100%; height: 100%; }
.water { touch-action: pan-y; outline-offset: -2px; cursor: inherit; }
.water:not(:focus-visible) { outline: none; }
:host([pointer="capture"]) .water { touch-action: none; }
:host([pointer="none"]) .water { pointer-events: none; }
.water canvas { display: block; }
.over { pointer-events: none; }
slot[name]::slotted(*) { pointer-events: auto; }
@media print { .water { display: none; } }
`;

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
