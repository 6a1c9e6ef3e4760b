// Where the engine's parts are: files beside the page or, where the page is one file, texts inside it.

/**
 * @typedef {object} EmbeddedEngine
 * @property {string} code the module, in base64
 * @property {string} worker the engine's script with the worker's after it
 */

const embedded = /** @type {{KOVALUNE_EMBEDDED?: EmbeddedEngine}} */ (globalThis).KOVALUNE_EMBEDDED;

/** @param {string} name */
function addressOf(name) {
    return new URL(name, document.baseURI).href;
}

/** @param {boolean} threaded */
function nameOf(threaded) {
    return threaded ? 'kovalune-threads' : 'kovalune';
}

/**
 * @param {boolean} threaded
 * @returns {string | null} the script's address; null where it is in the worker's own script, which has no threads
 */
export function engineScript(threaded) {
    return embedded ? null : addressOf(`${nameOf(threaded)}.js`);
}

/** @type {string | null} */
let embeddedWorker = null;

/** @returns {string} the address of the worker's script */
export function workerScript() {
    if (!embedded) {
        return addressOf('worker.js');
    }
    embeddedWorker ??= URL.createObjectURL(new Blob([embedded.worker], {type: 'text/javascript'}));
    return embeddedWorker;
}

/**
 * @param {boolean} threaded
 * @returns {Promise<WebAssembly.Module>}
 */
export async function engineCode(threaded) {
    if (embedded) {
        return WebAssembly.compile(Uint8Array.from(atob(embedded.code), (letter) => letter.charCodeAt(0)));
    }
    const reply = await fetch(addressOf(`${nameOf(threaded)}.wasm`));
    if (!reply.ok) {
        throw new Error(`${nameOf(threaded)}.wasm: ${reply.status} ${reply.statusText}`);
    }
    // Not while it streams: hosts that do not know the type of such a file would be refused.
    return WebAssembly.compile(await reply.arrayBuffer());
}
