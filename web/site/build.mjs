// Builds the site: static files that run from disk or from any server, and that load nothing from elsewhere.
// Usage: node build.mjs BUILD_FOLDER SITE_FOLDER

import { execFileSync } from "node:child_process";
import { createHash } from "node:crypto";
import { cpSync, existsSync, mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";
import { build } from "esbuild";

const here = dirname(fileURLToPath(import.meta.url));
const [buildFolder, site] = process.argv.slice(2).map((folder) => resolve(folder));
const element = join(buildFolder, "element");
const pictures = join(site, "pictures");

/** Names of the examples, in the order of the menu. */
const examples = ["hero", "cards", "gallery", "video", "camera", "rain", "hover", "many", "react", "script-tag"];
const pictureSize = [1280, 800];
const source = (file) => readFileSync(join(here, file), "utf8");
const escaped = (text) => text.replaceAll("&", "&amp;").replaceAll("<", "&lt;").replaceAll('"', "&quot;");

/** Replaces each key of `parts` that occurs in `text` with its value. The keys are in capital letters. */
function filled(text, parts) {
    return text.replace(new RegExp(Object.keys(parts).join("|"), "g"), (name) => parts[name]);
}

/** Saves the paintings of the effect's module as JPEG files. */
async function savePaintings() {
    const load = createRequire(import.meta.url)(join(buildFolder, "velmora-web.js"));
    const effect = await load({ wasmBinary: readFileSync(join(buildFolder, "velmora-web.wasm")) });
    const [width, height] = pictureSize;
    for (let index = 0; ; ++index) {
        const name = effect.UTF8ToString(effect._paintingName(index));
        if (!name) {
            return;
        }
        const start = effect._paint(index, width, height);
        const input = effect.HEAPU8.subarray(start, start + 4 * width * height);
        const raw = ["-f", "rawvideo", "-pix_fmt", "rgba", "-s", `${width}x${height}`, "-i", "-"];
        execFileSync("ffmpeg", ["-v", "error", "-y", ...raw, "-q:v", "3", join(pictures, `${name}.jpg`)], { input });
    }
}

/** Saves a film of slowly drifting colours. */
function saveFilm() {
    const colors = ["#bfe3e6", "#f6dcc4", "#5fb7bd", "#0a6470"].map((color, at) => `c${at}=${color}`).join(":");
    const film = `gradients=s=960x540:n=4:${colors}:speed=0.02:seed=7:r=25:d=8`;
    const coding = ["-c:v", "libx264", "-pix_fmt", "yuv420p", "-movflags", "+faststart"];
    execFileSync("ffmpeg", ["-v", "error", "-y", "-f", "lavfi", "-i", film, ...coding, join(pictures, "colours.mp4")]);
}

/** Returns an example: title, description and picture, the HTML that runs, and the code that the page shows. */
function readExample(name) {
    const text = source(`examples/${name}.html`);
    const meta = (field) => text.match(`<meta name="${field}" content="(.*)">`)[1];
    const html = text.replace(/^<(title|meta).*\n/gm, "");
    return {
        name,
        title: text.match(/<title>(.*)<\/title>/)[1],
        description: meta("description"),
        picture: meta("picture"),
        note: meta("note"),
        html,
        code: name === "react" ? source("examples/react.jsx") : html,
    };
}

/** Returns a page that has the same head and footer as every page of the site. */
function page(kind, title, description, body) {
    const parts = { KIND: kind, TITLE: title, DESCRIPTION: description, BODY: body.trimEnd() };
    return filled(source("layout.html"), parts);
}

function examplePage(example, all) {
    const menu = all.map(({ name, title }) =>
        `<a href="${name}.html"${name === example.name ? ' aria-current="page"' : ""}>${title}</a>`);
    const body = filled(source("example.html"), {
        TITLE: example.title,
        DESCRIPTION: example.description,
        NOTE: example.note,
        MENU: menu.join(""),
        EXAMPLE: example.html,
        CODE: escaped(example.code.trim()),
    });
    return page("example-page", `${example.title} – Velmora`, example.description, body);
}

function frontPage(all) {
    const imageOf = ({ name, picture }) =>
        existsSync(join(here, "shots", `${name}.jpg`)) ? `shots/${name}.jpg` : `pictures/${picture}.jpg`;
    const card = ({ name, title, description, picture }) =>
        `<li><a href="${name}.html">` +
        `<img src="${imageOf({ name, picture })}" alt="" loading="lazy" width="640" height="400">` +
        `<strong>${title}</strong><span>${description}</span></a></li>`;
    const fullPage = {
        name: "velmora",
        title: "Every setting",
        description: "The full page: presets, your own pictures, recordings, films.",
        picture: "leaves",
    };
    const script = readFileSync(join(element, "velmora-element.js"));
    const body = filled(source("index.html"), {
        CARDS: [...all, fullPage].map(card).join("\n"),
        CODE: escaped(source("examples/first.html").trim()),
        SIZE: Math.round(gzipSync(script, { level: 9 }).length / 1024),
    });
    const summary = "A custom element that turns any picture, video or canvas of a web page into water.";
    return page("front", "Velmora – turn a picture into water", summary, body);
}

/** Bundles the React example. Resolves its imports of the package and of a picture to the files of this build. */
function bundleReact() {
    const files = {
        name: "files of this build",
        setup(plugins) {
            plugins.onResolve({ filter: /^velmora\/element$/ }, () => ({ path: join(element, "element.js") }));
            plugins.onResolve({ filter: /^\.\/pictures\// }, ({ path }) => ({ path: join(site, path) }));
        },
    };
    return build({
        entryPoints: [join(here, "examples/react.jsx")],
        outfile: join(site, "react.js"),
        bundle: true,
        minify: true,
        jsx: "automatic",
        legalComments: "none",
        define: { "process.env.NODE_ENV": '"production"' },
        loader: { ".jpg": "dataurl" },
        plugins: [files],
        logLevel: "warning",
    });
}

/** Writes a script with the pictures as data URLs, for pages that are opened from disk. */
function savePictureData() {
    const types = { jpg: "image/jpeg", mp4: "video/mp4" };
    const data = {};
    for (const file of readdirSync(pictures)) {
        const type = types[file.split(".").pop()];
        data[`pictures/${file}`] = `data:${type};base64,${readFileSync(join(pictures, file), "base64")}`;
    }
    writeFileSync(join(site, "pictures.js"), filled(source("pictures.js"), { DATA: JSON.stringify(data) }));
}

/** Writes the service worker, which stores all files that a served page uses, so that the page works offline. */
function saveServiceWorker() {
    const isServed = (file) => file.includes(".") && file !== "pictures.js";
    const files = readdirSync(site, { recursive: true }).filter(isServed).sort();
    const hash = createHash("sha256");
    files.forEach((file) => hash.update(readFileSync(join(site, file))));
    const parts = { VERSION: hash.digest("hex").slice(0, 12), FILES: JSON.stringify(["./", ...files], null, 4) };
    writeFileSync(join(site, "service_worker.js"), filled(source("service_worker.js"), parts));
}

rmSync(site, { recursive: true, force: true });
mkdirSync(pictures, { recursive: true });
await savePaintings();
saveFilm();
for (const file of ["site.css", "site.js", "icon.svg", "manifest.webmanifest"]) {
    cpSync(join(here, file), join(site, file));
}
cpSync(join(here, "shots"), join(site, "shots"), { recursive: true });
cpSync(join(element, "velmora-element.js"), join(site, "velmora-element.js"));
cpSync(join(element, "velmora-gestures.js"), join(site, "velmora-gestures.js"));
cpSync(join(buildFolder, "velmora.html"), join(site, "velmora.html"));
const all = examples.map(readExample);
for (const example of all) {
    writeFileSync(join(site, `${example.name}.html`), examplePage(example, all));
}
writeFileSync(join(site, "index.html"), frontPage(all));
await bundleReact();
savePictureData();
saveServiceWorker();
