// Runs axe-core in a real Chromium (puppeteer-core drives /usr/bin/chromium or $CHROMIUM) on
// each page given and prints every violation; exit status 1 when there is one.
// Usage: node axe-sheet.js PAGE.html...
'use strict';
const path = require('path');
const puppeteer = require('puppeteer-core');
const axeSource = require('axe-core').source;

(async () => {
    const args = ['--headless', '--disable-gpu', '--no-first-run', '--disable-sync',
                  '--disable-background-networking', '--disable-component-update'];
    if (process.getuid && process.getuid() === 0)
        args.push('--no-sandbox');
    const browser = await puppeteer.launch({
        executablePath: process.env.CHROMIUM || '/usr/bin/chromium', args, headless: true });
    let violations = 0;
    try {
        for (const file of process.argv.slice(2)) {
            const page = await browser.newPage();
            await page.goto('file://' + path.resolve(file));
            await page.addScriptTag({ content: axeSource });
            const result = await page.evaluate(() => axe.run(document));
            for (const v of result.violations) {
                violations++;
                console.log(`${file}: ${v.id} (${v.impact}): ${v.help}`);
                for (const node of v.nodes.slice(0, 3))
                    console.log(`  ${node.target.join(' ')}`);
            }
            console.log(`${file}: ${result.passes.length} rules passed, ` +
                        `${result.violations.length} violated`);
            await page.close();
        }
    } finally {
        await browser.close();
    }
    process.exit(violations ? 1 : 0);
})().catch((error) => { console.error(error); process.exit(2); });
