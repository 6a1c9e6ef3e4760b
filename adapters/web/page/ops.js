// What the page asks the engine, with the types of its answers.

/**
 * @typedef {{label: string, value: number, selectable: boolean}} Choice
 * @typedef {object} Parameter
 * @property {number} index
 * @property {number} id
 * @property {string} label
 * @property {'integer' | 'number' | 'checkbox' | 'color' | 'popup' | 'group' | 'group end' | 'other'} kind
 * @property {number[]} groups indices of the groups that it is in, the outermost first
 * @property {number | boolean | string} [default]
 * @property {number} [min]
 * @property {number} [max]
 * @property {number} [sliderMin]
 * @property {number} [sliderMax]
 * @property {number} [precision] digits after the point
 * @property {Choice[]} [choices]
 * @property {{en: string, ja: string}} [hint]
 *
 * @typedef {{name: string, format: string, width: number, height: number, depth: 8 | 16, form: string}} Opened
 * @typedef {{name: string, values: Record<string, string>, enabled: Record<string, boolean>, keyed: string[]}} PassState
 * @typedef {{passes: PassState[]}} State
 *
 * @typedef {{label: string, color: string, selected: number}} ColorReport
 * @typedef {object} StageReport
 * @property {string} stage
 * @property {'run' | 'off' | 'not in this view'} state
 * @property {number} [selected]
 * @property {number} [changed]
 * @property {number} [softEdge]
 * @property {number} [cutByKeepProcess]
 * @property {ColorReport[]} [colors]
 * @typedef {{pixels: number, stages: StageReport[]}} Report
 * @typedef {object} Rendered
 * @property {number} width
 * @property {number} height
 * @property {number} milliseconds
 * @property {{name: string, report: Report}[]} passes
 * @property {string[]} notes
 *
 * @typedef {{width: number, height: number, selected: number}} Selected
 * @typedef {object} Picked
 * @property {number} x
 * @property {number} y
 * @property {string} source exact values in words
 * @property {string} hex
 * @property {boolean} transparent
 * @property {string | null} result
 * @property {string | null} resultHex
 *
 * @typedef {object} Pair
 * @property {string} light
 * @property {string} shadow
 * @property {boolean} isHighlight
 * @property {number} borderShare
 * @property {number} boundaryBlur
 * @typedef {{hex: string, pixels: number, share: number}} FlatColor
 * @typedef {{pixels: number, transparent: number, colors: FlatColor[], more: number, pairs: Pair[]}} Colors
 * @typedef {{values?: Record<string, string>, stage?: number, full?: boolean, color?: string,
 *     problem?: 'no flat colour' | 'same colour' | 'no border'}} PairReply
 * @typedef {{scenes: number, agree: number, seconds: number, first: null | {scene: string, expected: string, found: string}}}
 *     SelfcheckReply
 *
 * @typedef {{settings: string, frame: number}} At
 * @typedef {{settings: string, frame: number, pass: number}} Job
 *
 * @typedef {object} Engine
 * @property {boolean} isThreaded
 * @property {number} threads
 * @property {(op: string, args?: object, bytes?: Uint8Array | null) => Promise<{result: any, bytes: Uint8Array | null}>} call
 * @property {() => void} cancel
 * @property {() => void} cancelSelections
 * @property {() => void} close
 */

export class Ops {
    /** @param {Engine} engine */
    constructor(engine) {
        this.engine = engine;
    }

    /** @returns {Promise<{version: string, threads: number}>} */
    async info() {
        return (await this.engine.call('info')).result;
    }

    /** @returns {Promise<Parameter[]>} */
    async params() {
        return (await this.engine.call('params')).result.parameters;
    }

    /**
     * @param {string} name
     * @param {Uint8Array} file
     * @returns {Promise<Opened & {bytes: Uint8Array}>}
     */
    async open(name, file) {
        return withBytes(await this.engine.call('open', { name }, file));
    }

    /** @param {At} at @returns {Promise<State>} */
    async state(at) {
        return (await this.engine.call('state', at)).result;
    }

    /** @param {Job & {reduce: 1 | 2 | 4}} job @returns {Promise<Rendered & {bytes: Uint8Array}>} */
    async render(job) {
        return withBytes(await this.engine.call('render', job));
    }

    /** @param {Job & {stage: number, color: number}} slot @returns {Promise<Selected & {bytes: Uint8Array}>} */
    async select(slot) {
        return withBytes(await this.engine.call('select', slot));
    }

    /** @param {number} x @param {number} y @returns {Promise<Picked>} */
    async pick(x, y) {
        return (await this.engine.call('pick', { x, y })).result;
    }

    /** @returns {Promise<Colors>} */
    async colors() {
        return (await this.engine.call('colors')).result;
    }

    /** @returns {Promise<{settings: string, pairs: Pair[]}>} */
    async suggest() {
        return (await this.engine.call('suggest')).result;
    }

    /** @param {Job & {light: string, shadow: string}} pair @returns {Promise<PairReply>} */
    async pair(pair) {
        return (await this.engine.call('pair', pair)).result;
    }

    /** @param {At} at @returns {Promise<{name: string, depth: number, bytes: Uint8Array}>} */
    async save(at) {
        return withBytes(await this.engine.call('save', at));
    }

    /** @returns {Promise<SelfcheckReply>} */
    async selfcheck() {
        return (await this.engine.call('selfcheck', { quick: true })).result;
    }
}

/** @param {{result: any, bytes: Uint8Array | null}} reply */
function withBytes(reply) {
    return { ...reply.result, bytes: reply.bytes ?? new Uint8Array(0) };
}
