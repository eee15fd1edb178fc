// A shop of its own, from an empty store to its first ticket, by pages alone; and what a shop changes later.
import { test, before, after } from "node:test";
import assert from "node:assert/strict";
import { Host } from "./counter_host.mjs";
import { Clerk, total, money } from "./clerk.mjs";

let host, clerk;

before(async () => {
  host = new Host({ isEmpty: true });
  await host.start();
  clerk = new Clerk(host);
});
after(async () => {
  if (process.env.KEEP) console.log(host.files().split("\n").filter((line) => line.includes("failure")).join("\n"));
  await host.stop();
  host.remove();
});

const shop = { name: "Birch Street Cleaners", city: "Marbury", state: "VT", phone: "802-555-0123", days: "2", ready: "5:00 PM", closed: "7", counter: "Desk", clerk: "Ada Birch" };

async function enter(what, values, then = "list") {
  await clerk.open(`/setup/edit?what=${what}`);
  await clerk.press("/setup/edit", { ...values, then });
  return clerk.words();
}
const setupRows = (sql) => host.query(sql).split("\n");

test("an empty store is opened by one form, which a wrong tax does not pass and a second press does not repeat", async () => {
  await clerk.open("/");
  await clerk.open("/");
  assert.equal(clerk.path, "/setup/first");
  await clerk.press("/setup/first", { ...shop, tax: "State tax", percent: "six" });
  assert.match(clerk.words(), /A tax has a name and a percentage/);
  assert.match(clerk.html, /value="Birch Street Cleaners"/);
  const form = clerk.html;
  for (let k = 0; k < 2; ++k) {
    clerk.html = form;
    await clerk.press("/setup/first", { ...shop, tax: "State tax", percent: "6" });
  }
  assert.equal(clerk.path, "/setup");
  assert.match(clerk.words(), /departments come next/);
  assert.equal(host.query("select count(*) from Store"), "1");
});

test("a price list comes from a text, which is shown first, with its errors by line", async () => {
  const send = async (words, more = {}) => (await clerk.json("/setup/prices", { list: 1, text: words, ...more })).html;
  const wrong = await send('department,item,price\nShirts,Shirt,2.5O\nShirts,,3\n"Dry Cleaning","Suit, 2 pieces",16\nshirts,SHIRT,4\n');
  for (const said of ["2</th><td>this is no price: 2.5O", "3</th><td>the item is missing", "5</th><td>the same as line 2"]) assert.ok(wrong.includes(said), wrong);
  const lines = 'item;price;department;pieces\nShirt;2.50;Shirts;\n"Suit; 2 pieces";16;Dry Cleaning;2\nPants;8,000.50;Dry Cleaning;';
  assert.match(await send(lines), /3 lines, 3 of them new or changed\. New departments: Shirts, Dry Cleaning\./);
  assert.equal(host.query("select count(*) from PriceListItem"), "0");
  await send(lines, { take: true });
  assert.match(await send("Dry Cleaning\tPants\t8\nShirts\tShirt\t2.50"), /was \$8000\.50.*as it is/);
  await send("Dry Cleaning\tPants\t8\nShirts\tShirt\t2.50", { take: true });
  assert.deepEqual(setupRows("select itemName + ' ' + convert(varchar(20), price) + ' ' + convert(varchar(3), isnull(qtyInInventory, 1)) from PriceListItem order by priceListItemId"), ["Shirt 2.50 1", "Suit; 2 pieces 16.00 2", "Pants 8.00 1"]);
  const csv = await (await clerk.ask("/setup/prices?download=1")).text();
  assert.equal(csv, 'department,item,price\r\nShirts,Shirt,2.50\r\nDry Cleaning,"Suit; 2 pieces",16.00\r\nDry Cleaning,Pants,8.00\r\n');
});

test("the first customer's ticket bears the shop's prices, tax and day, and is paid", async () => {
  await clerk.open("/customers/new");
  await clerk.press("/customers/save", { firstName: "Bo", lastName: "Reed", then: "ticket" });
  const suit = Number(host.query("select priceListItemId from PriceListItem where itemName like 'Suit%'"));
  // A suit at 16.00 and 6 percent; written on Tuesday, two days.
  const answer = await clerk.click("item", { id: suit, quantity: 1 });
  assert.equal(total(answer), 16.96);
  assert.match(answer.bar, /2 pieces .* ready Thu 11\/26\/2026/);
  const [ticket] = await clerk.save();
  await clerk.visit(1);
  await clerk.till("add", { ticket });
  const paid = await clerk.till("tender", { type: "Cash", amount: "20", reference: "", sure: true });
  assert.equal(money(paid.amounts, "Change"), 3.04);
  await clerk.open("/pickup");
  await clerk.press("/pickup/pay");
  if (clerk.html.includes("Yes, go on")) await clerk.press("/pickup/pay");
  assert.equal(host.query(`select ticketStatus + ' ' + convert(varchar(20), amountPaid) from Ticket where ticketNumber = ${ticket}`), "FI 16.96");
});

