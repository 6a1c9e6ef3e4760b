// Draws the page in three sizes into docs/images, for those who change it to look at.
//   node pictures.mjs

import { join } from 'node:path';
import { kRoot, Lab } from './lab.mjs';

const lab = await Lab.open();
for (const [name, size] of Object.entries({ desk: { width: 1280, height: 800 }, tablet: { width: 820, height: 1180, touch: true },
    phone: { width: 390, height: 844, touch: true } })) {
    const page = await lab.page(size);
    await page.tab.focus('#wipe');
    for (let step = 0; step < 100; ++step) { // the left half as it was drawn
        await page.tab.keyboard.press('ArrowRight');
    }
    await page.tab.evaluate(() => document.activeElement.blur());
    await page.tab.screenshot({ path: join(kRoot, `docs/images/page-${name}.png`) });
    await page.close();
}
await lab.close();
