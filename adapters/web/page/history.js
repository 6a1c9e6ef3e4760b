// Undo and redo over values that never change in place.

const kMostSteps = 500;

/** @template T */
export class History {
    /** @param {T} value */
    constructor(value) {
        this.value = value;
        /** @type {T[]} */
        this.before = [];
        /** @type {T[]} */
        this.after = [];
        /** @type {string | null} */
        this.gesture = null;
    }

    get canUndo() {
        return this.before.length > 0;
    }

    get canRedo() {
        return this.after.length > 0;
    }

    /**
     * One more step. Changes of one gesture (a slider that moves) are one step until it ends.
     * @param {T} value
     * @param {string | null} [gesture]
     */
    push(value, gesture = null) {
        if (gesture === null || gesture !== this.gesture) {
            this.before.push(this.value);
            this.before.splice(0, this.before.length - kMostSteps);
        }
        this.gesture = gesture;
        this.value = value;
        this.after = [];
    }

    endGesture() {
        this.gesture = null;
    }

    undo() {
        this.move(this.before, this.after);
    }

    redo() {
        this.move(this.after, this.before);
    }

    /**
     * @param {T[]} from
     * @param {T[]} to
     */
    move(from, to) {
        const value = from.pop();
        if (value !== undefined) {
            to.push(this.value);
            this.value = value;
            this.gesture = null;
        }
    }
}
