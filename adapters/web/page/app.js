// What the page works on: picture, settings, pass, frame. Its parts listen to it and change it through its methods; it knows
// nothing of the document.

import { Settings } from './settings.js';
import { History } from './history.js';
import { Renderer } from './renderer.js';
import { framesOf } from './sequence.js';
import { kSampleName, kSampleSettings } from './assets.js';

/**
 * @typedef {import('./ops.js').Ops} Ops
 * @typedef {import('./ops.js').Job} Job
 * @typedef {import('./ops.js').Opened} Opened
 * @typedef {import('./ops.js').Parameter} Parameter
 * @typedef {import('./ops.js').State} State
 * @typedef {import('./renderer.js').Picture} Rendered
 * @typedef {import('./slots.js').Slot} Slot
 * @typedef {import('./sequence.js').Framed<File>} Frame
 * @typedef {Opened & {bytes: Uint8Array}} Picture
 *
 * @typedef {object} Events
 * @property {null} settings the settings or the chosen pass are other ones
 * @property {null} opened a picture stands in the engine
 * @property {null} frames the row of pictures is another one
 * @property {State} state the engine has read the settings
 * @property {{picture: Rendered, job: Job, isDraft: boolean}} rendered
 * @property {null} started a render is on its way
 * @property {null} armed another slot, or none, waits for a colour
 * @property {{error: unknown, what: 'open' | 'settings' | 'render' | 'other'}} failed
 * @property {null} calm what failed before has been overtaken
 */

export class App {
    /**
     * @param {Ops} ops
     * @param {Parameter[]} parameters
     */
    constructor(ops, parameters) {
        this.ops = ops;
        this.parameters = parameters;
        this.history = new History(new Settings([], []));
        this.pass = 0;
        /** @type {Frame[]} */
        this.frames = [];
        this.place = 0;
        /** @type {Picture | null} */
        this.picture = null;
        /** @type {State | null} */
        this.state = null;
        /** The last full frame. @type {Rendered | null} */
        this.rendered = null;
        /** @type {Slot | null} */
        this.armed = null;
        this.settingsName = 'kovalune.params';
        this.opening = 0;
        /** Over once the picture that was asked for last is shown, or has failed. */
        this.settled = Promise.resolve();
        /** While the engine has other pictures open than the one that is shown. */
        this.isHeld = false;
        /** @type {Map<string, ((detail: any) => void)[]>} */
        this.listeners = new Map();
        this.renderer = new Renderer(ops, {
            started: () => this.tell('started', null),
            understood: (state, job) => {
                this.state = state;
                if (job.settings === this.settings.format()) {
                    this.tell('state', state);
                }
            },
            rendered: (picture, job, isDraft) => {
                if (!isDraft) {
                    this.rendered = picture;
                }
                this.tell('rendered', { picture, job, isDraft });
            },
            failed: (error) => this.tell('failed', { error, what: 'render' })
        });
    }

    /**
     * @template {keyof Events} K
     * @param {K} event
     * @param {(detail: Events[K]) => void} listener
     */
    on(event, listener) {
        this.listeners.set(event, [...(this.listeners.get(event) ?? []), listener]);
    }

    /**
     * @template {keyof Events} K
     * @param {K} event
     * @param {Events[K]} detail
     */
    tell(event, detail) {
        for (const listener of this.listeners.get(event) ?? []) {
            listener(detail);
        }
    }

    get settings() {
        return this.history.value;
    }

    get frame() {
        return this.frames[this.place]?.frame ?? 0;
    }

    /** @returns {Job} */
    get job() {
        return { settings: this.settings.format(), frame: this.frame, pass: this.pass };
    }

    // ---- settings

    /**
     * @param {Settings} settings
     * @param {string | null} [gesture] whose changes are one step of undo
     */
    edit(settings, gesture = null) {
        if (settings.format() !== this.settings.format()) {
            this.history.push(settings, gesture);
        }
        this.tell('calm', null);
        this.settingsChanged();
    }

    /**
     * Values for the chosen pass. Those with keys stay.
     * @param {Record<string, string>} values
     * @param {string | null} [gesture]
     */
    set(values, gesture = null) {
        this.edit(this.settings.with(this.pass, values), gesture);
    }

