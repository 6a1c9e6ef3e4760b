// The page for those who use no mouse, another language, a small screen, no network: and the page as one file.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { get } from 'node:http';
import { createRequire } from 'node:module';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { assertSamePicture, kExamples, kovalune, kPatience, kRoot, Lab } from './lab.mjs';

/** @type {Lab} */
let lab;
before(async () => { lab = await Lab.open(); });
after(() => lab.close());

const kAxe = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
const kSizes = { desk: { width: 1280, height: 800 }, tablet: { width: 820, height: 1180, touch: true }, phone: { width: 390, height: 844, touch: true } };

/** What an automated check of accessibility finds wrong, in a line each. */
async function flawsOf(page) {
    // The page's own policy lets no script in; what tests bring comes by the debugger.
    await page.tab.evaluate(kAxe);
    return page.tab.evaluate(async () => {
        const { violations } = await globalThis.axe.run(document, { runOnly: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'best-practice'] });
        return violations.flatMap(({ id, nodes }) => nodes.map((node) => `${id}: ${node.target.join(' ')}`));
    });
}

describe('accessibility', () => {
    for (const [name, size] of Object.entries(kSizes)) {
        for (const language of ['en', 'ja']) {
            test(`nothing is found on a ${name} in ${language}`, async () => {
                const page = await lab.page({ ...size, language });
                assert.deepEqual(await flawsOf(page), []);
                await page.close();
            });
        }
    }

    test('nor in the dark, with all groups open, an error told, and a dialog', async () => {
        const page = await lab.page();
        await page.tab.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: 'dark' }]);
        await page.tab.$$eval('details', (all) => all.forEach((each) => each.setAttribute('open', '')));
        await page.choose('#open-files', join(kRoot, 'README.md'));
        await page.tab.waitForFunction(() => !document.getElementById('alert').hidden, { timeout: kPatience });
        assert.deepEqual(await flawsOf(page), []);
        await page.tab.click('#selfcheck');
        await page.tab.waitForFunction(() => document.getElementById('selfcheck-dialog').open, { timeout: kPatience });
        assert.deepEqual(await flawsOf(page), []);
        await page.close();
    });
});

describe('the keyboard alone', () => {
    test('reaches everything that can be pressed or changed', async () => {
        const page = await lab.page();
        const wanted = await page.tab.$$eval('button, input, select, summary, [tabindex="0"]', (all) => all
            .filter((each) => each.checkVisibility() && !each.disabled && each.tabIndex >= 0
                && !(each.closest('details:not([open])') && each.tagName !== 'SUMMARY')).length);
        const seen = new Set();
        await page.tab.focus('#open');
        for (let step = 0; step < 3 * wanted; ++step) {
            const place = await page.tab.evaluate(() => [...document.querySelectorAll('*')].indexOf(document.activeElement));
            seen.add(place);
            await page.tab.keyboard.press('Tab');
        }
        assert.ok(seen.size >= wanted * 0.95, `${seen.size} of ${wanted}`);
        await page.close();
    });

    test('makes a pair, moves an amount and saves', async () => {
        const page = await lab.page();
        await page.rendered(() => page.choose('#open-files', join(kExamples, 'cel1.png')));
        for (const color of ['#3264B4', '#1E4682']) {
            await page.tab.waitForSelector(`#swatches [data-color="${color}"]`, { timeout: kPatience });
            await page.tab.focus(`#swatches [data-color="${color}"]`);
            await (color === '#1E4682' ? page.rendered(() => page.tab.keyboard.press('Enter')) : page.tab.keyboard.press('Enter'));
        }
        await page.tab.focus('[data-control="1 : Boundary Blur"] input[type="range"]');
        const before = await page.value(page.control('1 : Boundary Blur'));
        await page.rendered(() => page.tab.keyboard.press('ArrowRight'));
        assert.notEqual(await page.value(page.control('1 : Boundary Blur')), before);
        await page.tab.focus('#save-picture');
        const file = await page.saved(() => page.tab.keyboard.press('Enter'));
        assert.match(file, /cel1-soft\.png$/);
        page.quiet();
        await page.close();
    });

    test('the focus can always be seen', async () => {
        const page = await lab.page();
        await page.tab.focus('#open');
        for (let step = 0; step < 25; ++step) {
            await page.tab.keyboard.press('Tab');
            const outline = await page.tab.evaluate(() => {
                const { outlineStyle, outlineWidth, boxShadow } = getComputedStyle(document.activeElement);
                return outlineStyle !== 'none' && parseFloat(outlineWidth) >= 1 ? 'outline' : boxShadow;
            });
            assert.notEqual(outline, 'none', await page.tab.evaluate(() => document.activeElement.outerHTML.slice(0, 200)));
        }
        await page.close();
    });
});