test("what is entered later counts at once: upcharge with its item's tax, holiday, a coupon", async () => {
  const pants = Number(host.query("select priceListItemId from PriceListItem where itemName = 'Pants'"));
  await clerk.open(`/setup/edit?what=extras&of=${pants}`);
  assert.match(clerk.html, /name="taxes-1" value="1" checked/);
  await clerk.press("/setup/edit", { descriptorName: "Hem", descriptorType: "UP", price: "4", "taxes-1": 1, then: "list" });
  await enter("holidays", { firstDay: "2026-11-26", duration: "2", description: "Thanksgiving" });
  await enter("offers", { discountName: "Half off", discountType: "CU", priceListID: 1, discountPercent: "50", effectiveDate: "2026-11-01", expiryDate: "2026-12-31", active: 1, "departments-2": 1 });
  await clerk.ticket(1);
  const first = await clerk.click("item", { id: pants, quantity: 1 });
  // 8.00 and 6 percent of 8.00; two days from Tuesday, Thursday and Friday closed: Saturday.
  assert.deepEqual([total(first), /ready Sat 11\/28\/2026/.test(first.bar)], [8.48, true], first.bar);
  // 12.00 and 6 percent; half of it is taken off by the coupon: 6.00 and 6 percent.
  assert.equal(total(await clerk.click("upcharge", { line: 1, id: host.query("select itemDescriptorPriceID from ItemDescriptorPrice"), name: "Hem" })), 12.72);
  assert.equal(total(await clerk.click("coupon", { id: host.query("select discountID from Discount") })), 6.36);
  await clerk.open("/ticket");
  await clerk.press("/ticket/drop");
});

test("a form that cannot stand says why and enters nothing", async () => {
  // clang-format off
  for (const [what, values, said] of [
    ["items",    { itemName: "Coat", departmentId: 1, price: "a lot", prepayDiscount: "0", daysToProcess: "2" }, "Price: this is no amount"],
    ["items",    { itemName: "", departmentId: 1, price: "1", prepayDiscount: "0", daysToProcess: "2" },         "Name: this is needed"],
    ["items",    { itemName: "Coat", departmentId: 99, price: "1", prepayDiscount: "0", daysToProcess: "2" },    "Department: choose one"],
    ["taxes",    { description: "City", taxPercent: "110" },                                 "Percent: this is no percentage"],
    ["holidays", { firstDay: "2026-02-30", duration: "1" },                                  "First day: this is no day"],
    ["holidays", { firstDay: "2026-11-26", duration: "1" },                                  "There is such a holiday already"],
    ["hours",    { dayOfWeek: "1", addAfterTime: "4 PM" },                                   "Taken in after: this is written such as 16:00"],
    ["clerks",   { employeename: "Cy", active: 1, pinHash: "12" },                           "PIN: four to eight digits"],
    ["clerks",   { employeename: "Cy", active: 1, "right-void": 1 },                         "Somebody has to be allowed to set up the shop"]
  ]) assert.ok((await enter(what, values)).includes(said), `${what}: ${clerk.words().slice(0, 400)}`);
  // clang-format on
  assert.equal(host.query("select count(*) from PriceListItem"), "3");
});

test("two who change the same item: the second is told; a tax that is taken away is off all items", async () => {
  const other = new Clerk(host);
  await other.begin(1, 1);
  const page = "/setup/edit?what=items&row=1";
  await clerk.open(page);
  await other.open(page);
  const form = { itemName: "Shirt", departmentId: 1, prepayDiscount: "0", daysToProcess: "2", "taxes-1": 1, then: "list" };
  await clerk.press("/setup/edit", { ...form, price: "2.75" });
  await other.press("/setup/edit", { ...form, price: "3" });
  assert.match(other.words(), /Somebody has changed this meanwhile/);
  assert.equal(host.query("select price from PriceListItem where priceListItemId = 1"), "2.75");
  await clerk.open("/setup/edit?what=taxes&row=1|1");
  await clerk.press("/setup/edit", {}, "remove");
  assert.deepEqual(["Tax", "ItemTax", "DEPARTMENTTAX"].map((table) => host.query(`select count(*) from ${table}`)), ["0", "0", "0"]);
});

test("a clerk with a PIN says it, five wrong ones shut the door, and rights hold from then on", async () => {
  await enter("clerks", { employeename: "Boss", active: 1, pinHash: "4711", "right-setup": 1, "right-void": 1 });
  const boss = Number(host.query("select employeeid from employee where employeename = 'Boss'"));
  assert.ok(!host.query("select pinHash from employee where employeename = 'Boss'").includes("4711"));
  await clerk.open("/setup");
  assert.equal(clerk.status, 403);
  const sign = async (pin) => {
    await clerk.open("/employee");
    await clerk.press("/employee", { employee: boss }, `value="${boss}"`);
    await clerk.press("/employee", { pin });
  };
  await sign("0000");
  assert.match(clerk.words(), /This is not the PIN/);
  await sign("4711");
  await clerk.open("/setup");
  assert.equal(clerk.status, 200);
  for (let k = 0; k < 5; ++k) await sign("0000");
  assert.match(clerk.words(), /Too many tries/);
  await sign("4711");
  assert.match(clerk.words(), /Too many tries/);
});
