// A shop's day without a browser: strangers, racks, the drawer, the set-up.
import { test, before, after, beforeEach } from "node:test";
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { Host } from "./counter_host.mjs";
import { Clerk, coins } from "./clerk.mjs";

const bag = 301;
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

// Sends a form of the page with what is filled in, and the fields that stand in it.
async function fill(path, values) { return clerk.press(path, values); }

test("a stranger is on a ticket after one form", async () => {
  await clerk.open("/?q=Anna Novak 802-555-0777");
  assert.match(clerk.html, /href="\/customers\/new\?q=Anna%20Novak%20802-555-0777"/);
  await clerk.open("/customers/new?q=anna%20novak%20802-555-0777");
  assert.match(clerk.html, /name="firstName" value="Anna"/);
  assert.match(clerk.html, /name="lastName" value="Novak"/);
  await fill("/customers/save", { firstName: "Anna", lastName: "Novák", phone: "802-555-0777", email: "anna@example.org", notifyBy: "email", then: "ticket" });
  assert.equal(clerk.path, "/ticket");
  await clerk.click("item", { id: bag, quantity: 1 });
  const [ticket] = await clerk.save();
  assert.equal(host.query(`select c.customername + ' ' + c.MainAreaCode + c.MainPhone + ' ' + c.notifyBy from Customer c inner join Ticket t on t.customerSequenceNumber = c.customerSequenceNumber where t.ticketNumber = ${ticket}`), "Anna Novák 8025550777 email");
});

test("who is likely known already is asked about, and a second press enters nobody twice", async () => {
  const form = { firstName: "Martha", lastName: "Fenwyck", phone: "(802) 555 0101", then: "customer" };  // the phone of Marta Fenwick
  await clerk.open("/customers/new");
  await fill("/customers/save", form);
  assert.match(clerk.words(), /Is it one of these\? Marta Fenwick/);
  assert.equal(host.query("select count(*) from Customer where lastName = 'Fenwyck'"), "0");
  const asked = clerk.html;
  await fill("/customers/save", form);
  assert.match(clerk.path, /customer\?id=\d+/);
  clerk.html = asked;
  await fill("/customers/save", form);
  assert.equal(host.query("select count(*) from Customer where lastName = 'Fenwyck'"), "1");
});

test("a form that cannot stand says why and keeps what was typed", async () => {
  for (const [field, value, said] of [["lastName", "", "A name is missing"], ["phone", "12", "seven digits"], ["email", "nobody", "no e-mail address"], ["notifyBy", "text", "a phone number is needed"]]) {
    await clerk.open("/customers/new");
    await fill("/customers/save", { firstName: "", lastName: "O'Brien & <Sons>", phone: "", email: "", then: "customer", [field]: value });
    assert.match(clerk.words(), new RegExp(said), field);
    if (field !== "lastName") assert.match(clerk.html, /value="O&#39;Brien &amp; Sons"|value="O'Brien &amp; Sons"/);
  }
});

test("two clerks change a customer: the second is told", async () => {
  const other = new Clerk(host);
  await other.begin(3, 5);
  await clerk.open("/customers/edit?id=10");
  await other.open("/customers/edit?id=10");
  const form = { firstName: "Ivan", lastName: "Kettle", phone: "8025550110" };
  await clerk.press("/customers/save", { ...form, notes: "Side door", then: "customer" });
  await other.press("/customers/save", { ...form, notes: "Lost", then: "customer" });
  assert.match(other.words(), /Somebody has changed this customer meanwhile/);
  assert.match(other.html, /value="Lost"/);
  assert.equal(host.query("select notes from Customer where customerSequenceNumber = 10"), "Side door");
});

test("a route's days, preferences and marks are kept where the library looks for them", async () => {
  await clerk.open("/customers/edit?id=7");
  assert.match(clerk.html, /<option value="3" selected>both<\/option>/);
  await clerk.press("/customers/save", { firstName: "Nora", lastName: "Whitlow", phone: "8025550107", route: 2, deliverFri: 1, preference1: "Heavy", taxExempt: 1, then: "customer" });
  assert.equal(host.query("select deliverFri * 10 + deliverTue from customerdelivery where active = 1 and customersequencenumber = 7"), "10");
  assert.equal(host.query("select value from customerpreference where ticketnumber is null and customersequencenumber = 7"), "Heavy");
  assert.equal(host.query("select convert(int, taxExempt) * 10 + convert(int, vipEligible) from Customer where customerSequenceNumber = 7"), "10");
});

