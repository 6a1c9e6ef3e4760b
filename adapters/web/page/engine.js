// The effect in a worker, as the page talks to it: requests one after the other, and frames that can be given up.
//
// Where the page is cross-origin isolated, frames have several threads, and memory is shared with the page: it gives a frame up
// by setting a word there. Elsewhere the worker is ended, a new one starts from the compiled code, and gets the picture again.

import { engineCode, engineScript, workerScript } from './engineFiles.js';

/** @typedef {{result: any, bytes: Uint8Array | null}} Reply */

/**
 * @typedef {object} Call
 * @property {number} id
 * @property {string} op
 * @property {any} args
 * @property {Uint8Array | null} bytes
 * @property {(reply: Reply) => void} resolve
 * @property {(reason: Error) => void} reject
 * @property {boolean} isGivenUp
 * @property {boolean} [isAgain] the picture that a new worker gets, of which nobody is told
 */

/** What a page's frames may take, in bytes: a module can have 4 GiB, and the browser needs some of the machine too. */
const kFrameMemory = 3 * 2 ** 30;

/** The host's limit. */
const kMostThreads = 64;

/** Of progress, where the page looks at it itself, in milliseconds. */
const kProgressStep = 40;

/** One sentence for the user. */
export class EngineError extends Error {}

/** The call was given up. */
export class Cancelled extends Error {}

/** @param {string} op */
function canBeGivenUp(op) {
    return op === 'render' || op === 'select';
}

export class Engine {
    /** @type {Worker | null} */
    #worker = null;
    /** @type {Call[]} */
    #waiting = [];
    /** @type {Call | null} */
    #running = null;
    /** @type {Call | null} the last picture that could be opened, to open it again */
    #picture = null;
    /** @type {Int32Array | null} whether the frame is given up, how far it is, of how many */
    #watch = null;
    #lastId = 0;
    #isStarted = false;
    #isStarting = false;
    #isClosed = false;
    /** @type {ReturnType<typeof setInterval> | undefined} */
    #clock = undefined;

    /**
     * @param {WebAssembly.Module} code
     * @param {number} threads
     * @param {(current: number, total: number) => void} onProgress
     */
    constructor(code, threads, onProgress) {
        this.code = code;
        this.threads = threads;
        this.isThreaded = threads > 1;
        this.onProgress = onProgress;
    }

    /** @returns {Promise<void>} rejects with EngineError where the module cannot start */
    start() {
        return new Promise((resolve, reject) => {
            const script = workerScript();
            const worker = new Worker(script);
            this.#worker = worker;
            this.#isStarting = true;
            worker.onerror = (event) => {
                if (worker === this.#worker) {
                    this.#fail(event.message || 'the worker does not start', reject);
                }
            };
            worker.onmessage = ({data}) => {
                if (worker !== this.#worker) {
                    return; // it was ended, and had said this before
                }
                if (data.started) {
                    const {watch} = data.started;
                    this.#watch = watch === null ? null : new Int32Array(watch.buffer, watch.place, 3);
                    this.#isStarted = true;
                    this.#isStarting = false;
                    resolve();
                    this.#next();
                } else if (data.progress) {
                    this.onProgress(data.progress[0], data.progress[1]);
                } else if (data.broken !== undefined) {
                    this.#fail(data.broken, reject);
                } else {
                    this.#finish(data);
                }
            };
            worker.postMessage({
                start: {code: this.code, script: engineScript(this.isThreaded), threads: this.threads},
            });
        });
    }

    /**
     * @param {string} op
     * @param {any} [args]
     * @param {Uint8Array | null} [bytes]
     * @returns {Promise<Reply>} rejects with EngineError or Cancelled
     */
    call(op, args = {}, bytes = null) {
        return new Promise((resolve, reject) => {
            this.#lastId += 1;
            const whole = op === 'open' ? {memory: kFrameMemory, ...args} : args;
            this.#waiting.push({id: this.#lastId, op, args: whole, bytes, resolve, reject, isGivenUp: false});
            if (this.#worker === null && !this.#isStarting && !this.#isClosed) {
                this.#restart(); // a start that failed may succeed now
            }
            this.#next();
        });
    }

