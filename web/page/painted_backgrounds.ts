// Backgrounds that the page paints for any screen size. Each call paints the same image.

import type { Size } from "./effect";

type Random = () => number;

/** Returns a generator of numbers in [0, 1). A seed always gives the same sequence. */
function makeRandom(seed: number): Random {
    let state = seed;
    return () => {
        state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
        return (state >>> 8) / (1 << 24);
    };
}

interface Stone {
    x: number;
    y: number;
    radius: number;
}

const stoneColors: [hue: number, saturation: number, light: number][] = [
    [28, 18, 62],
    [205, 12, 46],
    [212, 16, 34],
    [32, 26, 52],
    [18, 30, 42],
    [40, 14, 74],
    [200, 10, 58],
    [12, 36, 36],
];

/** Places stones that touch but do not overlap, large ones first. `unit` is the length in pixels that scales them. */
function placeStones(random: Random, size: Size, unit: number): Stone[] {
    const stones: Stone[] = [];
    const cells = new Map<string, Stone[]>();
    const cell = unit * 0.15;
    const near = (x: number, y: number) => {
        const found: Stone[] = [];
        for (let column = -1; column <= 1; ++column) {
            for (let row = -1; row <= 1; ++row) {
                found.push(...(cells.get(`${Math.floor(x / cell) + column},${Math.floor(y / cell) + row}`) ?? []));
            }
        }
        return found;
    };
    const tries = Math.round((size.width * size.height) / (unit * unit)) * 2600;
    for (let at = 0; at < tries; ++at) {
        const x = (1.1 * random() - 0.05) * size.width;
        const y = (1.1 * random() - 0.05) * size.height;
        const wanted = unit * (0.07 - 0.055 * Math.pow(at / tries, 0.35));
        const radius = Math.min(wanted, ...near(x, y).map((each) => Math.hypot(x - each.x, y - each.y) - each.radius));
        if (radius < unit * 0.011) {
            continue;
        }
        const stone = { x, y, radius };
        stones.push(stone);
        const key = `${Math.floor(x / cell)},${Math.floor(y / cell)}`;
        cells.set(key, [...(cells.get(key) ?? []), stone]);
    }
    return stones;
}

/** Begins a path along an uneven round outline. */
function outline(context: CanvasRenderingContext2D, random: Random, radius: number): void {
    const phase = 6.28 * random();
    const flat = 0.8 + 0.2 * random();
    context.beginPath();
    for (let step = 0; step < 28; ++step) {
        const angle = (step / 28) * 2 * Math.PI;
        const wave = 1 + 0.05 * Math.sin(2 * angle + phase) + 0.035 * Math.sin(3 * angle - 2 * phase);
        context.lineTo(radius * wave * Math.cos(angle), radius * wave * flat * Math.sin(angle));
    }
    context.closePath();
}

function paintStone(context: CanvasRenderingContext2D, random: Random, stone: Stone): void {
    const [hue, saturation, light] = stoneColors[Math.floor(random() * stoneColors.length)];
    const shade = light + 10 * (random() - 0.5);
    const radius = stone.radius * 1.04;
    context.save();
    context.translate(stone.x, stone.y);
    context.rotate(6.28 * random());
    const turn = context.getTransform();
    outline(context, random, radius);
    context.shadowColor = "rgb(0 0 0 / 0.75)";
    context.shadowBlur = radius * 0.35;
    context.shadowOffsetX = radius * 0.1;
    context.shadowOffsetY = radius * 0.16;
    context.fillStyle = `hsl(${hue} ${saturation}% ${shade}%)`;
    context.fill();
    context.shadowColor = "transparent";
    context.clip();
    paintVeins(context, random, radius, shade);
    // The light comes from the upper left, so the stone's rotation is removed.
    context.setTransform(1, 0, 0, 1, turn.e, turn.f);
    const glow = context.createRadialGradient(-radius * 0.4, -radius * 0.45, 0, 0, 0, radius * 1.15);
    glow.addColorStop(0, "rgb(255 250 235 / 0.42)");
    glow.addColorStop(0.45, "rgb(255 250 235 / 0.04)");
    glow.addColorStop(0.75, "rgb(10 20 30 / 0.12)");
    glow.addColorStop(1, "rgb(5 12 20 / 0.62)");
    context.fillStyle = glow;
    context.fillRect(-radius * 1.2, -radius * 1.2, radius * 2.4, radius * 2.4);
    context.restore();
}

