// How long a moved slider takes on the page at 1920x1080, beside the command with the plain kernels.
//   node bench.mjs     prints a table, of a page with threads and of one without. On a machine that does nothing else

import { copyFileSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import { kExamples, kovalune, Lab } from './lab.mjs';

const kMoves = 12;

/** @param {number[]} times */
const median = (times) => [...times].sort((a, b) => a - b)[Math.floor(times.length / 2)];

/** Milliseconds from a slider's move to the first picture of it on the screen, and to the whole one. */
async function moved(page) {
    return page.tab.evaluate(async () => {
        const slider = document.querySelector('[data-control="1 : Boundary Blur"] input[type="range"]');
        const root = document.documentElement;
        const start = performance.now();
        const times = { preview: 0, whole: 0, effect: 0 };
        const over = new Promise((resolve) => {
            const watch = new MutationObserver(() => requestAnimationFrame(() => {
                const now = performance.now() - start;
                const state = root.dataset.state;
                if (times.preview === 0 && (state === 'draft' || state === 'ready')) {
                    times.preview = now;
                }
                if (state === 'ready') {
                    times.whole = now;
                    times.effect = Number(root.dataset.milliseconds);
                    watch.disconnect();
                    resolve(times);
                }
            }));
            watch.observe(root, { attributes: true, attributeFilter: ['data-state'] });
        });
        slider.value = Number(slider.value) === 60 ? '61' : '60';
        slider.dispatchEvent(new Event('input', { bubbles: true }));
        return over;
    });
}

/** The same frames by the command, whose own time for each stands in its log; the first one is cold. */
function native(folder, threads) {
    for (let move = 0; move <= kMoves; ++move) {
        copyFileSync(join(kExamples, 'cel1.png'), join(folder, `cel.${String(move).padStart(4, '0')}.png`));
    }
    const log = join(folder, 'log');
    kovalune('render', join(folder, 'cel.####.png'), '-o', join(folder, 'soft.####.png'), '--factory', '--params',
        join(kExamples, 'cel1.params'), '--cpu', 'plain', '--threads', String(threads), '--jobs', '1', '--force', '--log', log);
    const frames = readFileSync(log, 'utf8').trim().split('\n').map((line) => JSON.parse(line));
    return median(frames.slice(1).map((frame) => frame.milliseconds.effect));
}

console.log('page          threads  first preview  whole frame  effect in it  the command\'s, plain  times');
for (const isolated of [true, false]) {
    const lab = await Lab.open({ isolated });
    const page = await lab.page();
    const threads = isolated ? await page.tab.evaluate(() => navigator.hardwareConcurrency) : 1;
    const all = [];
    for (let move = 0; move < kMoves; ++move) {
        all.push(await moved(page));
    }
    const [preview, whole, effect] = ['preview', 'whole', 'effect'].map((name) => median(all.map((times) => times[name])));
    const plain = native(lab.folder, threads);
    console.log((isolated ? 'isolated' : 'not isolated').padEnd(13), String(threads).padEnd(8), `${preview.toFixed(0)} ms`.padEnd(14),
        `${whole.toFixed(0)} ms`.padEnd(12), `${effect.toFixed(0)} ms`.padEnd(13), `${plain.toFixed(0)} ms`.padEnd(21),
        (effect / plain).toFixed(2));
    await lab.close();
}
