// What the page comes with, beside it or, where it is one file, inside it.

/** @typedef {{sample: string}} Embedded base64 */

export const kSampleName = 'sample.png';

/** For the sample: its light colours lie in Base, its shadows and a highlight in the Process stages. */
export const kSampleSettings = `[Version=1.0]
Blur Amount=0
Color 1=#3264B4
Enable 2=on
Color 2=#FFD9BE
Enable 3=on
Color 3=#787864
Enable 4=on
Color 4=#5A3C8C
1 : Color=#1E4682
1 : Boundary Blur=80
2 : Enable Process=on
2 : Color=#E8A98C
2 : Boundary Blur=30
2 : Keep Process=off
3 : Enable Process=on
3 : Color=#505046
3 : Boundary Blur=60
3 : Keep Process=off
4 : Enable Process=on
4 : Color=#8C6EC8
4 : Boundary Blur=12
4 : Keep Process=off
`;

/** @returns {Promise<File>} */
export async function sampleFile() {
    const embedded = /** @type {{KOVALUNE_EMBEDDED?: Embedded}} */ (globalThis).KOVALUNE_EMBEDDED;
    if (embedded) {
        const bytes = Uint8Array.from(atob(embedded.sample), (letter) => letter.charCodeAt(0));
        return new File([bytes], kSampleName);
    }
    const reply = await fetch(kSampleName);
    if (!reply.ok) {
        throw new Error(`${kSampleName}: ${reply.status} ${reply.statusText}`);
    }
    return new File([await reply.arrayBuffer()], kSampleName);
}
