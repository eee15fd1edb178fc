// Slips of the hand and odd moments at ticket and till, without a browser: what is said, asked, and can be taken back.
import { test, before, after, beforeEach } from "node:test";
import assert from "node:assert/strict";
import { Host } from "./counter_host.mjs";
import { Clerk, money, total } from "./clerk.mjs";

const pants = 101, gown = 107, bag = 301, fiveOff25 = 1;
let host, clerk;

before(async () => {
  host = new Host();
  await host.start();
});
after(async () => {
  await host.stop();
  host.remove();
});
beforeEach(async () => {
  clerk = new Clerk(host);
  await clerk.begin();
});

async function bags(customer, quantity) {
  await clerk.ticket(customer);
  await clerk.click("item", { id: bag, quantity });
  return (await clerk.save())[0];
}

test("a day that moves is said with its reason, and said again when it moves back", async () => {
  await clerk.ticket(1);
  await clerk.click("item", { id: 102 });  // 3 working days are Monday, which is full
  const later = await clerk.click("item", { id: gown });  // 5, with Thanksgiving, its Friday and a Sunday between
  assert.match(later.notices, /Dry Cleaning: Wed 12\/2\/2026 in place of Tue 12\/1\/2026, Evening Gown takes 5 working days\./);
  const back = await clerk.click("remove", { line: later.line });
  assert.match(back.notices, /Dry Cleaning: Tue 12\/1\/2026 in place of Wed 12\/2\/2026, Mon 11\/30\/2026 is full\./);
  await clerk.open("/ticket");
  await clerk.press("/ticket/drop");
  await clerk.ticket(1);
  assert.equal((await clerk.click("item", { id: gown })).notices, "");
});

test("another of the same, but different, is a line of its own", async () => {
  await clerk.ticket(1);
  const { line } = await clerk.click("item", { id: pants, quantity: 2 });
  const answer = await clerk.click("different", { line });
  assert.deepEqual([...answer.lines.matchAll(/<div class="quantity">(\d)/g)].map((one) => one[1]), ["1", "2"]);
  const navy = await clerk.click("color", { line: answer.line, name: "Navy" });
  assert.equal(navy.lines.match(/Navy/g).length, 1);
});

test("a coupon of the till is taken off again as long as nothing is booked", async () => {
  const ticket = await bags(13, 2);
  await clerk.visit(13, "prepay");
  for (const one of [...clerk.html.matchAll(/data-ticket="(\d+)" data-within="1"/g)].map((found) => found[1]).filter((one) => one !== String(ticket))) await clerk.till("leave", { ticket: one });
  const on = await clerk.till("coupon", { id: fiveOff25 });
  assert.equal(on.due, 33);  // 40.00 less 5.00, and 1.00 a bag for paying ahead
  assert.match(on.taken, /5 Off 25/);
  const off = await clerk.till("couponOff", { id: fiveOff25 });
  assert.equal(off.due, 38);
  assert.equal(off.taken, "");
  assert.equal(host.query(`select netTotal from Ticket where ticketNumber = ${ticket}`), "40");
  assert.equal(host.query(`select count(*) from TicketLineItem where ticketLineType = 'CU' and ticketNumber = ${ticket}`), "0");
});

test("what the price list demands ahead is asked for at the till", async () => {
  await clerk.ticket(5);
  await clerk.click("item", { id: gown });  // half of 35.00
  await clerk.save();
  await clerk.visit(5, "prepay");
  assert.match(clerk.words(), /At least \$17\.50 is to be paid ahead/);
  await clerk.till("tender", { type: "Cash", amount: "10" });
  await clerk.open("/pickup");
  await clerk.press("/pickup/pay");
  assert.match(clerk.words(), /At least \$17\.50 is to be paid ahead\. Take less\?/);
  const enough = await clerk.till("tender", { type: "Cash", amount: "7.50" });
  assert.equal(enough.least, "");
  await clerk.open("/pickup");
  await clerk.press("/pickup/pay");
  assert.equal(clerk.path, "/collected");
});

test("a visit and a bag that were given up are brought back as they were", async () => {
  await bags(7, 1);
  await clerk.visit(7, "prepay");
  await clerk.till("tender", { type: "Check", amount: "3", reference: "88" });
  await clerk.open("/pickup");
  await clerk.press("/pickup/drop");
  await clerk.press("/bring_back");
  assert.equal(clerk.path, "/pickup");
  assert.equal(money(clerk.html, "Tendered"), 3);
  await clerk.till("off", { number: /data-off="(\d+)"/.exec(clerk.html)[1] });
  await clerk.open("/pickup");
  await clerk.press("/pickup/drop");
  await clerk.open("/customer?id=7");
  await clerk.press("/quick/start");
  await clerk.press("/quick/save", { "pieces-3": "3", notes: "y".repeat(300) });
  await clerk.press("/quick/drop");
  await clerk.press("/bring_back");
  assert.match(clerk.html, /name="pieces-3"[^>]* value="3"/);
  await clerk.press("/quick/drop");
});

