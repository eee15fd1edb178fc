// What the pages do, without a browser: stories of clerks, and random visits after which ledger, tickets and drawer agree.
// Sums are worked out by hand from the sample store: pants 8.00, dry cleaning with a fee of 2 % and taxes of 6 % and 2.5 %
// (the fee taxed by the first); shirts 2.50 with 0.10 a piece and 6 %; laundry untaxed, sheets 4.00, bags 20.00.
import { test, before, after, beforeEach } from "node:test";
import assert from "node:assert/strict";
import { Host } from "./counter_host.mjs";
import { Clerk, money, total } from "./clerk.mjs";

const pants = 101, shirt = 201, sheet = 302, bag = 301, gown = 107;
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

function paid(tickets) { return Number(host.query(`select isnull(sum(paymentAmount), 0) from Payment where ticketNumber in (${tickets})`)); }

// A saved ticket of bags, paid ahead in cash, then edited down to what is left.
async function paidTooMuch(customer, bags, left) {
  await clerk.ticket(customer);
  await clerk.click("item", { id: bag, quantity: bags });
  const [ticket] = await clerk.save();
  await clerk.visit(customer, "prepay");
  for (const other of [...clerk.html.matchAll(/data-ticket="(\d+)" data-within="1"/g)].map((one) => Number(one[1])).filter((one) => one !== ticket)) await clerk.till("leave", { ticket: other });
  const due = (await clerk.till("nothing")).due;
  await clerk.till("tender", { type: "Cash", amount: String(due) });
  await clerk.open("/pickup");
  await clerk.press("/pickup/pay");
  if (clerk.html.includes("Yes, go on")) await clerk.press("/pickup/pay");
  await clerk.open(`/customer?id=${customer}`);
  await clerk.press("/ticket/edit", {}, `value="${ticket}"`);
  await clerk.click("quantity", { line: 1, quantity: left });
  assert.deepEqual(await clerk.save(), [ticket]);
  return { ticket, paid: due };
}

async function collect(tickets) {
  for (const one of [...clerk.html.matchAll(/data-ticket="(\d+)" data-within="(1?)"/g)]) {
    const isWanted = tickets.includes(Number(one[1]));
    if (isWanted !== (one[2] === "1")) await clerk.till(isWanted ? "add" : "leave", { ticket: one[1] });
  }
}

async function pay() {
  await clerk.open("/pickup");
  await clerk.press("/pickup/pay");
  if (clerk.html.includes("Yes, go on")) await clerk.press("/pickup/pay");
  assert.equal(clerk.path, "/collected", clerk.words().slice(0, 300));
}

test("what was paid too much earlier is no change: without an account it is given back when that is confirmed", async () => {
  const { ticket, paid: before } = await paidTooMuch(17, 3, 1);
  const price = Number(host.query(`select netTotal from Ticket where ticketNumber = ${ticket}`));
  await clerk.visit(17);
  await collect([ticket]);
  const screen = await clerk.till("nothing");
  assert.match(screen.credit, new RegExp(`\\$${(before - price).toFixed(2)}</p>|\\$${(before - price).toFixed(2)} was paid too much`));
  assert.equal(money(screen.amounts, "Change"), 0);
  assert.match(screen.why, /settle that first/);
  assert.match((await clerk.till("credit", { way: "refund" })).ask, /back in cash/);
  assert.equal((await clerk.till("credit", { way: "refund", sure: true })).why, "");
  await pay();
  assert.match(clerk.words(), /Change \$0\.00/);
  assert.equal(paid(ticket), price);
  assert.equal(Number(host.query(`select amountPaid from Ticket where ticketNumber = ${ticket}`)), price);
});

test("with an account it goes there; for another ticket of the visit it is used", async () => {
  const { ticket, paid: before } = await paidTooMuch(13, 2, 1);
  await clerk.ticket(13);
  await clerk.click("item", { id: sheet });
  const [other] = await clerk.save();  // 4.00
  await clerk.visit(13);
  await collect([ticket, other]);
  await clerk.till("credit", { way: "tickets" });
  const rest = (await clerk.till("credit", { way: "account" }));
  assert.equal(rest.why, "");
  await pay();
  const price = Number(host.query(`select sum(netTotal) from Ticket where ticketNumber in (${ticket}, ${other})`));
  assert.equal(paid(other), 4);
  assert.equal(Math.round(100 * paid(`${ticket},${other}`)), Math.round(100 * price));
  assert.equal(Number(host.query(`select sum(paymentAmount) from Payment where ticketNumber = ${ticket} and paymentType = 'On Account'`)), Math.round(100 * (price - before)) / 100);
});

test("a chosen day holds for lines that come later, and a charge does not move it", async () => {
  await clerk.ticket(1);
  await clerk.click("item", { id: pants });
  await clerk.click("deptDue", { department: 1, value: "2026-12-05" });
  await clerk.click("item", { id: 113 });
  const answer = await clerk.click("charge", { name: "Hem", value: "5", quantity: 1, department: 1 });
  assert.match(answer.lines, /ready Sat 12\/5\/2026/);
  const tickets = await clerk.save();
  assert.equal(host.query(`select count(*) from TicketLineItem where ticketLineType in ('IT', 'AC') and datediff(day, dueDate, '12/5/2026') = 0 and ticketNumber in (${tickets})`), "3");
});

