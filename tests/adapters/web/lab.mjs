// What the tests of the page share: the served folder, a browser, a page that is watched, the command to compare with.

import assert from 'node:assert/strict';
import { execFileSync, spawn } from 'node:child_process';
import { mkdtempSync, readFileSync, readdirSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { once } from 'node:events';
import puppeteer from 'puppeteer-core';

export const kRoot = new URL('../../../', import.meta.url).pathname;
export const kExamples = join(kRoot, 'examples');
const kServed = process.env.KOVALUNE_PAGE ?? join(kRoot, 'build/page');
const kCommand = process.env.KOVALUNE ?? join(kRoot, 'build/demo/bin/kovalune');
const kBrowser = process.env.KOVALUNE_BROWSER ?? '/usr/bin/chromium';

/** A page's frames are slow in a virtual machine without a graphics card; what waits longer than this waits for nothing. */
export const kPatience = 60000;

export class Lab {
    /** @param {{isolated?: boolean}} [how] not isolated: the page is alone with one thread, as where a host sends no headers */
    static async open({ isolated = true } = {}) {
        const lab = new Lab();
        lab.folder = mkdtempSync(join(tmpdir(), 'kovalune-page-'));
        lab.server = spawn(process.execPath, [join(kRoot, 'adapters/web/serve.mjs'), kServed, '0', ...(isolated ? [] : ['--bare'])],
            { stdio: ['ignore', 'pipe', 'inherit'] });
        const [line] = await once(lab.server.stdout, 'data');
        lab.address = String(line).trim();
        lab.browser = await puppeteer.launch({ executablePath: kBrowser, args: ['--no-sandbox', '--disable-gpu'] });
        return lab;
    }

    async close() {
        await this.browser.close();
        this.server.kill();
        rmSync(this.folder, { recursive: true });
    }

    /**
     * A new page with the sample, once it is whole. Whatever it says on the console or asks of another host fails the test that
     * calls `page.quiet()`.
     * @param {{address?: string, width?: number, height?: number, language?: string, touch?: boolean}} [how]
     */
    async page({ address = this.address, width = 1280, height = 800, language = 'en', touch = false } = {}) {
        const context = await this.browser.createBrowserContext();
        const tab = await context.newPage();
        await tab.setViewport({ width, height, hasTouch: touch, isMobile: touch });
        await tab.setExtraHTTPHeaders({ 'Accept-Language': language });
        await tab.evaluateOnNewDocument((wanted) => {
            Object.defineProperty(navigator, 'language', { get: () => wanted });
            Object.defineProperty(navigator, 'languages', { get: () => [wanted] });
        }, language);
        const page = new WatchedPage(this, context, tab);
        await page.watch();
        await tab.goto(address);
        await page.ready();
        return page;
    }

    /** A file of this folder, made by ImageMagick. */
    convert(name, ...args) {
        const file = join(this.folder, name);
        execFileSync('convert', [...args, file]);
        return file;
    }

    path(name) {
        return join(this.folder, name);
    }
}

/** What the command says and does; throws where it fails. */
export function kovalune(...args) {
    return execFileSync(kCommand, args, { encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe'] });
}

/** Sample for sample, size, channels and depth included. */
export function assertSamePicture(file, expected) {
    let told = '';
    try {
        told = kovalune('compare', expected, file);
    } catch (reason) {
        told = String(reason.stdout) + reason.stderr;
    }
    const [first, second] = told.split('\n').map((line) => line.replace(/^[AB]: .*?: /, ''));
    assert.equal(second, first, `${file} is of another form than ${expected}`);
    assert.match(told, /^same$/m, told);
}

export class WatchedPage {
    constructor(lab, context, tab) {
        this.lab = lab;
        this.context = context;
        this.tab = tab;
        this.said = [];
        this.outside = [];
    }

    async watch() {
        this.tab.on('console', (message) => this.said.push(`${message.type()}: ${message.text()}`));
        this.tab.on('pageerror', (error) => this.said.push(`error: ${error.message}`));
        this.tab.on('request', (request) => {
            const address = request.url();
            if (!/^(blob|data):/.test(address) && !address.startsWith(this.lab.address) && !address.startsWith('file:')) {
                this.outside.push(address);
            }
        });
        this.devtools = await this.tab.createCDPSession();
    }

    /** It has said nothing and asked nobody else. */
    quiet() {
        assert.deepEqual(this.said, []);
        assert.deepEqual(this.outside, []);
    }

    async close() {
        await this.context.close();
    }

    $(selector) {
        return this.tab.waitForSelector(selector, { timeout: kPatience });
    }

    state() {
        return this.tab.evaluate(() => document.documentElement.dataset.state);
    }

    /** Until the frame in its whole size is shown. */
    async ready() {
        try {
            await this.tab.waitForFunction(() => document.documentElement.dataset.state === 'ready', { timeout: kPatience });
        } catch (reason) {
            throw new Error(`the page is "${await this.state()}", and said ${JSON.stringify(this.said)}; ${reason.message}`);
        }
    }

    /** The frame that `act` asks for, whole. */
    async rendered(act) {
        const before = await this.frames();
        await act();
        await this.tab.waitForFunction((count) => Number(document.documentElement.dataset.renders ?? 0) > count,
            { timeout: kPatience }, before);
        await this.ready();
    }

    frames() {
        return this.tab.evaluate(() => Number(document.documentElement.dataset.renders ?? 0));
    }

    text(selector) {
        return this.tab.$eval(selector, (element) => element.innerText);
    }

    value(selector) {
        return this.tab.$eval(selector, (element) => element.value);
    }

    /** By the file chooser's input. */
    async choose(input, ...files) {
        const element = await this.tab.$(input);
        await element.uploadFile(...files);
    }

    /** As if dragged onto the page from a folder, or pasted. */
    async hand(kind, ...files) {
        const given = files.map((file) => ({ name: file.split('/').pop(), bytes: readFileSync(file).toString('base64') }));
        await this.tab.evaluate((how, all) => {
            const data = new DataTransfer();
            for (const { name, bytes } of all) {
                data.items.add(new File([Uint8Array.from(atob(bytes), (letter) => letter.charCodeAt(0))], name,
                    { type: name.endsWith('.png') ? 'image/png' : '' }));
            }
            const event = how === 'paste' ? new ClipboardEvent('paste', { clipboardData: data, bubbles: true, cancelable: true })
                : new DragEvent('drop', { dataTransfer: data, bubbles: true, cancelable: true });
            document.body.dispatchEvent(event);
        }, kind, given);
    }

    /** The only file that `act` makes the browser save, in a folder of its own: a name may come again. */
    async saved(act) {
        const folder = mkdtempSync(join(this.lab.folder, 'saved-'));
        await this.devtools.send('Browser.setDownloadBehavior',
            { behavior: 'allow', downloadPath: folder, browserContextId: this.context.id });
        await act();
        for (const start = Date.now(); Date.now() - start < kPatience;) {
            const files = readdirSync(folder).filter((name) => !name.endsWith('.crdownload'));
            if (files.length > 0) {
                assert.equal(files.length, 1);
                return join(folder, files[0]);
            }
            await new Promise((resolve) => setTimeout(resolve, 50));
        }
        throw new Error('nothing was saved');
    }

    /** Where a picture's pixel is on the screen. */
    async placeOf(x, y) {
        return this.tab.$eval('#after', (canvas, px, py) => {
            const box = canvas.getBoundingClientRect();
            return { x: box.left + (px + 0.5) * box.width / canvas.width, y: box.top + (py + 0.5) * box.height / canvas.height };
        }, x, y);
    }

    async clickPixel(x, y) {
        const place = await this.placeOf(x, y);
        await this.tab.mouse.click(place.x, place.y);
    }

    /** The control of a parameter, by its label. */
    control(label) {
        return `[data-control="${label}"] [id^="param-"]:is(input:not([type="range"]), select)`;
    }

    /** Types a value into a control, as a person does. */
    async type(label, text) {
        await this.tab.$eval(this.control(label), (element) => {
            element.closest('details')?.setAttribute('open', '');
            element.scrollIntoView({ block: 'center' });
            element.focus();
            element.select?.();
        });
        await this.tab.keyboard.type(text);
        await this.tab.keyboard.press('Enter');
    }
}
