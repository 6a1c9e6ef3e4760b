// How files come in: dropped anywhere, pasted, chosen; pictures and settings alike.

import { byId } from './dom.js';
import { kSampleSettings, sampleFile } from './assets.js';
import { sameLabel } from './label.js';
import { showError, showStatus, textOf } from './messages.js';
import { Settings } from './settings.js';
import { t } from './texts.js';

/** @typedef {import('./app.js').App} App */

const kSettingsName = /\.(params|txt|ini)$/i;
const kMostSettings = 1 << 20; // bytes, as the command has it

/**
 * @param {App} app
 * @param {File[]} files
 */
async function take(app, files) {
    const settings = files.filter((file) => kSettingsName.test(file.name));
    const pictures = files.filter((file) => !kSettingsName.test(file.name));
    if (pictures.length > 0) {
        await app.openPictures(pictures);
    }
    if (settings.length > 0) {
        await takeSettings(app, settings[0]);
    }
}

/**
 * @param {App} app
 * @param {File} file
 */
async function takeSettings(app, file) {
    if (file.size > kMostSettings) {
        showError(t('settingsTooLarge', { name: file.name }), t('helpSettings'));
        return;
    }
    try {
        const text = new TextDecoder('utf-8', { fatal: true }).decode(await file.arrayBuffer());
        if (await app.load(text)) {
            app.settingsName = file.name;
            app.tell('settings', null);
            const hasMask = app.settings.entries.some((line) => sameLabel(line.label, 'Mask'));
            showStatus(t('settingsLoaded', { name: file.name }) + (hasMask ? ` ${t('maskLeftOut')}` : ''));
        }
    } catch (error) {
        showError(error instanceof TypeError ? t('settingsNotUtf8', { name: file.name }) : textOf(error), t('helpSettings'));
    }
}

/** @param {App} app */
export async function openSample(app) {
    const isFirst = app.picture === null; // it then has settings, or a link
    try {
        await app.openPictures([await sampleFile()]);
        if (app.settings.entries.length === 0 && !app.settings.hasSections && !isFirst) {
            app.edit(Settings.parse(kSampleSettings));
        }
    } catch (error) {
        app.tell('failed', { error, what: 'open' });
    }
}

/** @param {App} app */
export function startOpening(app) {
    for (const [buttonId, chooserId] of [['open', 'open-files'], ['load-settings', 'settings-file']]) {
        const chooser = byId(chooserId, HTMLInputElement);
        byId(buttonId, HTMLElement).addEventListener('click', () => chooser.click());
        chooser.addEventListener('change', () => {
            const files = Array.from(chooser.files ?? []);
            chooser.value = ''; // the same file can be chosen again
            void (buttonId === 'open' ? take(app, files) : takeSettings(app, files[0]));
        });
    }
    byId('open-sample', HTMLElement).addEventListener('click', () => void openSample(app));
    startDrop(app);
    document.addEventListener('paste', (event) => {
        const files = Array.from(event.clipboardData?.files ?? []);
        if (files.length > 0) {
            event.preventDefault();
            const pictures = files.filter((file) => file.type.startsWith('image/'));
            void take(app, files).then(() => {
                if (pictures.length > 0 && app.picture?.name === pictures[0].name) {
                    showStatus(t('pasted'));
                }
            });
        }
    });
}

/** @param {App} app */
function startDrop(app) {
    const veil = byId('drop-veil', HTMLElement);
    /** @param {DragEvent} event */
    const hasFiles = (event) => event.dataTransfer?.types.includes('Files') ?? false;
    document.addEventListener('dragover', (event) => {
        if (hasFiles(event)) {
            event.preventDefault();
            veil.hidden = false;
        }
    });
    document.addEventListener('dragleave', (event) => {
        if (event.relatedTarget === null) { // out of the window
            veil.hidden = true;
        }
    });
    document.addEventListener('drop', (event) => {
        veil.hidden = true;
        if (hasFiles(event)) {
            event.preventDefault();
            void take(app, Array.from(event.dataTransfer?.files ?? []));
        }
    });
}