test("a customer who was entered twice becomes one, with tickets and money", async () => {
  const tickets = Number(host.query("select count(*) from Ticket where customerSequenceNumber in (2, 3)"));
  await clerk.open("/customers/merge?id=3&q=tarrant");
  await clerk.press("/customers/merge", {}, "name=\"from\" value=\"2\"");
  assert.equal(clerk.path, "/customer?id=3");
  assert.equal(Number(host.query("select count(*) from Ticket where customerSequenceNumber = 3")), tickets);
  await clerk.open("/customer?id=2");
  assert.equal(clerk.path, "/customer?id=3");
  await clerk.open("/?q=tarrant");
  assert.match(clerk.words(), /Nobody found/);
});

async function hang(ticket, place, more = {}) {
  await clerk.open(`/rack?scan=${ticket}`);
  await clerk.press("/rack/act", { place, ...more }, "value=\"put\"");
}
function places(ticket) { return host.query(`select racklocation from rackassignment where ticketnumber = ${ticket} order by racklocation`).split("\n").filter(Boolean); }

const rows = (sql) => host.query(sql).split("\n").filter(Boolean);

const newTicket = (customer) => clerk.newTicket(customer);

test("a ticket hangs where it was scanned to, moves, hangs at two places, and comes off", async () => {
  const ticket = await newTicket(9);
  await hang(ticket, "a12");
  assert.match(clerk.words(), /Hangs at A12: ready/);
  assert.deepEqual(places(ticket), ["A12"]);
  await clerk.open("/customer?id=9");
  assert.match(clerk.html, /<strong>ready<\/strong>/);
  await hang(ticket, "B3");
  assert.deepEqual(places(ticket), ["B3"]);
  await hang(ticket, "C4", { also: 1 });
  assert.deepEqual(places(ticket), ["B3", "C4"]);
  await clerk.open(`/rack?ticket=${ticket}`);
  await clerk.press("/rack/act", {}, "value=\"off\"");
  assert.deepEqual(places(ticket), []);
  assert.equal(host.query(`select count(*) from ShopLog where kind in ('rack', 'off') and ticketNumber = ${ticket}`), "4");
});

test("what cannot hang says so and nothing changes", async () => {
  for (const [ticket, said] of [[1001, "has been collected"], [1009, "not itemised yet"], [999999, "Nothing here is called 999999"]]) {
    await clerk.open(`/rack?scan=${ticket}`);
    assert.match(clerk.words(), new RegExp(said));
    assert.ok(!clerk.html.includes('value="put"'), String(ticket));
  }
});

test("a slot of the conveyor holds one ticket, a bar of the rack many; other places there are not", async () => {
  host.prepare("insert into RackPlace (storeId, place, isSlot) values (1, '14', 1)", "insert into RackPlace (storeId, place, isSlot) values (1, 'BAR', 0)");
  const first = await newTicket(9), second = await newTicket(9);
  await hang(first, "14");
  await hang(second, "14");
  assert.match(clerk.words(), /Slot 14 holds ticket \d+/);
  await hang(second, "A1");
  assert.match(clerk.words(), /The shop has no place A1/);
  await hang(second, "BAR");
  await hang(first, "BAR");
  assert.deepEqual([places(first), places(second)], [["BAR"], ["BAR"]]);
  host.prepare("delete from RackPlace");
});

test("the customer is told once that it is ready, and the clerk sees what was said", async () => {
  const ticket = await newTicket(10);
  await clerk.open("/customers/edit?id=10");
  await clerk.press("/customers/save", { firstName: "Ivan", lastName: "Kettle", phone: "8025550110", notifyBy: "text", then: "customer" });
  await hang(ticket, "D1");
  await hang(ticket, "D2");
  assert.equal(host.query(`select count(*) from CustomerMessage where ticketNumber = ${ticket}`), "1");
  const answer = await clerk.json("/rack/send", {});
  assert.equal(answer.sent, 1);
  assert.deepEqual(await clerk.json("/rack/send", {}), { sent: 0, left: 0 });
  const messages = readFileSync(join(host.folder, "messages"), "utf8");
  assert.equal(messages.split("To: 8025550110").length, 2);
  assert.match(messages, /Fernhill Cleaners: your order \d+ is ready\./);
  await clerk.open("/rack/tell");
  assert.match(clerk.words(), /Ivan Kettle .*D2 Told Tue 11\/24\/2026/);
});