test("who collects for somebody else: what was keyed in stays when it is refused, and is kept when it is booked", async () => {
  const ticket = await bags(6, 1);
  await clerk.visit(6);
  await clerk.till("add", { ticket });
  await clerk.till("tender", { type: "Cash", amount: "20" });
  await clerk.open("/pickup");
  const given = { relationship: "Neighbour", identificationType: "Passport", identification: "X12", note: "n".repeat(256) };
  await clerk.press("/pickup/pay", given);
  assert.match(clerk.words(), /Who collects\? The name is missing/);
  await clerk.open("/pickup");
  assert.match(clerk.html, /name="relationship" value="Neighbour"/);
  await clerk.press("/pickup/pay", { ...given, claimant: "Jo Pender" });
  assert.match(clerk.words(), /too long, 255 letters are taken/);
  await clerk.open("/pickup");
  assert.match(clerk.html, /name="claimant" value="Jo Pender"/);
  await clerk.press("/pickup/pay", { ...given, note: "twin", claimant: "Jo Pender" });
  await clerk.press("/pickup/pay");  // not on the rack: go on
  assert.equal(clerk.path, "/collected");
  assert.equal(host.query(`select ticketStatus from Ticket where ticketNumber = ${ticket}`), "FI");
});

// As if the host had ended between the commit of a payment and its answer.
test("after a kill at Pay the ledger is shown, and the change with it", async () => {
  const ticket = await bags(12, 2);
  await clerk.visit(12);
  for (const one of [...clerk.html.matchAll(/data-ticket="(\d+)" data-within="1"/g)]) await clerk.till("leave", { ticket: one[1] });
  await clerk.till("add", { ticket });
  await clerk.till("tender", { type: "Cash", amount: "50" });
  await host.stop();
  host.interruptCommit("pickup/pay");
  host.prepare(`update Ticket set ticketStatus = 'FI', amountPaid = 40 where ticketNumber = ${ticket}`,
    "insert into Payment (paymentDate, paymentAction, storeId, terminalId, employeeId, customerSequenceNumber, ticketNumber, paymentType, paymentAmount) " +
    `values (getdate(), 'Pickup', 1, 2, 4, 12, ${ticket}, 'Cash', 40)`);
  await host.start();
  await clerk.open("/pickup");
  assert.match(clerk.words(), /Was it saved\?.*\$50\.00 was tendered\. The ledger has \$40\.00 of it: it is done\..*Change\s*\$10\.00/);
  await clerk.press("/doubt", {}, 'value="pickup"');
  assert.equal(clerk.path, "/collected");
  assert.match(clerk.words(), /Change \$10\.00/);
  await clerk.open("/");
  assert.match(clerk.words(), /Change of the last customer \$10\.00/);
});

test("names are found without their accents and signs, a ticket by its number, and the only one is opened", async () => {
  for (const typed of ["zoe", "ohanlon", "ZOË O'HANLON", "han zo"]) {
    await clerk.open(`/?q=${encodeURIComponent(typed)}`);
    assert.equal(clerk.path, "/customer?id=15", typed);
  }
  await clerk.open("/?part=1&q=501");
  assert.match(clerk.words(), /Customers/);
  const invoice = host.query("select invoiceNumber from Ticket where ticketNumber = 1011");
  await clerk.open(`/?part=1&q=${invoice}`);
  assert.match(clerk.html, /<h2>Tickets<\/h2>.*Ticket \d+/);
});

test("what is too long is said where it would be cut", async () => {
  await clerk.ticket(1);
  const { line } = await clerk.click("item", { id: pants });
  const long = "x".repeat(65);
  for (const [name, values, most] of [["brand", { name: long }, 64], ["seal", { value: long }, 20], ["charge", { name: long, value: "1", quantity: 1, department: 1 }, 64],
    ["preference", { name: "Special Care", value: long }, 64], ["answer", { value: "x".repeat(181) }, 180]])
    assert.match((await clerk.click(name, { line, ...values })).problem, new RegExp(`too long: \\d+ letters, and ${most} are taken`), name);
  await clerk.open("/ticket");
  await clerk.press("/ticket/drop");
  const ticket = await bags(1, 1);
  await clerk.visit(1, "prepay");
  assert.match((await clerk.till("tender", { type: "Check", amount: "1", reference: "C".repeat(51) })).problem, /Check number takes 50 letters at most/);
});
