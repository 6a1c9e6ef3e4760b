// The page as a person uses it, in a real browser: pictures in, colours, sliders, views, passes, and what is taken home, which
// must be what the command makes of the same settings, sample for sample.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { copyFileSync, mkdirSync, readFileSync, readdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { deflateSync } from 'node:zlib';
import { assertSamePicture, kExamples, kovalune, kPatience, Lab } from './lab.mjs';

/** @type {Lab} */
let lab;
before(async () => { lab = await Lab.open(); });
after(() => lab.close());

const kCel = join(kExamples, 'cel1.png');

/** Of cel1.png: the light and the shadow of the blue jacket. */
const kLight = { x: 960, y: 1000, hex: '#3264B4' };

/** A page with this picture in place of the sample. */
async function pageWith(file, how = {}) {
    const page = await lab.page(how);
    await page.rendered(() => page.choose('#open-files', file));
    return page;
}

/** Saves settings and picture, and holds the picture beside the command's. */
async function assertAsTheCommandMakesIt(page, input) {
    const settings = await page.saved(() => page.tab.click('#save-settings'));
    const picture = await page.saved(() => page.tab.click('#save-picture'));
    const expected = lab.path(`expected-${Math.random().toString(36).slice(2)}.png`);
    kovalune('render', input, '-o', expected, '--factory', '--params', settings);
    assertSamePicture(picture, expected);
}


describe('opening', () => {
    test('shows the sample through the effect at once, and asks nobody else for anything', async () => {
        const page = await lab.page();
        assert.match(await page.text('#picture-label'), /1920x1080, RGBA, 8 bits, straight alpha/);
        const selected = await page.text('#report-rows').catch(() => '');
        assert.equal(typeof selected, 'string');
        page.quiet();
        await page.close();
    });

    test('takes a picture that is dropped, chosen or pasted', async () => {
        for (const way of ['drop', 'choose', 'paste']) {
            const page = await lab.page();
            const file = lab.convert(`small-${way}.png`, '-size', '40x30', 'xc:#3264B4', '-fill', '#1E4682', '-draw', 'rectangle 20,0 39,29');
            await page.rendered(() => (way === 'choose' ? page.choose('#open-files', file) : page.hand(way, file)));
            assert.match(await page.text('#picture-label'), /40x30/, way);
            page.quiet();
            await page.close();
        }
    });

    test('says of a pasted picture that the browser has had it in its hands', async () => {
        const page = await lab.page();
        await page.rendered(() => page.hand('paste', lab.convert('pasted.png', '-size', '8x8', 'xc:red')));
        assert.match(await page.text('body'), /brows/i);
        assert.match(await page.tab.evaluate(() => [...document.querySelectorAll('[role=status],[role=alert]')]
            .map((each) => each.textContent).join(' ')), /paste|re-encoded|through the browser/i);
        await page.close();
    });

    test('refuses what it cannot read with a word on what to save instead, and goes on with what it had', async () => {
        const page = await lab.page();
        const wrong = {
            'scan.tif': [Buffer.from('II*\0\x08\0\0\0'), /TIFF file; save the drawing as PNG/],
            'beauty.exr': [Buffer.from([0x76, 0x2f, 0x31, 0x01, 2, 0, 0, 0]), /OpenEXR file; save the drawing as PNG/],
            'short.png': [readFileSync(kCel).subarray(0, 20000), /cut short/],
            'notes.png': [Buffer.from('no picture at all'), /save the drawing as PNG/],
            'empty.png': [Buffer.alloc(0), /save the drawing as PNG/],
        };
        const damaged = Buffer.from(readFileSync(kCel));
        damaged[damaged.length - 400] ^= 1;
        wrong['damaged.png'] = [damaged, /damaged/];
        for (const [name, [bytes, words]] of Object.entries(wrong)) {
            writeFileSync(lab.path(name), bytes);
            await page.choose('#open-files', lab.path(name));
            await page.tab.waitForFunction((file) => document.getElementById('alert').textContent.includes(file),
                { timeout: kPatience }, name);
            assert.match(await page.text('#alert'), words);
            assert.match(await page.text('#picture-label'), /1920x1080/);
        }
        await page.rendered(() => page.choose('#open-files', kCel));
        assert.equal(await page.tab.$eval('#alert', (alert) => alert.hidden), true);
        await page.close();
    });

    test('shows what it has opened, although a newer file cannot be read', async () => {
        const page = await lab.page();
        const good = lab.convert('good.png', '-size', '3000x3000', 'xc:#3264B4'); // so large that it is being opened yet
        const bad = lab.path('bad.png');
        writeFileSync(bad, 'no picture');
        await page.hand('drop', good);
        await page.hand('drop', bad);
        await page.tab.waitForFunction(() => document.getElementById('alert').textContent.includes('bad.png'), { timeout: kPatience });
        await page.ready();
        const [width, shown] = await page.tab.evaluate(() => [document.getElementById('after').width,
            document.getElementById('picture-label').textContent]);
        assert.match(shown, new RegExp(` ${width}x`));
        await page.close();
    });

    test('takes a name with the date, and one with more digits than a number has, for a name', async () => {
        for (const name of ['20261123131943.png', '123456789012345678901234567890.png']) {
            const page = await pageWith(lab.convert(name, '-size', '8x6', 'xc:#3264B4'));
            assert.match(await page.text('#picture-label'), /8x6/);
            page.quiet();
            await page.close();
        }
    });

    test('reads a picture with a damaged note, as the command does', async () => {
        const file = lab.convert('noted.png', '-size', '8x6', 'xc:#3264B4', '-set', 'comment', 'a note');
        const bytes = readFileSync(file);
        const place = bytes.indexOf('a note');
        assert.ok(place > 0);
        bytes[place] ^= 1;
        writeFileSync(file, bytes);
        const page = await pageWith(file);
        await assertAsTheCommandMakesIt(page, file);
        await page.close();
    });

    test('refuses a picture that is too large for its memory, with the size that fits', async () => {
        const page = await lab.page();
        const file = lab.path('huge.png');
        writeFileSync(file, greyPng(12000, 9000));
        await page.choose('#open-files', file);
        await page.tab.waitForFunction(() => !document.getElementById('alert').hidden, { timeout: kPatience });
        assert.match(await page.text('#alert'), /12000 x 9000 pixels, more than fits.* \d{4} x \d{4} pixels do/s);
        await page.close();
    });
});