describe('a small screen', () => {
    test('shows a link\'s picture, and its amounts can be moved', async () => {
        const page = await lab.page(kSizes.phone);
        const [width, scroll] = await page.tab.evaluate(() => [innerWidth, document.documentElement.scrollWidth]);
        assert.ok(scroll <= width, `${scroll} of ${width}`);
        const slider = '[data-control="1 : Boundary Blur"] input[type="range"]';
        await page.rendered(async () => {
            await page.tab.$eval(slider, (input) => {
                input.closest('details').setAttribute('open', '');
                input.scrollIntoView({ block: 'center' });
            });
            const box = await (await page.tab.$(slider)).boundingBox();
            assert.ok(box.width > 60 && box.x >= 0 && box.x + box.width <= width, JSON.stringify(box));
            await page.tab.touchscreen.tap(box.x + box.width * 0.4, box.y + box.height / 2);
        });
        const moved = await page.value(page.control('1 : Boundary Blur'));
        const other = await lab.page({ ...kSizes.phone, address: page.tab.url() });
        assert.equal(await other.value(other.control('1 : Boundary Blur')), moved);
        await other.close();
        await page.close();
    });
});

describe('languages', () => {
    test('English and Japanese have the same texts', async () => {
        // Not by its name: where no package says so, an older node takes such a file for another kind of module.
        const [english, japanese] = await Promise.all(['en', 'ja'].map((name) => import(
            `data:text/javascript,${encodeURIComponent(readFileSync(join(kRoot, `adapters/web/page/texts.${name}.js`), 'utf8'))}`)));
        const keys = (module) => Object.keys(Object.values(module)[0]).sort();
        assert.deepEqual(keys(japanese), keys(english));
        assert.ok(keys(english).length > 50);
        for (const [key, text] of Object.entries(Object.values(english)[0])) {
            const holes = (words) => [...words.matchAll(/\{(\w+)\}/g)].map(([, name]) => name).sort();
            assert.deepEqual(holes(Object.values(japanese)[0][key]), holes(text), key);
        }
    });

    test('the page speaks the visitor\'s, and another one where it is chosen; controls keep the effect\'s words', async () => {
        const page = await lab.page({ language: 'ja' });
        assert.equal(await page.tab.evaluate(() => document.documentElement.lang), 'ja');
        assert.match(await page.text('#open'), /[\u3040-\u30ff\u4e00-\u9fff]/);
        assert.match(await page.tab.$eval('[data-control="Blur Amount"]', (row) => row.innerText), /Blur Amount/);
        await page.tab.select('#language', 'en');
        assert.match(await page.text('#open'), /^[ -~…]+$/);
        await page.close();
    });
});

describe('what cannot be done', () => {
    test('two colours that are no pair are told in the visitor\'s language', async () => {
        const page = await lab.page({ language: 'ja' });
        await page.tab.waitForSelector('#swatches [data-color="#3264B4"]', { timeout: kPatience });
        for (let click = 0; click < 2; ++click) {
            await page.tab.$eval('#swatches [data-color="#3264B4"]', (swatch) => swatch.click());
        }
        await page.tab.waitForFunction(() => !document.getElementById('alert').hidden, { timeout: kPatience });
        assert.match(await page.text('#alert-text'), /どちらも #3264B4/);
        await page.close();
    });

    test('an address that is none gets an answer, and the server goes on', async () => {
        const statusOf = (path) => new Promise((resolve, reject) => get({ host: '127.0.0.1', port: new URL(lab.address).port, path },
            (reply) => resolve(reply.resume().statusCode)).on('error', reject));
        assert.deepEqual([await statusOf('/%'), await statusOf('//'), await statusOf('/nosuch'), await statusOf('/')],
            [404, 404, 404, 200]);
    });
});

describe('no network', () => {
    test('everything goes on without it', async () => {
        const page = await lab.page();
        await page.tab.setOfflineMode(true);
        await page.rendered(() => page.choose('#open-files', join(kExamples, 'cel3.png')));
        await page.rendered(() => page.type('Blur Amount', '9'));
        await page.saved(() => page.tab.click('#save-picture'));
        page.quiet();
        await page.close();
    });

    test('the single file opens from a disk, and makes the same picture', async () => {
        const file = process.env.KOVALUNE_SINGLE ?? join(kRoot, 'out/kovalune.html');
        const page = await lab.page({ address: `file://${file}` });
        assert.equal(await page.tab.evaluate(() => globalThis.crossOriginIsolated), false);
        await page.rendered(() => page.type('1 : Boundary Blur', '23.4'));
        const settings = await page.saved(() => page.tab.click('#save-settings'));
        const picture = await page.saved(() => page.tab.click('#save-picture'));
        const expected = lab.path('single.png');
        kovalune('render', join(kExamples, 'cel1.png'), '-o', expected, '--factory', '--params', settings);
        assertSamePicture(picture, expected);
        page.quiet();
        await page.close();
    });
});
