// Tests the npm package in a new project. The project installs the package from its archive and checks its types. Three
// bundlers bundle a React page that uses the package. tools/test-npm makes the archive before it runs this test.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { createServer } from "node:http";
import { extname, join } from "node:path";
import { before, test } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";
import { budget, compressedSize, peers, scripts } from "../../web/element/sizes.mjs";
import { testImage } from "../web/element_page.mjs";
import { launch, screenshotFolder } from "../web/page.mjs";

const here = fileURLToPath(new URL(".", import.meta.url));
const project = fileURLToPath(new URL("../../build/npm-project", import.meta.url));
const packages = fileURLToPath(new URL("../../build/packages", import.meta.url));
const archive = join(packages, readdirSync(packages).filter((name) => /^velmora-.*\.tgz$/.test(name)).sort().at(-1));
const tools = join(here, "node_modules/.bin");

/** Runs a program in the new project and returns its output. If the program fails, throws an error with the output. */
function run(program, ...args) {
    try {
        return execFileSync(program, args, { cwd: project, encoding: "utf8", stdio: "pipe" });
    } catch (error) {
        throw new Error(`${program} ${args.join(" ")} failed:\n${error.stdout}${error.stderr}`);
    }
}

const files = {
    "package.json": JSON.stringify({ name: "project", private: true, type: "module" }),
    "index.html": `<!doctype html><link rel="icon" href="data:"><div id="root"></div><script type="module" src="main.js"></script>`,
    // React passes preset, ripple and waterOnly as properties, because the element has properties of these names.
    "main.js": `
        import "velmora/element";
        import { createElement, useState } from "react";
        import { createRoot } from "react-dom/client";
        function App() {
            const [ripple, setRipple] = useState(1);
            const image = createElement("img", { src: "64x64.bmp", alt: "A test", width: 300, height: 200 });
            return createElement("velmora-water",
                { preset: "lagoon", ripple, waterOnly: true, onready: () => (document.title = "ready") }, image,
                createElement("button", { slot: "over", onClick: () => setRipple(5) }, "more"));
        }
        createRoot(document.getElementById("root")).render(createElement(App));`,
    "types.tsx": `
        import "velmora/react";
        import { createWater, type WaterOptions } from "velmora";
        import "velmora/element";
        const water = document.querySelector("velmora-water")!;
        water.ripple = 3;
        water.settings.ink[0].toFixed();
        void water.stroke([{ x: 1, y: 2 }], { duration: 100 });
        const options: WaterOptions = { preset: "lagoon", pointer: "hover" };
        void createWater(document.createElement("canvas"), options).then((made) => made.toBlob());
        // @ts-expect-error "fly" is not a value of pointer
        water.pointer = "fly";
        export const page = <velmora-water preset="lagoon" wave-speed="0.3" waterOnly onready={() => {}} />;`,
    "tsconfig.json": JSON.stringify({
        compilerOptions: {
            target: "ES2022", module: "NodeNext", moduleResolution: "NodeNext", jsx: "react-jsx", strict: true, noEmit: true,
            exactOptionalPropertyTypes: true, lib: ["ES2022", "DOM"], types: [],
        },
        files: ["types.tsx"],
    }),
};

before(() => {
    rmSync(project, { recursive: true, force: true });
    mkdirSync(project, { recursive: true });
    for (const [name, text] of Object.entries(files)) {
        writeFileSync(join(project, name), text);
    }
    const others = ["react", "react-dom", "@types/react", "scheduler", "csstype"].map((name) => join(here, "node_modules", name));
    run("npm", "install", "--offline", "--no-audit", "--no-fund", "--ignore-scripts", archive, ...others);
});

test("publint and arethetypeswrong find no fault in the package", () => {
    const folder = join(project, "node_modules/velmora");
    assert.match(run(join(tools, "publint"), folder, "--strict"), /All good/);
    run(join(tools, "attw"), archive, "--profile", "esm-only", "--exclude-entrypoints", "./velmora.wasm", "./custom-elements.json");
});

test("TypeScript accepts the package's types, and Node imports the package", () => {
    run(join(tools, "tsc"), "-p", "tsconfig.json");
    const script = `import("velmora/element").then((all) => console.log(all.presetNames().length))`;
    assert.ok(Number(run("node", "-e", script)) >= 10);
});

/**
 * Functions that run the bundlers, by the bundler's name. Each bundler writes its output to a folder of this name. Only
 * vite also writes the file index.html.
 */
const bundlers = {
    vite: () => run(join(tools, "vite"), "build", "--outDir", "vite", "--base", "./"),
    esbuild: () => run(join(tools, "esbuild"), "main.js", "--bundle", "--format=esm", "--splitting", "--outdir=esbuild"),
    webpack: () => run(join(tools, "webpack"), "--mode", "production", "--entry", "./main.js", "--output-path", "webpack"),
};

/** Starts a server for the files of the project and for a test image. */
async function serve() {
    const types = { ".html": "text/html", ".js": "text/javascript", ".bmp": "image/bmp" };
    const server = createServer((request, response) => {
        const path = request.url.split("?")[0];
        response.writeHead(200, { "Content-Type": types[extname(path)] ?? "text/html" });
        response.end(path.endsWith(".bmp") ? testImage(64, 64) : readFileSync(join(project, path)));
    });
    await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
    return server;
}

test("vite, esbuild and webpack bundle a React page that shows water", async () => {
    const [browser, server] = await Promise.all([launch(), serve()]);
    for (const [name, bundle] of Object.entries(bundlers)) {
        bundle();
        if (name !== "vite") {
            writeFileSync(join(project, name, "index.html"), files["index.html"]);
        }
        const page = await browser.newPage({});
        await page.goto(`http://127.0.0.1:${server.address().port}/${name}/index.html`);
        await page.waitForFunction(() => document.querySelector("velmora-water")?.live);
        await page.evaluate(() => document.querySelector("button").click());
        await page.waitForFunction(() => document.querySelector("velmora-water").settings.ripple === 5);
        assert.equal(await page.evaluate(() => document.querySelector("velmora-water").settings.waterOnly), true);
        assert.equal(await page.title(), "ready");
        await page.screenshot({ path: join(screenshotFolder, `npm-${name}.png`) });
        await page.close();
        // React's development version prints an advertisement for React DevTools. This message is not an error.
        assert.deepEqual(page.consoleMessages.filter((line) => !line.includes("React DevTools")), [], name);
    }
    await browser.close();
    server.close();
});

test("the element's scripts are within their size limit, and sizes.mjs states the sizes of similar packages", (context) => {
    const size = (...paths) => paths.reduce((sum, path) => sum + compressedSize(join(here, "node_modules", path)), 0);
    const text = (bytes) => `${(bytes / 1024).toFixed(1)} KB`;
    for (const script of scripts) {
        const own = compressedSize(join(project, "node_modules/velmora", script));
        context.diagnostic(`${script}: ${text(own)} gzip`);
        assert.ok(own <= budget, `${script} must have at most ${text(budget)} after gzip, not ${text(own)}`);
    }
    const measured = [
        size("webgl-fluid/dist/webgl-fluid.umd.js"),
        size("jquery/dist/jquery.min.js", "jquery.ripples/dist/jquery.ripples-min.js"),
    ];
    peers.forEach(([name, expected], at) => {
        context.diagnostic(`${name}: ${text(measured[at])}`);
        const isNear = Math.abs(measured[at] - expected) < 0.03 * expected; // gzip programs differ slightly
        assert.ok(isNear, `sizes.mjs states ${expected} bytes for ${name}. Change it to ${measured[at]} bytes`);
    });
});