describe('a frame is the command\'s, sample for sample', () => {
    const settings = { 'Blur Amount': '0', 'Color 1': '#3264B4', '1 : Color': '#1E4682', '1 : Boundary Blur': '12.5' };
    /** Each kind of file that there is. */
    const kinds = {
        'rgba8.png': ['PNG32:'], 'rgb8.png': ['PNG24:', '-background', 'white', '-flatten'],
        'palette.png': ['PNG8:', '-background', 'white', '-flatten', '-dither', 'None', '-colors', '60'],
        'rgba16.png': ['PNG64:', '-depth', '16'], 'rgb16.png': ['PNG48:', '-background', 'white', '-flatten', '-depth', '16'],
        'interlaced.png': ['PNG32:', '-interlace', 'PNG'], 'picture.tga': ['TGA:'],
    };
    for (const [name, [format, ...how]] of Object.entries(kinds)) {
        test(name, async () => {
            const file = lab.path(name);
            execFileSync('convert', [kCel, '-filter', 'point', '-resize', '25%', ...how, `${format}${file}`]);
            const page = await pageWith(file);
            for (const [label, value] of Object.entries(settings)) {
                await page.rendered(() => page.type(label, value));
            }
            await assertAsTheCommandMakesIt(page, file);
            page.quiet();
            await page.close();
        });
    }

    for (const size of ['1x1', '3x2', '5x1']) {
        test(`of ${size}`, async () => {
            const file = lab.convert(`tiny-${size}.png`, '-size', size, 'xc:#3264B480');
            const page = await pageWith(file);
            await page.rendered(() => page.type('Color 1', '#3264B4'));
            await page.rendered(() => page.type('Blur Amount', '40'));
            await assertAsTheCommandMakesIt(page, file);
            page.quiet();
            await page.close();
        });
    }

    test('grey, where nothing is selected but by lightness', async () => {
        const file = lab.convert('grey.png', '-size', '60x40', 'xc:gray(60%)', '-fill', 'gray(30%)', '-draw', 'rectangle 30,0 59,39',
            '-colorspace', 'gray', '-depth', '8', '-define', 'png:color-type=0');
        const page = await pageWith(file);
        const hex = (await page.tab.$$eval('#swatches button', (all) => all.map((each) => each.getAttribute('aria-label'))))
            .map((label) => /#[0-9A-F]{6}/.exec(label)[0]);
        await page.rendered(() => page.type('Blur Amount', '7'));
        await page.rendered(() => page.type('Color 1', hex[0]));
        await assertAsTheCommandMakesIt(page, file);
        await page.close();
    });

    test('that takes most of the memory that there is', async () => {
        const file = lab.path('large.png');
        execFileSync('convert', [kCel, '-crop', '1080x1080+200+0', '+repage', '-filter', 'point', '-resize', '4400x4400!', file]);
        const page = await pageWith(file);
        await page.rendered(() => page.type('Color 1', '#3264B4'));
        await assertAsTheCommandMakesIt(page, file);
        await page.close();
    });

    test('with two threads and with one', async () => {
        const bare = await Lab.open({ isolated: false });
        try {
            const page = await bare.page();
            assert.equal(await page.tab.evaluate(() => crossOriginIsolated), false);
            await page.rendered(() => page.type('1 : Boundary Blur', '33'));
            await assertAsTheCommandMakesIt(page, kCel);
            page.quiet();
        } finally {
            await bare.close();
        }
        const page = await lab.page();
        assert.equal(await page.tab.evaluate(() => crossOriginIsolated), true);
        await page.rendered(() => page.type('1 : Boundary Blur', '33'));
        await assertAsTheCommandMakesIt(page, kCel);
        await page.close();
    });
});

describe('setting', () => {
    test('two clicks put a light into Base and its shadow into the next free stage, with the amounts of suggest', async () => {
        const page = await pageWith(kCel);
        const suggested = kovalune('suggest', kCel, '-o', lab.path('suggested.params'));
        const blur = /#1E4682 .*shadow of .*#3264B4.*Boundary Blur ([0-9.]+)/.exec(suggested)?.[1];
        assert.ok(blur, suggested);
        const [light, shadow] = await swatchesOf(page, ['#3264B4', '#1E4682']);
        await light.click();
        await page.rendered(() => shadow.click());
        const values = await valuesOf(page, ['Color 1', '1 : Color', '1 : Boundary Blur', 'Blur Amount']);
        assert.deepEqual(values, ['#3264B4', '#1E4682', blur, '0']);
        await assertAsTheCommandMakesIt(page, kCel);
        page.quiet();
        await page.close();
    });

    test('a click in the picture is a click on its colour, and Escape gives the pair up', async () => {
        const page = await pageWith(kCel);
        await page.clickPixel(kLight.x, kLight.y);
        await page.tab.waitForFunction(() => document.getElementById('guide').dataset.step !== 'start', { timeout: kPatience });
        assert.match(await page.text('#guide'), /#3264B4/);
        await page.tab.keyboard.press('Escape');
        await page.tab.waitForFunction(() => document.getElementById('guide').dataset.step === 'start', { timeout: kPatience });
        await page.close();
    });

    test('a colour that is armed gets what is clicked', async () => {
        const page = await pageWith(kCel);
        await page.tab.$eval('[data-control="1 : Color"]', (row) => row.closest('details').setAttribute('open', ''));
        await page.tab.click('[data-control="1 : Color"] .color-button');
        assert.equal(await page.tab.$eval('#guide', (guide) => guide.dataset.step), 'slot');
        await page.rendered(() => page.clickPixel(kLight.x, kLight.y));
        assert.deepEqual(await valuesOf(page, ['1 : Color']), [kLight.hex]);
        await page.close();
    });

    test('what a slot selects is tinted while the pointer is on it', async () => {
        const page = await lab.page();
        await page.tab.$eval('[data-control="1 : Color"]', (row) => row.scrollIntoView({ block: 'center' }));
        await page.tab.hover('[data-control="1 : Color"]');
        await page.tab.waitForFunction(() => !document.getElementById('tint').hidden, { timeout: kPatience });
        const tinted = await page.tab.$eval('#tint', (canvas) => {
            const { data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
            let count = 0;
            for (let i = 3; i < data.length; i += 4) {
                count += data[i - 3] > 200 ? 1 : 0; // the tint's red; what is not selected is darkened
            }
            return count;
        });
        assert.equal(tinted, 43031); // as the command's report tells of this colour
        await page.close();
    });

    test('a colour that selects nothing says so', async () => {
        const page = await lab.page();
        await page.rendered(() => page.type('1 : Color', '#123456'));
        assert.match(await page.tab.$eval('[data-control="1 : Color"]', (row) => row.innerText), /No pixel of this frame has this colour/);
        await page.close();
    });

    test('a value out of range is refused where it stands, with the range', async () => {
        const page = await lab.page();
        await page.type('Blur Amount', '1001');
        assert.match(await page.tab.$eval('[data-control="Blur Amount"]', (row) => row.innerText), /0.*1000/);
        await page.close();
    });

    test('undo and redo go through the changes, and a moved slider is one of them', async () => {
        const page = await lab.page();
        const first = (await valuesOf(page, ['1 : Boundary Blur']))[0];
        const slider = await page.tab.$('[data-control="1 : Boundary Blur"] input[type="range"]');
        await slider.scrollIntoView();
        const box = await slider.boundingBox();
        await page.rendered(async () => {
            await page.tab.mouse.move(box.x + box.width * 0.3, box.y + box.height / 2);
            await page.tab.mouse.down();
            for (const share of [0.4, 0.5, 0.6]) {
                await page.tab.mouse.move(box.x + box.width * share, box.y + box.height / 2);
            }
            await page.tab.mouse.up();
        });
        const moved = (await valuesOf(page, ['1 : Boundary Blur']))[0];
        assert.notEqual(moved, first);
        await page.rendered(() => page.tab.click('#undo'));
        assert.deepEqual(await valuesOf(page, ['1 : Boundary Blur']), [first]);
        await page.rendered(() => page.tab.click('#redo'));
        assert.deepEqual(await valuesOf(page, ['1 : Boundary Blur']), [moved]);
        await page.close();
    });

    test('controls are greyed by the effect\'s own rules', async () => {
        const page = await lab.page();
        const isGrey = (label) => page.tab.$eval(page.control(label), (input) => input.disabled);
        assert.equal(await isGrey('1 : Boundary Blur'), false);
        await page.rendered(() => page.tab.$eval('[data-control="1 : Enable Process"] input', (box) => box.click()));
        assert.equal(await isGrey('1 : Boundary Blur'), true);
        await page.close();
    });

    test('suggest proposes what the command proposes', async () => {
        const page = await pageWith(kCel);
        await page.rendered(() => page.tab.click('#suggest'));
        const settings = await page.saved(() => page.tab.click('#save-settings'));
        const proposed = lab.path('proposed.params');
        kovalune('suggest', kCel, '-o', proposed);
        const [ours, theirs] = ['ours.png', 'theirs.png'].map((name) => lab.path(name));
        kovalune('render', kCel, '-o', ours, '--factory', '--params', settings);
        kovalune('render', kCel, '-o', theirs, '--factory', '--params', proposed);
        assertSamePicture(ours, theirs);
        await page.close();
    });

    test('a fifth pair opens the next pass', async () => {
        const page = await pageWith(kCel);
        const pairs = await page.tab.$$eval('#pairs li', (rows) => rows.map((row) => row.innerText.match(/#[0-9A-F]{6}/g)));
        assert.ok(pairs.length > 4, `${pairs.length} pairs`);
        for (const [shadow, light] of pairs.slice(0, 5)) {
            const [first, second] = await swatchesOf(page, [light, shadow]);
            await first.click();
            await second.click();
            await new Promise((resolve) => setTimeout(resolve, 300));
        }
        await page.tab.waitForFunction(() => document.querySelectorAll('#passes [role=tab]').length === 2
            || document.getElementById('guide').querySelector('button'), { timeout: kPatience });
        const offer = await page.tab.$('#guide button');
        if (offer) {
            await offer.click();
        }
        await page.tab.waitForFunction(() => document.querySelectorAll('#passes [role=tab]').length === 2, { timeout: kPatience });
        await page.ready();
        await assertAsTheCommandMakesIt(page, kCel);
        await page.close();
    });
});

describe('seeing', () => {
    test('each view is the command\'s', async () => {
        const page = await lab.page();
        for (const view of ['Extract', 'Base', 'Process 2', 'Normal']) {
            await page.rendered(() => page.tab.select(page.control('View'), view));
            await assertAsTheCommandMakesIt(page, kCel);
        }
        await page.close();
    });

    test('the canvas has the very samples, those of transparent pixels aside', async () => {
        const page = await lab.page();
        const shown = await canvasOf(page, '#after');
        const expected = lab.path('shown.png');
        kovalune('render', kCel, '-o', expected, '--factory', '--params', join(kExamples, 'cel1.params'));
        const raw = execFileSync('convert', [expected, '-depth', '8', 'RGBA:-'], { maxBuffer: 1 << 26 });
        assert.equal(differing(shown, raw), 0);
        await page.close();
    });

    test('before and after: by the wipe, and by a key', async () => {
        const page = await lab.page();
        const clip = () => page.tab.$eval('#after', (canvas) => getComputedStyle(canvas).clipPath + getComputedStyle(canvas).visibility);
        const whole = await clip();
        await page.tab.focus('#wipe');
        await page.tab.keyboard.press('End');
        assert.notEqual(await clip(), whole);
        await page.tab.keyboard.press('Home');
        assert.equal(await clip(), whole);
        await page.tab.focus('#stage');
        await page.tab.keyboard.down('b');
        assert.notEqual(await clip(), whole);
        await page.tab.keyboard.up('b');
        assert.equal(await clip(), whole);
        await page.close();
    });

    test('zooms to single pixels, unsmoothed, around the pointer', async () => {
        const page = await lab.page();
        const place = await page.placeOf(kLight.x, kLight.y);
        await page.tab.mouse.move(place.x, place.y);
        for (let i = 0; i < 30; ++i) {
            await page.tab.mouse.wheel({ deltaY: -200 });
        }
        await page.tab.waitForFunction(() => {
            const canvas = document.getElementById('after');
            return canvas.getBoundingClientRect().width / canvas.width >= 16;
        }, { timeout: kPatience });
        assert.equal(await page.tab.$eval('#after', (canvas) => getComputedStyle(canvas).imageRendering), 'pixelated');
        const now = await page.placeOf(kLight.x, kLight.y);
        const scale = await page.tab.$eval('#after', (canvas) => canvas.getBoundingClientRect().width / canvas.width);
        const away = Math.hypot(now.x - place.x, now.y - place.y) / scale;
        assert.ok(away < 3, `${away} pixels of the picture`); // the pointer could only stand on every second one
        await page.close();
    });
});

describe('taking home', () => {
    test('reload keeps the settings, and a link is a setting', async () => {
        const page = await lab.page();
        await page.rendered(() => page.type('1 : Boundary Blur', '41.5'));
        await page.tab.reload();
        await page.ready();
        assert.deepEqual(await valuesOf(page, ['1 : Boundary Blur']), ['41.5']);
        const other = await lab.page({ address: page.tab.url() });
        assert.deepEqual(await valuesOf(other, ['1 : Boundary Blur']), ['41.5']);
        await page.close();
        await other.close();
    });

    test('odd names of passes, keys, a region and remarks go through a link as they stand', async () => {
        const page = await lab.page();
        const file = lab.path('odd.params');
        writeFileSync(file, '[Version=2.0]\nRegion=0,0,900,1080\n[Pass 肌=a&b #1 +%20]\nBlur Amount@1=3\nBlur Amount@9=5\n'
            + 'Color 1=50,100,180\n[Pass p]\n1 : Color.r=30\n1 : Color.g=70\n1 : Color.b=130\n1 : Boundary Blur=12.5\n');
        await page.rendered(() => page.choose('#settings-file', file));
        const [before, url] = [readFileSync(await page.saved(() => page.tab.click('#save-settings')), 'utf8'), await addressOf(page)];
        assert.equal(before, readFileSync(file, 'utf8'));
        const other = await lab.page({ address: url });
        assert.equal(readFileSync(await other.saved(() => other.tab.click('#save-settings')), 'utf8'), before);
        await other.close();
        const expected = lab.path('odd.png');
        kovalune('render', kCel, '-o', expected, '--factory', '--params', file, '--frame', '0');
        assertSamePicture(await page.saved(() => page.tab.click('#save-picture')), expected);
        page.quiet();
        await page.close();
    });

    test('settings of almost a MiB are read', async () => {
        const page = await lab.page();
        const file = lab.path('long.params');
        writeFileSync(file, `[Version=1.0]\nBlur Amount=17\n${'; a remark that is long\n'.repeat(43000)}`);
        await page.rendered(() => page.choose('#settings-file', file));
        assert.deepEqual(await valuesOf(page, ['Blur Amount']), ['17']);
        page.quiet();
        await page.close();
    });

    test('a picture that is dropped while a sequence is saved gets into none of its frames', async () => {
        const page = await lab.page();
        const frames = [1, 2, 3].map((number) => lab.path(`whole.${number}.png`));
        frames.forEach((file) => copyFileSync(kCel, file));
        const other = lab.convert('other.png', '-size', '30x20', 'xc:#3264B4');
        await page.rendered(() => page.choose('#open-files', ...frames));
        const zip = await page.saved(async () => {
            await page.tab.click('#save-sequence');
            for (let again = 0; again < 12; ++again) {
                await page.hand('drop', other);
            }
        });
        const folder = lab.path('undisturbed');
        execFileSync('unzip', ['-q', zip, '-d', folder]);
        assert.deepEqual(readdirSync(folder).sort(), frames.map((file) => file.split('/').pop().replace('.png', '-soft.png')));
        for (const frame of frames) {
            const expected = lab.path(`undisturbed-${frame.split('/').pop()}`);
            const settings = lab.path('none.params');
            writeFileSync(settings, '[Version=1.0]\n');
            kovalune('render', frame, '-o', expected, '--factory', '--params', settings);
            assertSamePicture(join(folder, frame.split('/').pop().replace('.png', '-soft.png')), expected);
        }
        await page.tab.waitForFunction(() => document.getElementById('after').width === 30, { timeout: kPatience });
        await page.ready();
        await page.close();
    });

    test('a sequence of twelve with keys is the command\'s shot, in one zip', async () => {
        const page = await lab.page();
        const frames = readdirSync(join(kExamples, 'shot')).filter((name) => name.endsWith('.png')).map((name) => join(kExamples, 'shot', name));
        assert.equal(frames.length, 12);
        const settings = join(kExamples, 'shot/shot.params');
        await page.rendered(() => page.choose('#open-files', ...frames));
        await page.rendered(() => page.choose('#settings-file', settings));
        const zip = await page.saved(() => page.tab.click('#save-sequence'));
        const folder = lab.path('unzipped');
        execFileSync('unzip', ['-q', zip, '-d', folder]);
        kovalune('render', join(kExamples, 'shot/cel.####.png'), '-o', join(lab.path('shot'), 'cel.####.png'), '--mkdir', '--factory',
            '--params', settings);
        const unzipped = readdirSync(folder).sort();
        assert.equal(unzipped.length, 12);
        for (const [place, name] of readdirSync(lab.path('shot')).sort().entries()) {
            assertSamePicture(join(folder, unzipped[place]), join(lab.path('shot'), name));
        }
        page.quiet();
        await page.close();
    });

    test('the keys of a settings file count at the frame that is shown', async () => {
        const page = await lab.page();
        const frames = [1, 12].map((number) => join(kExamples, `shot/cel.${String(number).padStart(4, '0')}.png`));
        await page.rendered(() => page.choose('#open-files', ...frames));
        await page.rendered(() => page.choose('#settings-file', join(kExamples, 'shot/shot.params')));
        const seen = [];
        for (const step of ['#frame-first', '#frame-last']) {
            if (step === '#frame-last') {
                await page.rendered(() => page.tab.click(step));
            }
            seen.push((await valuesOf(page, ['1 : Boundary Blur']))[0]);
        }
        assert.notEqual(seen[0], seen[1]);
        assert.equal(await page.tab.$eval(page.control('1 : Boundary Blur'), (input) => input.disabled || input.readOnly), true);
        await page.close();
    });

    test('the command line that is copied makes the picture', async () => {
        const page = await lab.page();
        const folder = lab.path('typed');
        mkdirSync(folder);
        copyFileSync(kCel, join(folder, 'cel1.png'));
        await page.rendered(() => page.choose('#open-files', join(folder, 'cel1.png')));
        await page.rendered(() => page.type('Blur Amount', '12'));
        await page.rendered(() => page.type('Color 1', '#3264B4'));
        const line = (await page.tab.$eval('#command-line', (code) => code.textContent)).trim();
        assert.match(line, /^kovalune render /);
        const bin = lab.path('bin');
        mkdirSync(bin);
        writeFileSync(join(bin, 'kovalune'), `#!/bin/sh\nexec "${process.env.KOVALUNE}" "$@"\n`, { mode: 0o755 });
        execFileSync('sh', ['-c', line], { cwd: folder, env: { ...process.env, PATH: `${bin}:${process.env.PATH}` }, stdio: 'pipe' });
        const picture = await page.saved(() => page.tab.click('#save-picture'));
        const made = readdirSync(folder).find((name) => name !== 'cel1.png');
        assertSamePicture(picture, join(folder, made));
        await page.close();
    });

    test('a settings file that is wrong is told by its line, and changes nothing', async () => {
        const page = await lab.page();
        const file = lab.path('wrong.params');
        writeFileSync(file, '[Version=1.0]\nBlur Amount=3\nBlur Amonut=4\n');
        const before = await valuesOf(page, ['Blur Amount']);
        await page.choose('#settings-file', file);
        await page.tab.waitForFunction(() => !document.getElementById('alert').hidden, { timeout: kPatience });
        assert.match(await page.text('#alert'), /3.*Blur Amonut/s);
        assert.deepEqual(await valuesOf(page, ['Blur Amount']), before);
        await page.close();
    });
});

describe('changing one\'s mind', () => {
    for (const isolated of [true, false]) {
        test(`a newer change gives the frame up, ${isolated ? 'with shared memory' : 'by a new worker'}`, async () => {
            const own = await Lab.open({ isolated });
            try {
                const page = await own.page();
                await page.rendered(() => page.type('Blur Amount', '300'));
                const before = await page.frames();
                for (const amount of ['310', '320', '330', '340', '350']) {
                    await page.type('Blur Amount', amount);
                    await new Promise((resolve) => setTimeout(resolve, 120));
                }
                await page.ready();
                await page.tab.waitForFunction((count) => Number(document.documentElement.dataset.renders) > count, { timeout: kPatience }, before);
                await page.ready();
                assert.ok(await page.frames() - before < 5, 'no frame was given up');
                await assertAsTheCommandMakesIt(page, kCel);
                page.quiet();
            } finally {
                await own.close();
            }
        });
    }
});

describe('"Same pixels?"', () => {
    test('all agree, with threads and without', async () => {
        const page = await lab.page();
        await page.tab.click('#selfcheck');
        await page.tab.waitForFunction(() => ['good', 'bad'].includes(document.getElementById('selfcheck-dialog').dataset.state),
            { timeout: 2 * kPatience });
        const told = await page.text('#selfcheck-result');
        const counts = [...told.matchAll(/(\d+) of (\d+)/g)];
        assert.equal(counts.length, 2, told);
        for (const [, agree, scenes] of counts) {
            assert.ok(Number(scenes) > 100);
            assert.equal(agree, scenes, told);
        }
        assert.match(told, /Chrome/);
        await page.close();
    });

    for (const single of [false, true]) {
        test(`every golden scene is the native one, ${single ? 'in one thread' : 'in threads'}`, async () => {
            const page = await lab.page();
            const outcome = await page.tab.evaluate(async (alone) => {
                const { openEngine } = await import('./engine.js');
                const engine = await openEngine({ single: alone });
                const { result } = await engine.call('selfcheck', { quick: false });
                engine.close();
                return result;
            }, single);
            const scenes = readFileSync(new URL('../../golden/hashes.txt', import.meta.url), 'utf8').split('\n')
                .filter((line) => line !== '' && !line.startsWith('#')).length;
            assert.deepEqual([outcome.scenes, outcome.agree, outcome.first], [scenes, scenes, null]);
            await page.close();
        });
    }
});

/** A PNG of black pixels, of one bit each. */
function greyPng(width, height) {
    const chunk = (name, bytes) => {
        const body = Buffer.concat([Buffer.from(name), bytes]);
        const ends = [Buffer.alloc(4), Buffer.alloc(4)];
        ends[0].writeUInt32BE(bytes.length);
        ends[1].writeUInt32BE(crcOf(body));
        return Buffer.concat([ends[0], body, ends[1]]);
    };
    const header = Buffer.alloc(13);
    header.writeUInt32BE(width, 0);
    header.writeUInt32BE(height, 4);
    header[8] = 1;
    const rows = Buffer.alloc((1 + Math.ceil(width / 8)) * height);
    return Buffer.concat([Buffer.from('\x89PNG\r\n\x1a\n', 'latin1'), chunk('IHDR', header), chunk('IDAT', deflateSync(rows)),
        chunk('IEND', Buffer.alloc(0))]);
}

/** As chunks are checked. */
function crcOf(bytes) {
    let rest = 0xFFFFFFFF;
    for (const byte of bytes) {
        rest ^= byte;
        for (let bit = 0; bit < 8; ++bit) {
            rest = rest & 1 ? (rest >>> 1) ^ 0xEDB88320 : rest >>> 1;
        }
    }
    return ~rest >>> 0;
}

/** Buttons of the picture's colours. */
async function swatchesOf(page, colors) {
    await page.tab.waitForFunction((all) => all.every((hex) => document.querySelector(`#swatches button[aria-label*="${hex}"]`)),
        { timeout: kPatience }, colors);
    return Promise.all(colors.map((hex) => page.tab.$(`#swatches button[aria-label*="${hex}"]`)));
}

/** The page's address once the newest settings stand in it. */
async function addressOf(page) {
    await new Promise((resolve) => setTimeout(resolve, 500));
    return page.tab.url();
}

async function valuesOf(page, labels) {
    return Promise.all(labels.map((label) => page.value(page.control(label))));
}

/** A canvas's samples as the screen has them. */
async function canvasOf(page, selector) {
    return Buffer.from(await page.tab.$eval(selector, (canvas) => {
        const { data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
        let text = '';
        for (let i = 0; i < data.length; i += 32768) {
            text += String.fromCharCode(...data.subarray(i, i + 32768));
        }
        return btoa(text);
    }), 'base64');
}

/** Opaque pixels that differ: a canvas keeps no colour under transparency. */
function differing(shown, raw) {
    assert.equal(shown.length, raw.length);
    let count = 0;
    for (let i = 0; i < raw.length; i += 4) {
        count += raw[i + 3] === 255 && shown.compare(raw, i, i + 4, i, i + 4) !== 0 ? 1 : 0;
    }
    return count;
}