test("only what is alike counts on one line; a stain stays on its piece", async () => {
  await clerk.ticket(1);
  await clerk.click("item", { id: pants, quantity: 3 });
  let answer = await clerk.click("item", { id: pants });
  assert.match(answer.lines, /<div class="quantity">4<\/div>/);
  await clerk.click("color", { line: 1, name: "Navy" });
  answer = await clerk.click("item", { id: pants });
  assert.equal(answer.lines.match(/lineid=/g).length, 2);
  answer = await clerk.click("upcharge", { line: answer.line, id: 0, name: "Stain Treatment", quantity: 1 });
  const line = answer.line;
  answer = await clerk.click("quantity", { line, quantity: 2 });
  assert.match(answer.choose.choose, /Stain Treatment on the new piece too\?/);
  answer = await clerk.click("quantity", { line, quantity: 2, each: false });
  assert.match(answer.lines, /\$19\.00/);  // 2 x 8 and one stain of 3
  answer = await clerk.click("quantity", { line, quantity: 3, each: false });
  answer = await clerk.click("quantity", { line, quantity: 2 });
  assert.match(answer.lines, /\$19\.00/);
  await clerk.open("/ticket");
  await clerk.press("/ticket/drop");
});

test("nothing goes without a way back: a garment, a redo, a ticket", async () => {
  await clerk.ticket(1);
  await clerk.click("item", { id: bag, quantity: 2 });
  for (const name of ["remove", "redo"]) {
    assert.equal(total(await clerk.click(name, { line: 1 })), 0);
    assert.equal(total(await clerk.click("undo")), 40);
  }
  await clerk.open("/ticket");
  await clerk.press("/ticket/drop");
  await clerk.press("/bring_back");
  assert.equal(clerk.path, "/ticket");
  assert.equal(total(clerk.html), 40);
  const coupon = Number(host.query("select discountID from Discount where discountName = '5 Off 25'"));
  assert.equal(total(await clerk.click("coupon", { id: coupon })), 35);
  assert.equal(total(await clerk.click("coupon", { id: coupon })), 40);
  await clerk.open("/ticket");
  await clerk.press("/ticket/drop");
});

test("a press that arrives twice is done once; odd numbers are asked about; what is too long is said", async () => {
  await clerk.ticket(1);
  await clerk.click("item", { id: sheet });
  clerk.presses--;
  assert.equal(total(await clerk.click("item", { id: sheet })), 4);
  assert.match((await clerk.click("item", { id: sheet, quantity: 200 })).ask, /200 pieces/);
  assert.match((await clerk.click("notes", { line: 1, value: "x".repeat(251) })).problem, /too long: 251 letters, and 180/);
  await clerk.click("notes", { line: 1, value: "x".repeat(180) });
  const [ticket] = await clerk.save();
  assert.equal(host.query(`select len(itemNotes) from TicketLineItem where ticketNumber = ${ticket} and ticketLineType = 'IT'`), "180");
  await clerk.visit(1);
  await collect([ticket]);
  assert.match((await clerk.till("tender", { type: "Cash", amount: "400" })).ask, /Cash of \$400\.00 for \$4\.00/);
  assert.match((await clerk.till("tender", { type: "Check", amount: "10", reference: "7" })).ask, /back in cash/);
});

test("a save that fails loses nothing, and is done when it is tried again", async (t) => {
  if (!host.execute("select 1")) return t.skip("no sqlite3");
  host.execute("create trigger full_disk before insert on TicketLineItem begin select raise(abort, 'database or disk is full'); end");
  await clerk.ticket(1);
  await clerk.click("item", { id: sheet, quantity: 2 });
  await clerk.open("/ticket");
  await clerk.press("/ticket/finish");
  const before = host.query("select count(*) from Ticket");
  await clerk.press("/ticket/save");
  host.execute("drop trigger full_disk");
  assert.match(clerk.words(), /could not be saved\. Nothing of it is lost/);
  assert.equal(host.query("select count(*) from Ticket"), before);
  await clerk.open("/finished");
  await clerk.press("/ticket/save");
  const [ticket] = /tickets=(\d+)/.exec(clerk.path).slice(1);
  assert.equal(host.query(`select netTotal from Ticket where ticketNumber = ${ticket}`), "8");
});

test("of a split order what is saved is saved once, the rest is saved when it is tried again", async (t) => {
  if (!host.execute("create trigger no_pants before insert on TicketLineItem when new.departmentID = 1 begin select raise(abort, 'the connection is lost'); end")) return t.skip("no sqlite3");
  await clerk.ticket(1);
  await clerk.click("item", { id: pants });
  await clerk.click("item", { id: shirt, quantity: 2 });
  await clerk.open("/ticket");
  await clerk.press("/ticket/finish");
  const before = Number(host.query("select count(*) from Ticket"));
  await clerk.press("/ticket/save");
  host.execute("drop trigger no_pants");
  assert.match(clerk.words(), /1 of the tickets were saved/);
  await clerk.open("/finished");
  await clerk.press("/ticket/save");
  const tickets = /tickets=([\d-]+)/.exec(clerk.path)[1].split("-");
  assert.equal(tickets.length, 2);
  assert.equal(Number(host.query("select count(*) from Ticket")), before + 2);
  assert.equal(host.query(`select sum(quantity) from TicketLineItem where ticketLineType = 'IT' and ticketNumber in (${tickets})`), "3");
});

