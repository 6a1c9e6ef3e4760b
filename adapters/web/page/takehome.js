// What leaves the page: the picture, the sequence, the settings, the command line, a link.

import { byId, copyText, download } from './dom.js';
import { EngineError } from './engine.js';
import { showError, showStatus, textOf } from './messages.js';
import { commandLine } from './shell.js';
import { t } from './texts.js';
import { Zip } from './zip.js';

/** @typedef {import('./app.js').App} App */

/**
 * The frame that is shown.
 * @param {App} app
 */
async function savePicture(app) {
    if (app.isHeld) {
        showStatus(t('isSaving'));
        return;
    }
    await app.settled; // or the next frame would get this one's keys
    const { name, bytes } = await app.ops.save({ settings: app.settings.format(), frame: app.frame });
    download(new Blob([bytes], { type: 'image/png' }), name);
    showStatus(t('saved', { name }));
}

/**
 * All frames as one zip; afterwards the frame that was shown is open again.
 * @param {App} app
 * @param {() => boolean} isGivenUp
 */
async function saveSequence(app, isGivenUp) {
    const settings = app.settings.format();
    const zip = new Zip();
    const { frames } = app;
    app.isHeld = true;
    app.ops.engine.cancel();
    try {
        for (const [place, { item, name, frame }] of frames.entries()) {
            if (isGivenUp()) {
                showStatus(t('gaveUp'));
                return;
            }
            showStatus(t('savingFrame', { place: place + 1, count: frames.length }));
            const bytes = new Uint8Array(await item.arrayBuffer());
            // Asked for at once, so that no other picture comes between.
            const [, saved] = await Promise.all([app.ops.open(name, bytes), app.ops.save({ settings, frame })]);
            zip.add(zip.freeName(saved.name), saved.bytes);
        }
        download(zip.blob(), 'kovalune-soft.zip');
        showStatus(t('saved', { name: 'kovalune-soft.zip' }));
    } finally {
        await app.comeBack();
    }
}

/** @param {App} app */
export function startTakingHome(app) {
    const command = byId('command-line', HTMLElement);
    const sequence = byId('save-sequence', HTMLButtonElement);
    const stop = byId('save-stop', HTMLButtonElement);
    let isGivenUp = false;

    /**
     * @param {string} id
     * @param {() => Promise<void> | void} act
     * @param {(error: unknown) => string} [help] what to do where it fails
     */
    const onPress = (id, act, help = () => t('helpSave')) => {
        byId(id, HTMLElement).addEventListener('click', async () => {
            try {
                await act();
            } catch (error) {
                showError(textOf(error), help(error));
            }
        });
    };
    /** @param {string} text */
    const copy = async (text) => {
        if (await copyText(text)) {
            showStatus(t('copied'));
        } else {
            showError(t('notCopied'), t('helpCopy'));
        }
    };

    onPress('save-picture', () => savePicture(app), (error) => t(error instanceof EngineError ? 'helpRender' : 'helpSave'));
    onPress('save-sequence', async () => {
        isGivenUp = false;
        sequence.disabled = true;
        stop.hidden = false;
        try {
            await saveSequence(app, () => isGivenUp);
        } finally {
            sequence.disabled = false;
            stop.hidden = true;
        }
    }, (error) => t(error instanceof EngineError ? 'helpFrame' : 'helpSave'));
    onPress('save-stop', () => { isGivenUp = true; });
    onPress('save-settings', () => {
        download(new Blob([app.settings.format()], { type: 'text/plain' }), app.settingsName);
        showStatus(t('saved', { name: app.settingsName }));
    });
    onPress('copy-command', () => copy(command.textContent ?? ''));
    onPress('copy-link', () => copy(location.href));

    const show = () => {
        sequence.hidden = app.frames.length < 2;
        const names = app.frames.map((frame) => frame.name);
        command.textContent = names.length === 0 ? '' : commandLine(app.settings, names, app.frame, app.settingsName);
    };
    app.on('settings', show);
    app.on('opened', show);
    app.on('frames', show);
}