function paintVeins(context: CanvasRenderingContext2D, random: Random, radius: number, light: number): void {
    const veins = random() < 0.35 ? 1 + Math.floor(3 * random()) : 0;
    for (let vein = 0; vein < veins; ++vein) {
        const height = radius * 1.4 * (random() - 0.5);
        context.beginPath();
        context.moveTo(-radius * 1.2, height);
        context.quadraticCurveTo(0, height + radius * (random() - 0.5), radius * 1.2, height);
        context.lineWidth = radius * (0.03 + 0.09 * random());
        context.strokeStyle = light > 50 ? "rgb(80 70 60 / 0.3)" : "rgb(240 235 225 / 0.4)";
        context.stroke();
    }
    for (let speck = 0; speck < radius * 0.9; ++speck) {
        const angle = 6.28 * random();
        const way = radius * Math.sqrt(random());
        context.fillStyle = random() < 0.5 ? "rgb(255 255 255 / 0.16)" : "rgb(0 0 0 / 0.2)";
        const grain = Math.max(1, radius * 0.03 * (0.5 + random()));
        context.fillRect(way * Math.cos(angle), way * Math.sin(angle), grain, grain);
    }
}

/** Paints pebbles on the bed of a clear brook. */
export function paintPebbles(context: CanvasRenderingContext2D, size: Size): void {
    const unit = Math.min(size.width, size.height) * 1.15;
    const random = makeRandom(20);
    context.fillStyle = "hsl(28 22% 16%)";
    context.fillRect(0, 0, size.width, size.height);
    for (const stone of placeStones(random, size, unit)) {
        paintStone(context, random, stone);
    }
    shadeDepth(context, size, "rgb(150 205 215 / 0.16)", "rgb(2 22 38 / 0.55)");
}

/** Lightens the middle and darkens the edges, as if the water were deeper there. */
function shadeDepth(context: CanvasRenderingContext2D, size: Size, near: string, far: string): void {
    const { width, height } = size;
    const depth = context.createRadialGradient(
        width * 0.42,
        height * 0.36,
        0,
        width * 0.5,
        height * 0.5,
        Math.hypot(width, height) * 0.62,
    );
    depth.addColorStop(0, near);
    depth.addColorStop(1, far);
    context.fillStyle = depth;
    context.fillRect(0, 0, width, height);
}

function paintLeaf(context: CanvasRenderingContext2D, random: Random, length: number): void {
    const hue = 8 + 42 * random();
    const gradient = context.createLinearGradient(0, -length / 2, 0, length / 2);
    gradient.addColorStop(0, `hsl(${hue} 82% ${38 + 16 * random()}%)`);
    gradient.addColorStop(1, `hsl(${hue - 8} 78% ${24 + 12 * random()}%)`);
    const belly = length * (0.26 + 0.1 * random());
    context.beginPath();
    context.moveTo(0, -length / 2);
    context.bezierCurveTo(belly, -length * 0.3, belly, length * 0.15, 0, length / 2);
    context.bezierCurveTo(-belly, length * 0.15, -belly, -length * 0.3, 0, -length / 2);
    context.shadowColor = "rgb(0 0 0 / 0.6)";
    context.shadowBlur = length * 0.16;
    context.shadowOffsetX = length * 0.07;
    context.shadowOffsetY = length * 0.12;
    context.fillStyle = gradient;
    context.fill();
    context.shadowColor = "transparent";
    context.strokeStyle = `hsl(${hue + 12} 60% 66% / 0.5)`;
    context.lineWidth = Math.max(1, length * 0.012);
    context.beginPath();
    context.moveTo(0, -length / 2);
    context.lineTo(0, length * 0.62);
    for (let rib = -0.32; rib < 0.36; rib += 0.11) {
        const reach = belly * 0.62 * Math.cos(rib * 2.6);
        context.moveTo(-reach, length * (rib - 0.1));
        context.lineTo(0, length * rib);
        context.lineTo(reach, length * (rib - 0.1));
    }
    context.stroke();
}

/** Paints autumn leaves on a dark pond. */
export function paintLeaves(context: CanvasRenderingContext2D, size: Size): void {
    const unit = Math.min(size.width, size.height);
    const random = makeRandom(7);
    const water = context.createLinearGradient(0, 0, size.width * 0.4, size.height);
    water.addColorStop(0, "hsl(192 42% 26%)");
    water.addColorStop(0.5, "hsl(200 46% 15%)");
    water.addColorStop(1, "hsl(214 52% 9%)");
    context.fillStyle = water;
    context.fillRect(0, 0, size.width, size.height);
    const leaves = Math.round((62 * size.width * size.height) / (unit * unit));
    for (let at = 0; at < leaves; ++at) {
        context.save();
        context.translate(random() * size.width, random() * size.height);
        context.rotate(6.28 * random());
        context.globalAlpha = 0.35 + 0.65 * (at / leaves); // the first leaves lie deeper in the water
        paintLeaf(context, random, unit * (0.09 + 0.13 * random()));
        context.restore();
    }
    shadeDepth(context, size, "rgb(190 225 235 / 0.1)", "rgb(0 8 20 / 0.5)");
}