test("a loss behind the commit is a ticket that is saved, with a word on it", async (t) => {
  if (!host.execute("create trigger no_tags before insert on TicketTag begin select raise(abort, 'the connection is lost'); end")) return t.skip("no sqlite3");
  await clerk.ticket(1);
  await clerk.click("item", { id: pants });
  await clerk.open("/ticket");
  await clerk.press("/ticket/finish");
  const before = Number(host.query("select count(*) from Ticket"));
  await clerk.press("/ticket/save");
  host.execute("drop trigger no_tags");
  assert.match(clerk.words(), /are saved, but the connection was lost/);
  assert.equal(Number(host.query("select count(*) from Ticket")), before + 1);
});

// ---- random visits

function random(seed) {
  let state = seed;
  return (most) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor(state / 4294967296 * most);
  };
}

test("what is shown is what is saved", async () => {
  const next = random(7), customers = [1, 2, 5, 6, 7, 9, 16], ids = [pants, 102, 113, shirt, 202, sheet, bag, 401];
  const shown = [];
  for (let round = 0; round < 40; round++) {
    await clerk.ticket(customers[next(customers.length)]);
    let answer;
    for (let clicks = 1 + next(5); clicks > 0; clicks--) answer = await clerk.click("item", { id: ids[next(ids.length)], quantity: 1 + next(4) });
    if (next(3) === 0) answer = await clerk.click("charge", { name: "Extra", value: `${1 + next(9)}.${10 + next(89)}`, quantity: 1, department: 1 });
    if (next(4) === 0) answer = await clerk.click("ticketDue", { value: "2026-11-25" });
    if (next(4) === 0) answer = await clerk.click("quantity", { line: 1, quantity: 1 + next(5), each: true });
    shown.push({ round, total: total(answer), tickets: await clerk.save() });
  }
  for (const one of shown) assert.equal(Math.round(100 * Number(host.query(`select sum(netTotal) from Ticket where ticketNumber in (${one.tickets})`))), Math.round(100 * one.total), JSON.stringify(one));
});

test("whatever is tendered, prepaid and edited, ledger, tickets and drawer agree", async () => {
  const next = random(11);
  let drawer = 0;
  const start = host.query("select isnull(max(paymentId), 0) from Payment");
  for (let round = 0; round < 12; round++) {
    const customer = [4, 12, 13, 17][next(4)], tickets = [];
    for (let count = 1 + next(2); count > 0; count--) {
      await clerk.ticket(customer);
      await clerk.click("item", { id: bag, quantity: 1 + next(4) });
      tickets.push(...await clerk.save());
    }
    if (next(2)) {
      await clerk.visit(customer, "prepay");
      await collect(tickets);
      const due = (await clerk.till("nothing")).due, given = next(2) ? due : Math.ceil(due / 2);
      const took = await clerk.till("tender", { type: "Cash", amount: String(given) });
      await pay();
      drawer += given - money(took.amounts, "Change");
    }
    await clerk.open(`/customer?id=${customer}`);
    await clerk.press("/ticket/edit", {}, `value="${tickets[0]}"`);
    await clerk.click("quantity", { line: 1, quantity: 1 + next(4) });
    await clerk.save();
    await clerk.visit(customer);
    await collect(tickets);
    let screen = await clerk.till("nothing");
    for (const way of ["tickets", "account"]) if (screen.credit.includes(`data-credit="${way}"`)) screen = await clerk.till("credit", { way });
    if (screen.credit.includes("refund")) {
      drawer -= Number(/\$([\d.]+) was paid/.exec(screen.credit)[1]);
      screen = await clerk.till("credit", { way: "refund", sure: true });
    }
    if (screen.due > 5) screen = await clerk.till("tender", { type: "Check", amount: "5", reference: "12" });
    if (screen.due > 0) {
      const given = Math.ceil(screen.due / 20) * 20;
      screen = await clerk.till("tender", { type: "Cash", amount: String(given), sure: true });
      drawer += given - money(screen.amounts, "Change");
    }
    await pay();
    const open = host.query(`select count(*) from Ticket t where t.ticketNumber in (${tickets}) and (abs(t.amountPaid - t.netTotal) > 0.001 or abs(t.amountPaid - (select sum(p.paymentAmount) from Payment p where p.ticketNumber = t.ticketNumber)) > 0.001)`);
    assert.equal(open, "0", `round ${round}, tickets ${tickets}`);
    const cash = Number(host.query(`select isnull(sum(paymentAmount), 0) from Payment where paymentType = 'Cash' and paymentId > ${start}`));
    assert.equal(Math.round(100 * cash), Math.round(100 * drawer), `round ${round}: drawer`);
  }
});
