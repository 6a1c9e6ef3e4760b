// The effect's parameter table in the shape of the page: controls outside groups, and groups.

/** @typedef {import('./ops.js').Parameter} Parameter */
/** @typedef {{group: Parameter, members: Parameter[]}} Group */

/**
 * @param {Parameter[]} parameters
 * @returns {{single: Parameter[], groups: Group[]}} groups in their order; a nested one counts by itself
 */
export function arranged(parameters) {
    const isControl = (/** @type {Parameter} */ each) => !['group', 'group end', 'other'].includes(each.kind);
    const groups = parameters.filter((each) => each.kind === 'group').map((group) => ({
        group, members: parameters.filter((each) => isControl(each) && each.groups[each.groups.length - 1] === group.index)
    }));
    return { single: parameters.filter((each) => isControl(each) && each.groups.length === 0), groups };
}

/**
 * What is wrong with a number for this parameter; null if nothing is.
 * @param {Parameter} parameter
 * @param {string} text
 * @returns {'range' | 'whole' | 'number' | null}
 */
export function numberProblem(parameter, text) {
    const value = Number(text);
    if (text.trim() === '' || !Number.isFinite(value)) {
        return 'number';
    }
    if (parameter.kind === 'integer' && !Number.isInteger(value)) {
        return 'whole';
    }
    return value < (parameter.min ?? -Infinity) || value > (parameter.max ?? Infinity) ? 'range' : null;
}
