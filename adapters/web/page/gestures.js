// Mouse, touch and keys on the stage: they move the picture and click its pixels.

/** @typedef {import('./camera.js').Camera} Camera */
/** @typedef {{x: number, y: number}} Point */

/**
 * @typedef {object} Listener
 * @property {(pixel: Point) => void} clicked
 * @property {(pixel: Point | null, place: Point) => void} hovered null: outside the picture; the place is on the stage
 */

const kClickSlack = 5; // CSS pixels that a hand moves in a click
const kWheelStep = 100; // of a wheel's notch
const kPanStep = 40;
const kMiddle = 1; // a mouse's button

/**
 * @param {Camera} camera
 * @param {Listener} listener
 */
export function startGestures(camera, listener) {
    const { stage } = camera;
    /** Pointers that are down, by id. @type {Map<number, Point>} */
    const down = new Map();
    let travelled = 0;
    let isSpaceDown = false;

    /** @param {MouseEvent} event @returns {Point} */
    const placeOf = (event) => {
        const box = stage.getBoundingClientRect();
        return { x: event.clientX - box.left, y: event.clientY - box.top };
    };
    /** @param {Point} place */
    const hover = (place) => listener.hovered(camera.pixelAt(place.x, place.y), place);
    const centre = () => ({ x: Math.floor(stage.clientWidth / 2), y: Math.floor(stage.clientHeight / 2) });

    stage.addEventListener('mousedown', (event) => {
        if (event.button === kMiddle) {
            event.preventDefault(); // no scrolling by itself
        }
    });
    stage.addEventListener('pointerdown', (event) => {
        if (event.button > kMiddle) {
            return; // the browser's own menu, whose end is not told
        }
        stage.setPointerCapture(event.pointerId);
        // A second finger, the middle button and the space bar move the picture, and click nothing.
        travelled = down.size > 0 || event.button === kMiddle || isSpaceDown ? Infinity : 0;
        if (event.pointerType === 'touch' && travelled === 0) {
            hover(placeOf(event)); // for as long as the finger rests
        }
        down.set(event.pointerId, placeOf(event));
    });
    stage.addEventListener('pointermove', (event) => {
        const place = placeOf(event);
        const last = down.get(event.pointerId);
        if (event.pointerType !== 'touch' && (!last || travelled <= kClickSlack)) {
            hover(place);
        }
        if (!last) {
            return;
        }
        if (event.pointerType === 'touch' && travelled > kClickSlack) {
            listener.hovered(null, place);
        }
        const others = [...down].filter(([id]) => id !== event.pointerId).map(([, point]) => point);
        if (others.length > 0) {
            pinch(last, place, others[0]);
            travelled = Infinity;
        } else {
            travelled += Math.hypot(place.x - last.x, place.y - last.y);
            if (travelled > kClickSlack) {
                camera.pan(place.x - last.x, place.y - last.y);
            }
        }
        down.set(event.pointerId, place);
    });
    stage.addEventListener('pointerup', (event) => {
        const isClick = down.has(event.pointerId) && down.size === 1 && travelled <= kClickSlack && event.button === 0;
        down.delete(event.pointerId);
        const place = placeOf(event);
        const pixel = camera.pixelAt(place.x, place.y);
        if (isClick && pixel) {
            listener.clicked(pixel);
        }
    });
    stage.addEventListener('pointercancel', (event) => down.delete(event.pointerId));
    stage.addEventListener('pointerleave', () => listener.hovered(null, { x: 0, y: 0 }));

    /**
     * Two fingers zoom about their middle and move the picture with it.
     * @param {Point} last
     * @param {Point} place
     * @param {Point} other
     */
    function pinch(last, place, other) {
        const before = Math.hypot(last.x - other.x, last.y - other.y);
        const after = Math.hypot(place.x - other.x, place.y - other.y);
        camera.pan((place.x - last.x) / 2, (place.y - last.y) / 2);
        if (before > 0 && after > 0) {
            camera.zoomBy(after / before, (place.x + other.x) / 2, (place.y + other.y) / 2);
        }
    }

    stage.addEventListener('wheel', (event) => {
        event.preventDefault();
        const place = placeOf(event);
        const pixels = event.deltaMode === WheelEvent.DOM_DELTA_LINE ? event.deltaY * 33 : event.deltaY;
        camera.zoomSteps(-Math.max(-3, Math.min(3, pixels / kWheelStep)), place.x, place.y);
        hover(place);
    }, { passive: false });

    stage.addEventListener('keydown', (event) => {
        if (event.ctrlKey || event.metaKey || event.altKey || event.target !== stage) {
            return;
        }
        const step = event.shiftKey ? 1 : kPanStep;
        const keys = /** @type {Record<string, () => void>} */ ({
            ArrowLeft: () => camera.pan(step, 0),
            ArrowRight: () => camera.pan(-step, 0),
            ArrowUp: () => camera.pan(0, step),
            ArrowDown: () => camera.pan(0, -step),
            '+': () => camera.zoomBy(2),
            '=': () => camera.zoomBy(2),
            '-': () => camera.zoomBy(0.5),
            '0': () => camera.fit(),
            '1': () => camera.zoomTo(1),
            Enter: () => {
                const pixel = camera.pixelAt(centre().x, centre().y);
                if (pixel) {
                    listener.clicked(pixel);
                }
            },
            ' ': () => { isSpaceDown = true; }
        });
        if (keys[event.key]) {
            event.preventDefault();
            keys[event.key]();
            if (event.key !== ' ') {
                hover(centre());
            }
        }
    });
    stage.addEventListener('focus', () => {
        if (stage.matches(':focus-visible')) {
            hover(centre()); // the crosshair's pixel
        }
    });
    stage.addEventListener('blur', () => listener.hovered(null, { x: 0, y: 0 }));
    document.addEventListener('keyup', (event) => {
        if (event.key === ' ') {
            isSpaceDown = false;
        }
    });
}
