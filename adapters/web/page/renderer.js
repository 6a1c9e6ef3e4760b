// Renders the newest settings: a draft first where the full frame takes long, then the full frame.

import { Cancelled } from './engine.js';

/**
 * @typedef {import('./ops.js').Ops} Ops
 * @typedef {import('./ops.js').Job} Job
 * @typedef {import('./ops.js').State} State
 * @typedef {import('./ops.js').Rendered & {bytes: Uint8Array}} Picture
 *
 * @typedef {object} Listener
 * @property {() => void} started
 * @property {(state: State, job: Job) => void} understood the settings are right; what they say at the frame
 * @property {(picture: Picture, job: Job, isDraft: boolean) => void} rendered
 * @property {(error: unknown) => void} failed
 */

const kAtOnce = 150; // milliseconds of the last full frame, up to which the next one needs no draft
const kQuarter = 1200; // from which the draft has a quarter of the lengths
// What is over sooner is not cancelled, so that a slider that keeps moving shows something.
const kFullWorthWaiting = 250;
const kDraftWorthWaiting = 1000;

export class Renderer {
    /**
     * @param {Ops} ops
     * @param {Listener} listener
     */
    constructor(ops, listener) {
        this.ops = ops;
        this.listener = listener;
        /** @type {Job | null} */
        this.waiting = null;
        this.isRunning = false;
        /** Whether the running step is better given up than waited for. */
        this.isLong = false;
        /** Milliseconds of the last step of each kind, by size, pass and reduction. @type {Map<string, number>} */
        this.lasted = new Map();
        this.size = '';
    }

    /**
     * @param {Job} job
     * @param {string} size of the picture, "1920x1080"
     */
    request(job, size) {
        this.waiting = job;
        this.size = size;
        this.listener.started();
        this.ops.engine.cancelSelections(); // of the settings before
        if (!this.isRunning) {
            void this.run();
        } else if (this.isLong) {
            this.ops.engine.cancel();
        }
    }

    async run() {
        this.isRunning = true;
        while (this.waiting) {
            const job = this.waiting;
            this.waiting = null;
            try {
                await this.renderSteps(job);
            } catch (error) {
                if (!(error instanceof Cancelled) && !this.waiting) {
                    this.listener.failed(error);
                }
            }
        }
        this.isRunning = false;
    }

    /** @param {Job} job */
    async renderSteps(job) {
        this.isLong = false;
        this.listener.understood(await this.ops.state(job), job);
        for (const reduce of this.reductions(job)) {
            const last = this.lasted.get(this.kind(job, reduce));
            this.isLong = reduce > 1 ? (last ?? 0) > kDraftWorthWaiting : (last ?? Infinity) > kFullWorthWaiting;
            if (this.waiting && this.isLong) {
                return;
            }
            const picture = await this.ops.render({ ...job, reduce });
            this.lasted.set(this.kind(job, reduce), picture.milliseconds);
            this.listener.rendered(picture, job, reduce > 1 || this.waiting !== null);
            if (this.waiting) {
                return;
            }
        }
    }

    /** @param {Job} job @returns {(1 | 2 | 4)[]} */
    reductions(job) {
        const last = this.lasted.get(this.kind(job, 1));
        if (last !== undefined && last < kAtOnce) {
            return [1];
        }
        // Of what has never been rendered here nobody knows how long it takes: what is seen first is to be there soon.
        return last === undefined || last > kQuarter ? [4, 1] : [2, 1];
    }

    /**
     * @param {Job} job
     * @param {number} reduce
     */
    kind(job, reduce) {
        return `${this.size} ${job.pass} ${reduce}`;
    }
}