test("a heat seal finds its ticket, and at assembly it says what is missing", async () => {
  await clerk.open("/rack?scan=AA00001");
  assert.match(clerk.words(), /Ticket \d+, Ivan Kettle/);
  await clerk.press("/rack/act", {}, "value=\"see\"");
  assert.match(clerk.words(), /Piece AA00001 seen/);
});

test("the board has each open ticket where it belongs, and looks again by itself", async () => {
  const ticket = await newTicket(9);
  host.prepare(`update Ticket set dueDate = '20261123' where ticketNumber = ${ticket}`);
  const invoice = host.query(`select invoiceNumber from Ticket where ticketNumber = ${ticket}`);
  const shows = async (section) => (await clerk.open(`/board?part=1&show=${section}`)).includes(`>${invoice}</a>`);
  assert.deepEqual([await shows("late"), await shows("today"), await shows("open"), await shows("ready")], [true, false, true, false]);
  host.prepare(`update Ticket set dueDate = '20261124' where ticketNumber = ${ticket}`);
  assert.deepEqual([await shows("late"), await shows("today"), await shows("tomorrow")], [false, true, false]);
  await hang(ticket, "A1");
  assert.deepEqual([await shows("today"), await shows("open"), await shows("ready")], [false, false, true]);
  await clerk.open("/board?part=1&show=ready&department=1");
  assert.ok(!clerk.html.includes(`>${invoice}</a>`), "laundry is not dry cleaning");
});

