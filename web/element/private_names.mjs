// Finds the names of class members that only the element's own scripts use. The bundler may replace such names by
// shorter ones.

import { createRequire } from "node:module";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const ts = createRequire(import.meta.url)("typescript");
const web = join(dirname(fileURLToPath(import.meta.url)), "..");

/** Returns true if a class member is declared private. */
function isPrivate(declaration) {
    return (ts.getCombinedModifierFlags(declaration) & ts.ModifierFlags.Private) !== 0;
}

/** Returns the names of all public members, also static ones, of the types that a script exports. */
function publicNames(program, entry) {
    const checker = program.getTypeChecker();
    const exported = checker.getExportsOfModule(checker.getSymbolAtLocation(program.getSourceFile(entry)));
    return exported
        .map((symbol) => (symbol.flags & ts.SymbolFlags.Alias ? checker.getAliasedSymbol(symbol) : symbol))
        .flatMap((symbol) => [checker.getDeclaredTypeOfSymbol(symbol), checker.getTypeOfSymbol(symbol)])
        .flatMap((type) => type.getProperties())
        .filter((member) => !member.declarations?.some(isPrivate))
        .map((member) => member.name);
}

/** Returns the names of the members of all classes and interfaces in a source. */
function memberNames(source) {
    const names = [];
    const visit = (node) => {
        const isMember = ts.isClassElement(node) || ts.isTypeElement(node) || ts.isParameterPropertyDeclaration(node, node.parent);
        if (isMember && node.name && ts.isIdentifier(node.name)) {
            names.push(node.name.text);
        }
        ts.forEachChild(node, visit);
    };
    visit(source);
    return names;
}

/**
 * Returns the names that the bundler can shorten: the names of members that neither the browser nor the author of a
 * page uses, and the names in `others`. Leaves out names that also occur as strings, and the names in `reserved`.
 */
export function privateNames(others, reserved) {
    const { config } = ts.readConfigFile(join(web, "tsconfig.json"), ts.sys.readFile);
    const { options } = ts.parseJsonConfigFileContent(config, ts.sys, web);
    const entry = join(web, "element/index.ts");
    const program = ts.createProgram([entry, join(web, "element/modules.d.ts")], options);
    const kept = new Set([...reserved, ...publicNames(program, entry)]);
    const names = new Set(others);
    for (const source of program.getSourceFiles()) {
        if (program.isSourceFileDefaultLibrary(source)) {
            source.text.match(/\b\w+(?=\??[:(<])/g).forEach((name) => kept.add(name));
        } else if (!source.isDeclarationFile) {
            memberNames(source).forEach((name) => names.add(name));
            (source.text.match(/(?<=["'`])\w+(?=["'`])/g) ?? []).forEach((name) => kept.add(name));
        }
    }
    return [...names].filter((name) => !kept.has(name));
}