    /** Gives up all frames that are asked for and not there yet. */
    cancel() {
        const dropped = this.#waiting.filter((call) => canBeGivenUp(call.op));
        this.#waiting = this.#waiting.filter((call) => !canBeGivenUp(call.op));
        for (const call of dropped) {
            call.reject(new Cancelled());
        }
        const running = this.#running;
        if (running === null || running.isGivenUp || !canBeGivenUp(running.op)) {
            return;
        }
        running.isGivenUp = true;
        if (this.#watch !== null) {
            Atomics.store(this.#watch, 0, 1);
            return;
        }
        this.#running = null;
        running.reject(new Cancelled());
        this.#restart();
    }

    /** Gives up what only tells what a colour selects: those that wait, and the running one where that costs no new worker. */
    cancelSelections() {
        const dropped = this.#waiting.filter((call) => call.op === 'select');
        this.#waiting = this.#waiting.filter((call) => call.op !== 'select');
        for (const call of dropped) {
            call.reject(new Cancelled());
        }
        if (this.#running?.op === 'select' && this.#watch !== null) {
            this.#running.isGivenUp = true;
            Atomics.store(this.#watch, 0, 1);
        }
    }

    close() {
        this.#isClosed = true;
        clearInterval(this.#clock);
        this.#worker?.terminate();
        this.#worker = null;
        this.#isStarted = false;
        this.#rejectAll(new Cancelled());
    }

    #restart() {
        this.#worker?.terminate();
        this.#isStarted = false;
        if (this.#picture !== null) {
            // Before all that waits; nobody is told of it.
            const again = {...this.#picture, resolve: () => {}, reject: () => {}, isAgain: true};
            this.#waiting.unshift(again);
        }
        this.start().catch(() => {}); // those who wait are told
    }

    #next() {
        if (this.#running !== null || !this.#isStarted || this.#worker === null) {
            return;
        }
        const call = this.#waiting.shift();
        if (call === undefined) {
            return;
        }
        this.#running = call;
        if (this.#watch !== null) {
            Atomics.store(this.#watch, 0, 0);
            this.#watchProgress(this.#watch);
        }
        this.#worker.postMessage({id: call.id, request: JSON.stringify({op: call.op, ...call.args}), bytes: call.bytes});
    }

    /** @param {Int32Array} watch */
    #watchProgress(watch) {
        clearInterval(this.#clock);
        this.#clock = setInterval(() => {
            const total = Atomics.load(watch, 2);
            if (total > 0) {
                this.onProgress(Atomics.load(watch, 1), total);
            }
        }, kProgressStep);
    }

    /** @param {{id: number, json: string, bytes: Uint8Array | null}} answer */
    #finish(answer) {
        clearInterval(this.#clock);
        const call = this.#running;
        if (call === null || call.id !== answer.id) {
            return;
        }
        this.#running = null;
        const result = JSON.parse(answer.json);
        if (call.isGivenUp) {
            call.reject(new Cancelled());
        } else if (result.error !== undefined) {
            call.reject(new EngineError(result.error));
        } else {
            if (call.op === 'open') {
                this.#picture = call;
            }
            call.resolve({result, bytes: answer.bytes});
        }
        this.#next();
    }

    /**
     * @param {string} reason
     * @param {(reason: Error) => void} reject of the start; once that is over it does nothing
     */
    #fail(reason, reject) {
        const error = new EngineError(reason);
        reject(error);
        clearInterval(this.#clock);
        this.#worker?.terminate();
        this.#worker = null;
        const wasStarted = this.#isStarted;
        this.#isStarted = false;
        this.#isStarting = false;
        if (this.#running?.isAgain) {
            this.#picture = null; // what it fails on would come again for ever
        }
        this.#rejectAll(error);
        if (wasStarted) { // what comes next may well succeed
            this.#restart();
        }
    }

    /** @param {Error} reason */
    #rejectAll(reason) {
        const calls = this.#running === null ? this.#waiting : [this.#running, ...this.#waiting];
        this.#running = null;
        this.#waiting = [];
        for (const call of calls) {
            call.reject(reason);
        }
    }
}

/** @type {Map<boolean, Promise<WebAssembly.Module>>} compiled once, whoever asks */
const compiled = new Map();

/** @param {boolean} threaded */
function compiledCode(threaded) {
    let code = compiled.get(threaded);
    if (code === undefined) {
        code = engineCode(threaded);
        compiled.set(threaded, code);
    }
    return code;
}

/**
 * @param {{single?: boolean, onProgress?: (current: number, total: number) => void}} [options] `single`: one thread, also where
 *     there could be more
 * @returns {Promise<Engine>}
 */
export async function openEngine(options = {}) {
    const { single = false, onProgress = () => {} } = options;
    const processors = navigator.hardwareConcurrency || 1;
    // The single file has no other build, and a page that is not isolated no shared memory.
    if (!single && self.crossOriginIsolated && engineScript(true) !== null && processors > 1) {
        const threaded = new Engine(await compiledCode(true), Math.min(processors, kMostThreads), onProgress);
        try {
            await threaded.start();
            return threaded;
        } catch {
            threaded.close(); // a telephone may refuse memory that is shared; the other build asks for less at once
        }
    }
    const engine = new Engine(await compiledCode(false), 1, onProgress);
    await engine.start();
    return engine;
}
