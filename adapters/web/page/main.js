// Starts the page: engine, parameters, the parts, then the sample.

import { startAddress } from './address.js';
import { App } from './app.js';
import { kSampleSettings } from './assets.js';
import { startBackground } from './background.js';
import { Camera } from './camera.js';
import { Controls } from './controls.js';
import { byId, isTyping } from './dom.js';
import { openEngine } from './engine.js';
import { startFrameBar } from './framebar.js';
import { startGestures } from './gestures.js';
import { Layers } from './layers.js';
import { startLoupe } from './loupe.js';
import { followFailures, showError, textOf } from './messages.js';
import { openSample, startOpening } from './opening.js';
import { Ops } from './ops.js';
import { Pairing } from './pairing.js';
import { startPasses } from './passes.js';
import { followRenders, setPhase, showProgress } from './progress.js';
import { followReports } from './report.js';
import { startSelfcheck } from './selfcheck.js';
import { Settings } from './settings.js';
import { Swatches } from './swatches.js';
import { startTakingHome } from './takehome.js';
import { applyTexts, chooseLanguage, currentLanguage, t } from './texts.js';
import { startWipe } from './wipe.js';

/** @param {App} app */
function startUndo(app) {
    const undo = byId('undo', HTMLButtonElement);
    const redo = byId('redo', HTMLButtonElement);
    undo.addEventListener('click', () => app.undo());
    redo.addEventListener('click', () => app.redo());
    byId('reset', HTMLElement).addEventListener('click', () => app.edit(new Settings([], [])));
    document.addEventListener('keydown', (event) => {
        const isCommand = (event.ctrlKey || event.metaKey) && !event.altKey && !isTyping(event.target);
        const key = event.key.toLowerCase();
        if (isCommand && (key === 'z' || key === 'y')) {
            event.preventDefault();
            if (key === 'y' || event.shiftKey) {
                app.redo();
            } else {
                app.undo();
            }
        }
    });
    app.on('settings', () => {
        undo.disabled = !app.history.canUndo;
        redo.disabled = !app.history.canRedo;
    });
}

/**
 * @param {import('./app.js').Ops} ops
 * @param {string} version
 */
async function startParts(ops, version) {
    const app = new App(ops, await ops.params());
    const layers = new Layers(app);
    const camera = new Camera(app);
    const pairing = new Pairing(app);
    const swatches = new Swatches(app, pairing, layers);
    const controls = new Controls(app, layers);
    const parts = [startPasses(app), startFrameBar(app), followReports(app), swatches, pairing];
    followRenders(app);
    followFailures(app);
    startUndo(app);
    startWipe(camera);
    startBackground();
    startGestures(camera, { clicked: (pixel) => void pairing.clickPixel(pixel), hovered: startLoupe(app) });
    startOpening(app);
    startTakingHome(app);
    startSelfcheck(app, version);

    const language = byId('language', HTMLSelectElement);
    language.value = currentLanguage();
    language.addEventListener('change', () => {
        chooseLanguage(language.value === 'ja' ? 'ja' : 'en');
        applyTexts();
        controls.build();
        camera.apply();
        for (const part of parts) {
            part.show();
        }
    });

    app.history.value = Settings.parse(kSampleSettings);
    await startAddress(app);
    await openSample(app);
}

async function start() {
    byId('not-started', HTMLElement).remove();
    applyTexts();
    setPhase('starting');
    try {
        const ops = new Ops(await openEngine({ onProgress: showProgress }));
        const { version } = await ops.info();
        byId('version', HTMLElement).textContent = version;
        await startParts(ops, version);
    } catch (error) {
        setPhase('error');
        showError(textOf(error), t('helpStart'));
    }
}

void start();
