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

/** @param {StartOrder} order */
async function start(order) {
    const {script} = order;
    if (script !== null) {
        importScripts(script);
    }
    // @ts-ignore: the script that was just imported, or that stands before this, has it
    kovalune = await startKovalune({
        threads: order.threads,
        mainScriptUrlOrBlob: script,
        locateFile: (/** @type {string} */ name) => (script === null ? name : new URL(name, script).href),
        onProgress: tellProgress,
        instantiateWasm: (/** @type {WebAssembly.Imports} */ imports,
                          /** @type {(instance: WebAssembly.Instance, code: WebAssembly.Module) => void} */ done) => {
            WebAssembly.instantiate(order.code, imports).then((instance) => done(instance, order.code));
            return {};
        },
    });
    if (kovalune._kovalune_start(order.threads) !== 0) {
        throw new Error(kovalune.UTF8ToString(kovalune._kovalune_answer()));
    }
    const buffer = kovalune.HEAPU8.buffer;
    const shared = typeof SharedArrayBuffer !== 'undefined' && buffer instanceof SharedArrayBuffer;
    self.postMessage({started: {watch: shared ? {buffer, place: kovalune._kovalune_watch()} : null}});
}

/** @param {Order} order */
function answer({id, request, bytes}) {
    const count = bytes === null ? 0 : bytes.length;
    const input = kovalune._kovalune_input(count);
    if (count > 0 && input === 0) {
        self.postMessage({id, json: '{"error": "there is not enough memory for this file"}', bytes: null});
        return;
    }
    if (bytes !== null) {
        kovalune.HEAPU8.set(bytes, input);
    }
    kovalune.ccall('kovalune_request', null, ['string'], [request]);
    const json = kovalune.UTF8ToString(kovalune._kovalune_answer());
    const first = kovalune._kovalune_bytes();
    const length = kovalune._kovalune_byteCount();
    // A copy: the module's memory may be shared, and is taken again by the next request.
    const result = length === 0 ? null : new Uint8Array(kovalune.HEAPU8.subarray(first, first + length));
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
