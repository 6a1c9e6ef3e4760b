// A zip of stored entries: pictures are packed already. Sizes and places are of 32 bits, as in every zip before zip64.

const kMost = 0xFFFFFFFF;
const kMostEntries = 0xFFFF;
const kUtf8Names = 0x0800;
const kVersion = 20; // 2.0

const kCrcTable = Uint32Array.from({ length: 256 }, (_, index) => {
    let value = index;
    for (let bit = 0; bit < 8; ++bit) {
        value = value & 1 ? (value >>> 1) ^ 0xEDB88320 : value >>> 1;
    }
    return value;
});

/** @param {Uint8Array} bytes */
export function crc32(bytes) {
    let crc = 0xFFFFFFFF;
    for (const byte of bytes) {
        crc = (crc >>> 8) ^ kCrcTable[(crc ^ byte) & 0xFF];
    }
    return (crc ^ 0xFFFFFFFF) >>> 0;
}

/** @typedef {{name: Uint8Array, crc: number, size: number, place: number, data: Blob}} Entry */

export class Zip {
    /** @param {Date} [date] which all entries get, in local time as zips have it */
    constructor(date = new Date()) {
        /** @type {Entry[]} */
        this.entries = [];
        this.size = 0;
        this.time = (date.getHours() << 11) | (date.getMinutes() << 5) | (date.getSeconds() >> 1);
        this.day = ((Math.max(1980, date.getFullYear()) - 1980) << 9) | ((date.getMonth() + 1) << 5) | date.getDate();
    }

    /**
     * The bytes go to a blob, which browsers keep on disk where memory is short.
     * @param {string} name
     * @param {Uint8Array} bytes
     */
    add(name, bytes) {
        const entry = {
            name: new TextEncoder().encode(name), crc: crc32(bytes), size: bytes.length, place: this.size,
            data: new Blob([bytes])
        };
        this.entries.push(entry);
        this.size += 30 + entry.name.length + entry.size;
        if (this.size + this.directorySize() + 22 > kMost || this.entries.length > kMostEntries) {
            throw new RangeError('a zip holds less than 4 GiB and 65536 files');
        }
    }

    /**
     * The name, with a number where an entry has it already.
     * @param {string} name
     */
    freeName(name) {
        const taken = new Set(this.entries.map((entry) => new TextDecoder().decode(entry.name)));
        let free = name;
        for (let number = 2; taken.has(free); ++number) {
            free = name.replace(/(\.[^.]*)?$/, `-${number}$1`);
        }
        return free;
    }

    directorySize() {
        return this.entries.reduce((sum, entry) => sum + 46 + entry.name.length, 0);
    }

    blob() {
        const files = this.entries.flatMap((entry) => [this.localHeader(entry), entry.name, entry.data]);
        const directory = this.entries.flatMap((entry) => [this.directoryHeader(entry), entry.name]);
        return new Blob([...files, ...directory, this.end()], { type: 'application/zip' });
    }

    /** @param {Entry} entry */
    localHeader(entry) {
        return record([[4, 0x04034B50], [2, kVersion], ...this.common(entry), [2, 0]]);
    }

    /** @param {Entry} entry */
    directoryHeader(entry) {
        return record([[4, 0x02014B50], [2, kVersion], [2, kVersion], ...this.common(entry),
            [2, 0], [2, 0], [2, 0], [2, 0], [4, 0], [4, entry.place]]);
    }

    /**
     * Flags, method, time, sizes: what both headers have.
     * @param {Entry} entry
     * @returns {[2 | 4, number][]}
     */
    common(entry) {
        return [[2, kUtf8Names], [2, 0], [2, this.time], [2, this.day], [4, entry.crc], [4, entry.size], [4, entry.size],
            [2, entry.name.length]];
    }

    end() {
        const count = this.entries.length;
        return record([[4, 0x06054B50], [2, 0], [2, 0], [2, count], [2, count], [4, this.directorySize()], [4, this.size],
            [2, 0]]);
    }
}

/** @param {[2 | 4, number][]} fields width in bytes, value; little end first */
function record(fields) {
    const bytes = new Uint8Array(fields.reduce((sum, [width]) => sum + width, 0));
    const view = new DataView(bytes.buffer);
    let place = 0;
    for (const [width, value] of fields) {
        if (width === 2) {
            view.setUint16(place, value, true);
        } else {
            view.setUint32(place, value, true);
        }
        place += width;
    }
    return bytes;
}