test("a ticket is found by number, seal, day and name, also when it is collected, with all that happened to it", async () => {
  const found = async (query) => [...(await clerk.open(`/history?${query}`)).matchAll(/ticket\?ticket=(\d+)/g)].map((one) => Number(one[1]));
  assert.deepEqual(await found("q=5012"), [1012]);
  assert.deepEqual(await found("q=AA00001"), [1011]);
  assert.ok((await found("q=coyle")).includes(1005));
  assert.ok((await found("day=2026-11-24")).includes(1007));
  assert.ok(!(await found("day=2026-11-23")).includes(1007));
  const ticket = await newTicket(9);
  await hang(ticket, "A1");
  await clerk.open(`/history/ticket?ticket=${ticket}`);
  assert.match(clerk.words(), /written .* hung: A1 Pat O'Dell/);
});

// ---- some pieces

test("some pieces go out: the others stay on the ticket, the board and the rack, and the till takes the rest", async () => {
  await clerk.ticket(9);
  await clerk.click("item", { id: 103, quantity: 1 });
  await clerk.click("item", { id: 101, quantity: 1 });
  await clerk.click("item", { id: 102, quantity: 1 });
  const [ticket] = await clerk.save(), lines = () => rows(`select pickedup from TicketLineItem where ticketLineType = 'IT' and ticketNumber = ${ticket} order by lineItemNumber`);
  await hang(ticket, "A1");
  await clerk.open(`/pickup/part?ticket=${ticket}`);
  const [first, second, third] = [...clerk.html.matchAll(/name="line(\d+)"/g)].map((one) => one[1]);
  await clerk.press("/pickup/part", {});
  assert.match(clerk.words(), /Choose the pieces/);
  await clerk.press("/pickup/part", { [`line${first}`]: 1, [`line${second}`]: 1, [`line${third}`]: 1 });
  assert.match(clerk.words(), /Nothing would stay/);
  await clerk.press("/pickup/part", { [`line${second}`]: 1 });
  assert.match(clerk.words(), /of what goes out is not paid/);
  assert.deepEqual(lines().filter((one) => one === "true").length, 0);
  await clerk.press("/pickup/part");
  assert.match(clerk.words(), /pieces handed out: 1 /);
  assert.deepEqual(lines().filter((one) => one === "true").length, 1);
  await clerk.open("/board?part=1&show=ready");
  assert.match(clerk.words(), /3 of 4/);
  // An edit keeps what is out.
  await clerk.open(`/history/ticket?ticket=${ticket}`);
  await clerk.press("/ticket/edit");
  await clerk.click("item", { id: 103, quantity: 1 });
  await clerk.save();
  assert.deepEqual(lines().filter((one) => one === "true").length, 1);
  await clerk.visit(9);
  assert.match(clerk.words(), /1 handed out before/);
  await clerk.open(`/pickup/part?ticket=${ticket}`);
  await clerk.press("/pickup/part", {}, "name=\"back\"");
  assert.deepEqual(lines().filter((one) => one === "true").length, 0);
});

// ---- the drawer

// What a report says of a name, in a section.
function line(name) { return Number(/(-?)\$([\d.]+)/.exec(new RegExp(`<t[hd][^>]*>${name}</t[hd]>.*?(-?\\$[\\d.]+)`).exec(clerk.html)?.[1] ?? "$0")?.slice(1).join("")); }

test("a drawer is opened, sells, pays in and out, is counted, and its Z report never changes", async () => {
  await clerk.openDrawer("100");
  assert.equal(await clerk.sell(9, "Cash", 50), 30);
  // A check of 25 for 20: 5 go out in cash.
  assert.equal(await clerk.sell(9, "Check", 25), 5);
  await clerk.moveCash("I", 40, "Change from the bank");
  await clerk.moveCash("O", 12.5, "Stamps");
  await clerk.open("/day");
  assert.equal(line("Cash that should be there"), 100 + 20 - 5 + 40 - 12.5);
  assert.equal(line("Checks that should be there"), 25);
  await clerk.closeDrawer(142, 25);  // 50 cents short
  const z = clerk.words(), address = clerk.path;
  assert.match(z, /Over or short -\$0\.50/);
  assert.match(z, /Cash 1 \$20\.00/);
  await clerk.openDrawer("142");
  await clerk.sell(9, "Cash", 20);
  await clerk.open(address);
  assert.equal(clerk.words(), z);
  await clerk.open("/day");
  assert.equal(line("Cash that should be there"), 162);
  await clerk.closeDrawer(162);
});

test("a second press opens, pays out and closes nothing again", async () => {
  await clerk.openDrawer("10");
  await clerk.open("/day");
  const page = clerk.html;
  for (let k = 0; k < 2; ++k) {
    clerk.html = page;
    await clerk.press("/day/act", { amount: "3", reason: "Stamps" }, "value=\"O\"");
  }
  await clerk.open("/day");
  assert.equal(line("Cash that should be there"), 7);
  await clerk.open("/day/count");
  await clerk.press("/day/count", coins(7));
  const compared = clerk.html, before = Number(host.query("select count(*) from DrawerPeriod"));
  await clerk.press("/day/count");
  clerk.html = compared.replace(/name="_number" value="[^"]*"/, 'name="_number" value="another"');
  await clerk.press("/day/count");
  assert.match(clerk.words(), /closed already/);
  assert.equal(Number(host.query("select count(*) from DrawerPeriod where closedDate is not null")), before);
});

test("over random days, ledger, drawer and reports agree to the cent, and no payment is in two reports or in none", async () => {
  let seed = 20261124;
  const random = (below) => (seed = (seed * 1103515245 + 12345) % 2147483648) % below;
  await clerk.openDrawer("0");
  await clerk.closeDrawer(0);  // what came before
  const first = Number(host.query("select max(lastPaymentId) from DrawerPeriod")), firstPeriod = Number(host.query("select max(drawerPeriodId) from DrawerPeriod"));
  for (let day = 0; day < 4; ++day) {
    let cash = random(20000) / 100, checks = 0;
    const early = random(2) ? await clerk.sell(9, "Cash", 20) : -1;  // before the drawer was opened
    if (early >= 0) cash += 20;
    await clerk.openDrawer(String(early >= 0 ? Math.round(cash * 100 - 2000) / 100 : cash));
    for (let step = 0; step < 5; ++step) {
      const amount = random(5000) / 100 + 0.01;
      switch (random(4)) {
        case 0: await clerk.moveCash("I", amount.toFixed(2), "in"); cash += Number(amount.toFixed(2)); break;
        case 1: await clerk.moveCash("O", amount.toFixed(2), "out"); cash -= Number(amount.toFixed(2)); break;
        case 2: { const given = 20 + random(8000) / 100, change = await clerk.sell(9, "Cash", given.toFixed(2)); cash += given - change; break; }
        default: { const given = 20 + random(3) * 5, change = await clerk.sell(9, "Check", given.toFixed(2)); checks += given; cash -= change; }
      }
    }
    const compared = await clerk.closeDrawer(Math.max(cash, 0), checks);
    if (cash >= 0) assert.match(compared, /right to the cent/, `day ${day}: ${clerk.words()}`);
  }
  const within = `paymentId > ${first}`;
  assert.equal(host.query(`select sum(amount) from DrawerReport where section = 'tender' and drawerPeriodId > ${firstPeriod}`), host.query(`select sum(paymentAmount) from Payment where ${within}`));
  assert.equal(host.query(`select sum(amount) from DrawerReport where section = 'clerk' and drawerPeriodId > ${firstPeriod}`), host.query(`select sum(paymentAmount) from Payment where ${within}`));
  assert.equal(host.query(`select count(*) from Ticket t where t.amountPaid <> (select isnull(sum(p.paymentAmount), 0) from Payment p where p.ticketNumber = t.ticketNumber) and t.ticketNumber > 1099`), "0");
});

// ---- void and money back

async function give(ticket, values, act = "give") {
  await clerk.open(`/history/back?ticket=${ticket}`);
  await clerk.press("/history/back", values, `value="${act}"`);
}
const ledger = (ticket) => host.query(`select paymentType + ' ' + convert(varchar(20), sum(paymentAmount)) from Payment where ticketNumber = ${ticket} group by paymentType order by paymentType`);

test("money goes back with a reason, no more than was paid, and the drawer gives it", async () => {
  await clerk.openDrawer("50");
  await clerk.sell(9, "Cash", 20);
  const ticket = Number(host.query("select max(ticketNumber) from Ticket"));
  await give(ticket, { amount: "25", reason: "Stain stayed", way: 0 });
  assert.match(clerk.words(), /Cash takes back \$20\.00 at most/);
  await give(ticket, { amount: "5.50", reason: "Stain stayed", way: 0 });
  assert.match(clerk.words(), /given back \$5\.50 .*given back, Cash Pat O'Dell -\$5\.50/);
  assert.equal(host.query(`select amountPaid from Ticket where ticketNumber = ${ticket}`), "14.5");
  await clerk.open("/day");
  assert.equal(line("Cash that should be there"), 64.5);
  assert.match(clerk.words(), /Given back 1 -\$5\.50/);
  await clerk.closeDrawer(64.5);
});

test("a void ticket gives back what was paid, leaves rack and stock, and stays in the books", async () => {
  await clerk.ticket(9);
  await clerk.click("item", { id: 150, quantity: 1 });  // a garment bag, sold
  const stock = () => Number(host.query("select isnull(max(quantityOnHand), 0) from inventory where priceListItemId = 150"));
  const before = stock(), [ticket] = await clerk.save();
  await hang(ticket, "E5");
  await give(ticket, { reason: "" }, "void");
  assert.match(clerk.words(), /Say why/);
  await give(ticket, { reason: "Written twice" }, "void");
  assert.match(clerk.words(), /void .*void: Written twice Pat O'Dell/);
  assert.deepEqual(places(ticket), []);
  assert.equal(stock(), before);
  await clerk.open("/customer?id=9");
  assert.ok(!clerk.html.includes(`value="${ticket}"`), "not in the shop any more");
  await clerk.open(`/rack?scan=${ticket}`);
  assert.match(clerk.words(), /is void/);
});

test("who has no right is not let, once the shop has given rights", async () => {
  const ticket = await newTicket(9);
  host.prepare("update employee set rights = 'void refund' where employeeid = 1");
  await give(ticket, { reason: "x" }, "void").catch(() => {});
  assert.match(clerk.words(), /may not do this/);
  await clerk.open("/day/count");
  assert.equal(clerk.status, 403);
  host.prepare("update employee set rights = '' where employeeid = 1");
});
