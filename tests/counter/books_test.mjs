// The shop's books without a browser: reports, accounts, gift cards, random days.
import { test, before, after, beforeEach } from "node:test";
import assert from "node:assert/strict";
import { Host } from "./counter_host.mjs";
import { Clerk } from "./clerk.mjs";

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

// A report as its file has it: rows of cells, the first the heads.
async function report(show, from = "2026-11-24", to = from, by = clerk) {
  const csv = await (await by.ask(`/reports?show=${show}&from=${from}&to=${to}&download=1`)).text();
  return csv.trim().split("\r\n").map((line) => line.split(","));
}
const cents = (value) => Math.round(Number(value || 0) * 100);
const sum = (rows, column) => rows.slice(1).reduce((all, row) => all + cents(row[column]), 0);

test("reports say what the sample's days were", async () => {
  assert.deepEqual(await report("days", "2026-11-12", "2026-11-23"), [
    ["Day", "Tickets", "Pieces", "Written", "Taken", '"On account', ' gift cards"'],
    ["2026-11-12", "1", "3", "45.00", "20.00", "0.00"],
    ["2026-11-19", "2", "3", "60.00", "", ""],
    ["2026-11-20", "1", "3", "28.00", "", ""],
    ["2026-11-23", "2", "14", "9.96", "", ""]]);
  // The taxes in the heads of 1007 and 1008: 3.27 and 0.60.
  assert.equal(sum(await report("taxes"), 2), 387);
  assert.deepEqual((await report("discounts", "2026-11-01", "2026-11-23")).slice(1), [["5 Off 25", "Coupon", "1", "5.00"]]);
  // Written on 10/10, due on 10/14, handed out on 10/15: a day late after five. Ticket 1011 is still to be ready.
  assert.deepEqual((await report("lateness", "2026-10-10", "2026-10-10")).slice(1), [["Dry Cleaning", "1", "1", "1", "1.000", "5.000", "1"]]);
  // 50 pieces of linen came on 3/10 and went on 3/12.
  assert.deepEqual((await report("pieces", "2026-03-01", "2026-03-31")).slice(1), [["2026-03-10", "50", "", "50"], ["2026-03-12", "", "50", "0"]]);
});

test("all reports of a day come to the same sums; a void ticket is in none, an odd name is no formula", async () => {
  await clerk.ticket(9);
  await clerk.click("item", { id: 101, quantity: 2 });
  await clerk.click("item", { id: 103, quantity: 1 });
  await clerk.click("item", { id: 201, quantity: 3 });
  await clerk.save();
  await clerk.newTicket(9);
  const gone = await clerk.newTicket(9), before = sum(await report("days"), 3);
  await clerk.open(`/history/back?ticket=${gone}`);
  await clerk.press("/history/back", { reason: "Mistake" }, 'value="void"');
  const [days, departments, items, clerks, taxes] = [await report("days"), await report("departments"), await report("items"), await report("clerks"), await report("taxes")];
  assert.equal(sum(days, 3), before - 2000);
  assert.equal(sum(days, 3), cents(host.query("select sum(netTotal) from Ticket where storeId = 1 and ticketStatus <> 'VO' and createdDate >= '20261124'")));
  assert.equal(sum(departments, 2), sum(days, 3));
  assert.equal(sum(clerks, 2), sum(days, 3));
  const named = (name) => cents(departments.find((row) => row[0] === name)?.[2]);
  assert.equal(sum(items, 4), sum(departments, 2) - named("Taxes") - named("Surcharges") - named("Discounts") - named("Paid ahead and rounding"));
  assert.equal(sum(taxes, 2), named("Taxes"));
  host.prepare("update employee set employeename = '=HYPERLINK(\"x\")' where employeeid = 4");
  assert.equal((await (await clerk.ask("/reports?show=clerks&from=2026-11-24&to=2026-11-24&download=1")).text()).includes("\r\n=HY"), false);
  host.prepare("update employee set employeename = 'Pat O''Dell' where employeeid = 4");
  await clerk.open("/reports?show=departments&from=2026-11-24&to=2026-11-24");
  assert.match(clerk.html, /<svg class="chart"[^>]*aria-label="Departments, amount/);
  assert.match(clerk.words(), new RegExp(`Together \\d+ \\$${(sum(days, 3) / 100).toFixed(2)}`));
});
