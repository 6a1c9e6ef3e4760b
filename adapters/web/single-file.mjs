// Writes the page as one file, which opens from a disk: style, scripts, sample and the engine of one thread inside it.
//   node single-file.mjs FOLDER SCRIPT FILE    FOLDER is the page as it is served; SCRIPT: its modules in one

import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { argv } from 'node:process';

const [folder, script, file] = argv.slice(2);

/** @param {string} name */
const textOf = (name) => readFileSync(join(folder, name), 'utf8');
/** @param {string} name */
const base64Of = (name) => readFileSync(join(folder, name)).toString('base64');

/** What ends a script for a reader of HTML must not stand in one. */
const inScript = (/** @type {string} */ text) => text.replaceAll('</script', '<\\/script').replaceAll('<!--', '<\\!--');

const embedded = {
    sample: base64Of('sample.png'),
    code: base64Of('kovalune.wasm'),
    worker: `${textOf('kovalune.js')}\n${textOf('worker.js')}`,
};

/** Nothing goes out, and nothing comes in. */
const kPolicy =
    "default-src 'none'; script-src 'unsafe-inline' 'wasm-unsafe-eval' blob:; worker-src blob:; style-src 'unsafe-inline'; " +
    'img-src blob: data:';

/**
 * @param {string} text
 * @param {RegExp} what stands there once
 * @param {string} by
 */
function replaced(text, what, by) {
    if (text.match(new RegExp(what.source, 'g'))?.length !== 1) {
        throw new Error(`index.html has ${what} not once`);
    }
    return text.replace(what, () => by);
}

let page = textOf('index.html');
page = replaced(page, /<meta http-equiv="Content-Security-Policy" content="[^"]*">/,
    `<meta http-equiv="Content-Security-Policy" content="${kPolicy}">`);
page = replaced(page, /<link rel="stylesheet" href="style.css">/, `<style>\n${textOf('style.css')}</style>`);
page = replaced(page, /<script type="module" src="main.js"><\/script>\n/, '');
page = replaced(page, /<\/body>/,
    `<script>globalThis.KOVALUNE_EMBEDDED = ${inScript(JSON.stringify(embedded))};</script>\n` +
        `<script type="module">\n${inScript(readFileSync(script, 'utf8'))}</script>\n</body>`);
writeFileSync(file, page);