    /**
     * A whole file of settings. It is looked at first: one that is wrong changes nothing.
     * @param {string} text
     */
    async load(text) {
        try {
            await this.ops.state({ settings: text, frame: this.frame });
        } catch (error) {
            this.tell('failed', { error, what: 'settings' });
            return false;
        }
        const settings = Settings.parse(text);
        this.pass = settings.passCount - 1; // whose result is the finished picture
        this.edit(settings);
        return true;
    }

    undo() {
        this.history.undo();
        this.tell('calm', null);
        this.settingsChanged();
    }

    redo() {
        this.history.redo();
        this.tell('calm', null);
        this.settingsChanged();
    }

    settingsChanged() {
        this.pass = Math.min(this.pass, this.settings.passCount - 1);
        this.tell('settings', null);
        this.render();
    }

    // ---- passes

    /** @param {number} pass */
    choosePass(pass) {
        this.pass = pass;
        this.arm(null);
        this.history.endGesture();
        this.settingsChanged();
    }

    addPass() {
        const settings = this.settings.withNextPass();
        this.pass = settings.passCount - 1;
        this.arm(null);
        this.edit(settings);
    }

    removePass() {
        const settings = this.settings.withoutPass(this.pass);
        this.arm(null);
        this.edit(settings);
    }

    // ---- colours

    /** @param {Slot | null} slot which gets the colour that is clicked next */
    arm(slot) {
        this.armed = slot;
        this.tell('armed', null);
    }

    /**
     * A slot that gets a colour is meant to count, so it is switched on with it.
     * @param {Slot} slot
     * @param {string} hex
     */
    giveColor(slot, hex) {
        const isOn = this.state?.passes[this.pass]?.values[slot.enable] === 'on';
        this.set({ ...(isOn ? {} : { [slot.enable]: 'on' }), [slot.label]: hex });
    }

    // ---- pictures

    /** @param {File[]} files one picture, or the frames of a sequence */
    openPictures(files) {
        this.settled = this.openRow(files);
        return this.settled;
    }

    /** @param {number} place among the frames */
    showFrame(place) {
        this.settled = this.openPlace(place);
        return this.settled;
    }

    /** The engine has had other pictures open; it gets the one that is shown again. */
    async comeBack() {
        const isOpen = await this.openFrame(this.frames, this.place);
        this.isHeld = false;
        if (isOpen) {
            this.pictureChanged();
        } else {
            this.render();
        }
    }

    /** @param {File[]} files */
    async openRow(files) {
        const frames = framesOf(files);
        const isFirst = this.picture === null; // what has gone wrong with a link stays to be read
        if (await this.openFrame(frames, 0)) {
            const wasSample = this.frames[0]?.name === kSampleName;
            this.frames = frames;
            this.place = 0;
            this.tell('frames', null);
            if (wasSample && this.settings.format() === kSampleSettings) {
                this.history.push(new Settings([], [])); // the sample's colours are none of this picture's
            }
            if (!isFirst) {
                this.tell('calm', null);
            }
            this.pictureChanged();
        }
    }

    /** @param {number} place */
    async openPlace(place) {
        if (await this.openFrame(this.frames, place)) {
            this.place = place;
            this.pictureChanged();
        }
    }

    /**
     * Whether it is open. What the engine has opened is shown, although something newer is asked for: that may fail.
     * @param {Frame[]} frames
     * @param {number} place
     */
    async openFrame(frames, place) {
        const turn = ++this.opening;
        try {
            const bytes = new Uint8Array(await frames[place].item.arrayBuffer());
            if (turn !== this.opening) {
                return false;
            }
            this.ops.engine.cancel(); // nobody waits for the picture before
            this.picture = await this.ops.open(frames[place].name, bytes);
            this.rendered = null;
            return true;
        } catch (error) {
            this.tell('failed', { error, what: 'open' });
            this.render(); // the picture before is still there, and its render was cancelled
            return false;
        }
    }

    pictureChanged() {
        this.tell('opened', null);
        this.settingsChanged();
    }

    /** Whether the engine has the picture that is shown. */
    get hasPicture() {
        return this.picture !== null && !this.isHeld;
    }

    render() {
        if (this.picture && !this.isHeld) {
            this.renderer.request(this.job, `${this.picture.width}x${this.picture.height}`);
        }
    }
}
