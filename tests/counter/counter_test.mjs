// What a clerk sees and does, in a browser. Sums are worked out by hand from the sample store: pants 8.00 and shirts
// 2.50, dry cleaning with 2 % environmental fee and taxes of 6 % and 2.5 % (the fee taxed by the first), shirts with
// 0.10 a piece and 6 %.
import { test, before, after, beforeEach, afterEach } from "node:test";
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { join } from "node:path";
import { Host, browser } from "./counter_host.mjs";

const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
let host, chrome, context, page;

before(async () => {
  host = new Host();
  await host.start();
  chrome = await browser();
});

after(async () => {
  await chrome.close();
  await host.stop();
  host.remove();
});

beforeEach(async () => {
  context = await chrome.newContext({ viewport: { width: 1280, height: 800 }, bypassCSP: true });
  page = await context.newPage();
  page.setDefaultTimeout(20000);
  await page.goto(host.address);
  await page.getByRole("button", { name: "Pat O'Dell" }).click();
});

afterEach(() => context.close());

async function newTicket(customer) {
  await page.getByLabel("Name, phone or ticket number").fill(customer);
  await page.locator(".customer").first().click();
  await page.getByRole("button", { name: "New ticket" }).click();
}

async function department(name) {
  await page.locator(".departments").getByText(name, { exact: true }).click();
}

async function press(name) {
  await Promise.all([page.waitForResponse(/ticket\/act/), page.locator("#panel").getByText(name, { exact: true }).click()]);
}

function total() { return page.locator("#totals .total", { hasText: /Total/ }).locator(".value"); }

async function picture(name) {
  if (process.env.ONDREL_IMAGES) await page.screenshot({ path: join(process.env.ONDREL_IMAGES, `${name}.png`) });
}

// No finding that keeps somebody from working.
async function accessible(where) {
  await page.evaluate(axe);
  const found = await page.evaluate(() => window.axe.run(document, { resultTypes: ["violations"] }));
  const serious = found.violations.filter((one) => one.impact === "serious" || one.impact === "critical");
  assert.deepEqual(serious.map((one) => `${where}: ${one.id} ${one.nodes[0].html}`), []);
}

async function savedTickets() {
  await page.waitForURL(/saved/);
  return new URL(page.url()).searchParams.get("tickets").split("-");
}

test("the road of a ticket by mouse", async () => {
  await accessible("customers");
  await newTicket("fenwick");
  await department("Dry Cleaning");
  await press("Pants");
  await assertTotal("$8.68");  // 8.00 + 0.68
  await page.locator(".lineitem").first().click();
  await press("Stain Treatment");
  await page.locator(".id-group-button", { hasText: "Color" }).click();
  await press("Navy");
  await assertTotal("$11.94");  // 11.00 + 0.66 + 0.28
  await department("Shirts");
  for (let piece = 0; piece < 3; piece++) await press("Shirt on Hanger");
  await picture("entry");
  await accessible("entry screen");
  await page.getByRole("button", { name: "Finish" }).click();
  await page.getByRole("heading", { name: "Finished: 2 tickets" }).waitFor();
  await picture("finished");
  await accessible("finished");
  await page.getByRole("button", { name: "Save" }).click();
  const tickets = await savedTickets();
  assert.equal(tickets.length, 2);
  assert.equal(host.query(`select sum(quantity) from TicketLineItem where ticketNumber in (${tickets}) and ticketLineType = 'IT'`), "4");
  await page.getByRole("link", { name: "Receipt" }).click();
  assert.match(await page.locator("main").innerText(), /3 Shirt on Hanger/);
  await picture("receipt");
  await accessible("receipt");
});

async function assertTotal(amount) {
  await total().filter({ hasText: amount }).waitFor().catch(async () => assert.equal(await total().innerText(), amount));
}

