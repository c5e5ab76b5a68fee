// The job of a SAML sign-in with playwright-core: a window, the launch cookie, the way through the
// pages, and the cookies of the request that ended it.
// Arguments: folder of modules, Chromium, address.
const [modules, executablePath, url] = process.argv.slice(2);
const { chromium } = require(modules + '/playwright-core');

(async () => {
  const args = process.getuid() === 0 ? ['--no-sandbox'] : [];
  const browser = await chromium.launch({ executablePath, headless: false, args });
  const context = await browser.newContext();
  await context.addCookies([{ name: 'KXSAMLEMBID', value: 'bench', url }]);
  const page = await context.newPage();
  const last = page.waitForResponse((response) => response.url().endsWith('/done'));
  await page.goto(url, { waitUntil: 'commit' });
  const sent = await (await last).request().allHeaders();
  const idp = await context.cookies(url.replace('gateway.', 'idp.'));
  console.log(JSON.stringify({ postauthcookie: sent.cookie, idp }));
  await browser.close();
})();
