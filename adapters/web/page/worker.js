// The engine in a thread of its own: starts its module, then answers one request after the other. A classic script, so that the
// single file can make it of a text. With threads the module's own workers come from the same script.
'use strict';

/* global importScripts, startKovalune */

/**
 * @typedef {object} StartOrder
 * @property {WebAssembly.Module} code compiled
 * @property {string | null} script where startKovalune is; null: it stands before this
 * @property {number} threads
 */

/**
 * @typedef {object} Order
 * @property {number} id
 * @property {string} request JSON
 * @property {Uint8Array | null} bytes
 */

/** How often a page is told how far a frame is, in milliseconds. */
const kProgressStep = 40;

/** @type {any} the module, once it has started */
let kovalune = null;
/** @type {WebAssembly.Memory} */
let memory;
let lastTold = 0;

/**
 * @param {number} current
 * @param {number} total
 */
function tellProgress(current, total) {
    const now = performance.now();
    if (now - lastTold >= kProgressStep) {
        lastTold = now;
        self.postMessage({progress: [current, total]});
    }
}

/** All of the module's memory: a view of it is too short once any of its threads has made it grow. */
function heap() {
    return new Uint8Array(memory.buffer);
}

/**
 * A module's numbers are signed, and its memory is larger than they reach.
 * @param {number} number
 */
function addressOf(number) {
    return number >>> 0;
}

/**
 * With threads a module gets its memory, otherwise it brings it.
 * @param {WebAssembly.Imports} imports
 * @param {WebAssembly.Instance} instance
 */
function memoryOf(imports, instance) {
    const all = [...Object.values(imports).flatMap((module) => Object.values(module)), ...Object.values(instance.exports)];
    return /** @type {WebAssembly.Memory} */ (all.find((each) => each instanceof WebAssembly.Memory));
}

/** @param {StartOrder} order */
async function start(order) {
    const {script} = order;
    if (script !== null) {
        importScripts(script);
    }
    kovalune = await new Promise((resolve, reject) => {
        // @ts-ignore: the script that was just imported, or that stands before this, has it
        startKovalune({
            threads: order.threads,
            mainScriptUrlOrBlob: script,
            locateFile: (/** @type {string} */ name) => (script === null ? name : new URL(name, script).href),
            onProgress: tellProgress,
            instantiateWasm: (/** @type {WebAssembly.Imports} */ imports,
                              /** @type {(instance: WebAssembly.Instance, code: WebAssembly.Module) => void} */ done) => {
                WebAssembly.instantiate(order.code, imports).then((instance) => {
                    memory = memoryOf(imports, instance);
                    done(instance, order.code);
                }).catch(reject); // as for want of memory; the module itself would wait for ever
                return {};
            },
        }).then(resolve, reject);
    });
    if (kovalune._kovalune_start(order.threads) !== 0) {
        throw new Error(kovalune.UTF8ToString(addressOf(kovalune._kovalune_answer())));
    }
    const { buffer } = memory;
    const shared = typeof SharedArrayBuffer !== 'undefined' && buffer instanceof SharedArrayBuffer;
    self.postMessage({started: {watch: shared ? {buffer, place: addressOf(kovalune._kovalune_watch())} : null}});
}

/** @param {Order} order */
function answer({id, request, bytes}) {
    const count = bytes === null ? 0 : bytes.length;
    const input = addressOf(kovalune._kovalune_input(count));
    if (count > 0 && input === 0) {
        self.postMessage({id, json: '{"error": "there is not enough memory for this file"}', bytes: null});
        return;
    }
    if (bytes !== null) {
        heap().set(bytes, input);
    }
    // Not on the module's stack, which settings of a MiB would fill.
    const text = new TextEncoder().encode(`${request}\0`);
    const place = addressOf(kovalune._malloc(text.length));
    if (place === 0) {
        self.postMessage({id, json: '{"error": "there is not enough memory for these settings"}', bytes: null});
        return;
    }
    heap().set(text, place);
    kovalune._kovalune_request(place);
    kovalune._free(place);
    const json = kovalune.UTF8ToString(addressOf(kovalune._kovalune_answer()));
    const first = addressOf(kovalune._kovalune_bytes());
    const length = addressOf(kovalune._kovalune_byteCount());
    // A copy: the module's memory may be shared, and is taken again by the next request.
    const result = length === 0 ? null : heap().slice(first, first + length);
    self.postMessage({id, json, bytes: result}, {transfer: result === null ? [] : [result.buffer]});
}

self.onmessage = async (message) => {
    try {
        if (message.data.start) {
            await start(message.data.start);
        } else {
            answer(message.data);
        }
    } catch (reason) {
        // Nothing that runs after this could be trusted.
        self.postMessage({broken: reason instanceof Error ? reason.message : String(reason)});
    }
};