test("the same by keyboard alone", async () => {
  async function tabTo(wanted) {
    for (let presses = 0; presses < 120; presses++) {
      await page.keyboard.press("Tab");
      const found = await page.evaluate(() => document.activeElement.textContent.trim());
      if (found === wanted) return;
    }
    assert.fail(`no way to ${wanted} by Tab`);
  }
  await page.getByLabel("Name, phone or ticket number").focus();
  await page.keyboard.type("fenwick");
  await page.keyboard.press("Enter");
  await page.waitForURL(/q=fenwick/);
  await page.locator(".customer").first().waitFor();
  await page.locator("#q").focus();
  await page.keyboard.press("Tab");
  await page.keyboard.press("Tab");
  await page.keyboard.press("Enter");
  await page.waitForURL(/customer/);
  await tabTo("New ticket");
  await page.keyboard.press("Enter");
  await page.waitForURL(/ticket$/);
  await tabTo("Laundry");
  await page.keyboard.press("Enter");
  await page.locator("#panel").getByText("Bed Sheet", { exact: true }).waitFor();
  await tabTo("Bed Sheet");
  await Promise.all([page.waitForResponse(/ticket\/act/), page.keyboard.press("Enter")]);
  await assertTotal("$4.00");
  await tabTo("Finish");
  await page.keyboard.press("Enter");
  await page.getByRole("heading", { name: "Finished: one ticket" }).waitFor();
  await tabTo("Save");
  await page.keyboard.press("Enter");
  assert.equal((await savedTickets()).length, 1);
});

test("a scanner types a seal, wherever the focus is", async () => {
  await newTicket("fenwick");
  await page.getByText("Charge", { exact: true }).click();
  await page.locator("#description").focus();
  await page.keyboard.type("AA00021", { delay: 2 });
  await Promise.all([page.waitForResponse(/ticket\/act/), page.keyboard.press("Enter")]);
  await page.locator("#seals").getByText("AA00021").waitFor();
  assert.equal(await page.locator("#description").inputValue(), "");
  await department("Dry Cleaning");
  await press("Jacket");
  await page.locator(".lineitem .heatseal", { hasText: "AA00021" }).waitFor();
  assert.equal(await page.locator("#seals").innerText(), "");
});

test("what is changed behind Finish is finished again", async () => {
  await newTicket("fenwick");
  await department("Shirts");
  await press("Shirt on Hanger");
  await page.getByRole("button", { name: "Finish" }).click();
  await page.getByRole("heading", { name: "Finished: one ticket" }).waitFor();
  assert.match(await page.locator("main").innerText(), /Total\s+\$2\.75/);  // 2.50 + 0.10 + 0.15
  await page.getByRole("link", { name: "Ticket", exact: true }).click();
  await department("Shirts");
  await press("Shirt on Hanger");
  await page.getByRole("button", { name: "Finish" }).click();
  await page.getByRole("heading", { name: "Finished: one ticket" }).waitFor();
  assert.match(await page.locator("main").innerText(), /Total\s+\$5\.50/);  // 5.00 + 0.20 + 0.30
  await page.getByRole("link", { name: "Ticket", exact: true }).click();
  await page.getByRole("button", { name: "Give up" }).click();
  await newTicket("fenwick");
  await department("Shirts");
  await press("Shirt on Hanger");
  await page.getByRole("button", { name: "Finish" }).click();
  await page.getByRole("heading", { name: "Finished: one ticket" }).waitFor();
  assert.match(await page.locator("main").innerText(), /Total\s+\$2\.75/);
});

test("Save pressed twice saves once", async () => {
  await newTicket("fenwick");
  await department("Laundry");
  await press("Bed Sheet");
  await page.getByRole("button", { name: "Finish" }).click();
  await page.getByRole("heading", { name: "Finished: one ticket" }).waitFor();
  const before = Number(host.query("select count(*) from Ticket"));
  // Two requests with the number of the form, as an impatient network sends them.
  const answers = await page.evaluate(async () => {
    const form = document.querySelector("form[action='/ticket/save']");
    const send = () => fetch(form.action, { method: "POST", body: new URLSearchParams(new FormData(form)) }).then((answer) => answer.url);
    return Promise.all([send(), send()]);
  });
  assert.equal(answers[0], answers[1]);
  assert.match(answers[0], /saved\?tickets=\d+$/);
  assert.equal(Number(host.query("select count(*) from Ticket")), before + 1);
});

test("a half-written ticket is there again after the host has been started anew", async () => {
  await newTicket("fenwick");
  await department("Laundry");
  await press("Bed Sheet");
  await page.locator(".lineitem").first().click();
  await page.getByRole("button", { name: "Notes" }).click();
  await page.locator("#entered").fill("grandmother's");
  await Promise.all([page.waitForResponse(/ticket\/act/), page.keyboard.press("Enter")]);
  await host.stop();
  await host.start();
  await page.goto(`${host.address}/ticket`);
  assert.match(await page.locator(".lineitem").innerText(), /Bed Sheet[\s\S]*grandmother's/);
  await assertTotal("$4.00");
});

test("a pickup with change, by somebody else", async () => {
  await page.getByLabel("Name, phone or ticket number").fill("5013");
  await page.locator(".customer").first().click();
  await page.getByRole("button", { name: "Pickup" }).click();
  await picture("pickup");
  await accessible("pickup");
  assert.equal(await page.locator("#totals .total", { hasText: "Due" }).locator(".value").innerText(), "$88.00");  // 20 + 40 + 28
  assert.equal(await page.getByRole("button", { name: "Pay and hand out" }).isDisabled(), true);
  await page.getByLabel("Paid by").selectOption("Check");
  await page.getByLabel("Amount").fill("30");
  await page.getByLabel("Check number").fill("1207");
  await page.getByRole("button", { name: "Take", exact: true }).click();
  await page.locator("#totals .total", { hasText: "Due" }).filter({ hasText: "$58.00" }).waitFor();
  await page.getByLabel("Paid by").selectOption("Cash");
  await page.getByLabel("Amount").fill("60");
  await page.getByRole("button", { name: "Take", exact: true }).click();
  await page.locator("#totals .total", { hasText: "Change" }).filter({ hasText: "$2.00" }).waitFor();
  await page.getByText("Collected by somebody else").click();
  await page.locator("#claimant").fill("Orla O'Hanlon");
  await page.getByRole("button", { name: "Pay and hand out" }).click();
  await page.waitForURL(/collected/);
  assert.match(await page.locator("main").innerText(), /Change: \$2\.00/);
  assert.equal(host.query("select sum(paymentAmount) from Payment where ticketNumber in (1013,1014,1015)"), "88");
  assert.equal(host.query("select count(*) from Ticket where ticketNumber in (1013,1014,1015) and ticketStatus = 'FI'"), "3");
});

test("a bag is dropped off, and itemised later", async () => {
  await page.getByLabel("Name, phone or ticket number").fill("fenwick");
  await page.locator(".customer").first().click();
  await page.getByRole("button", { name: "Quick drop-off" }).click();
  await page.getByLabel("Laundry").fill("2");
  await page.getByRole("button", { name: "Take in" }).click();
  const [ticket] = await savedTickets();
  await page.getByRole("link", { name: "Customer", exact: true }).click();
  const invoice = host.query(`select invoiceNumber from Ticket where ticketNumber = ${ticket}`);
  await page.locator("tr", { hasText: invoice }).getByRole("button", { name: "Itemise" }).click();
  await department("Laundry");
  await press("Bed Sheet");
  await press("Bed Sheet");
  await page.getByRole("button", { name: "Finish" }).click();
  await page.getByRole("button", { name: "Save" }).click();
  await page.waitForURL(/saved/);
  assert.equal(host.query(`select netTotal from Ticket where ticketNumber = ${ticket}`), "8");
});
