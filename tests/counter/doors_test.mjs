// How a clerk comes in, and what is said where nothing can be done: sign-in, an empty store, pages that are not there.
import { test } from "node:test";
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { Host } from "./counter_host.mjs";
import { Clerk } from "./clerk.mjs";

const read = { headers: { Accept: "text/html" } };

async function withHost(options, work) {
  const host = new Host(options);
  try {
    await host.start();
    await work(new Clerk(host), host);
  } finally {
    await host.stop();
    host.remove();
  }
}

test("a page that is not there and one that fails say what to do; a script gets the bare words", () => withHost({}, async (clerk, host) => {
  await clerk.begin();
  await clerk.open("/nowhere", read);
  assert.equal(clerk.status, 404);
  assert.match(clerk.html, /counter\.css[\s\S]*There is no such page\.[\s\S]*href="\/" autofocus>Customers/);
  await clerk.open("/nowhere");
  assert.equal(clerk.html, "There is no such page.\n");
  host.execute("drop table Customer");
  await clerk.open("/customer?id=1", read);
  assert.equal(clerk.status, 500);
  assert.match(clerk.words(), /Something went wrong\. The log has it as number \d+\..*Customers/);
}));

test("clerks sign in, on a page like the others, and out", async () => {
  const folder = mkdtempSync(join(tmpdir(), "clerks-")), file = join(folder, "clerks");
  execFileSync(process.env.ONDREL_PROGRAM, ["serve", "--clerks", file, "--add-clerk", "4:Pat O'Dell"], { input: "2468\n" });
  await withHost({ more: ["--clerks", file] }, async (clerk) => {
    await clerk.open("/");
    await clerk.open("/");
    assert.equal(clerk.path, "/sign_in");
    assert.match(clerk.html, /counter\.css/);
    await clerk.press("/sign_in", { clerk: "4", pin: "1111" });
    assert.equal(clerk.status, 403);
    assert.match(clerk.words(), /do not match/);
    await clerk.press("/sign_in", { clerk: "4", pin: "2468" });
    assert.equal(clerk.path, "/place");
    await clerk.press("/place", { terminal: 2 });
    assert.equal(clerk.path, "/");
    await clerk.open("/employee");
    await clerk.press("/sign_out");
    assert.equal(clerk.path, "/sign_in");
  });
});

test("an empty store says what it lacks", () => withHost({ isEmpty: true }, async (clerk, host) => {
  await clerk.open("/");
  await clerk.open("/");
  assert.match(clerk.words(), /This store is empty/);
  host.prepare("insert into Store (storeId, name) values (1, 'New')", "insert into terminal (terminalid, storeId, terminalName) values (1, 1, 'Desk')");
  await clerk.open("/place");
  await clerk.press("/place", { terminal: 1 });
  assert.match(clerk.words(), /Nobody is entered who works at this shop/);
  host.prepare("insert into employee (employeeid, employeename, storeId, active) values (1, 'Ada', 1, 1)", "insert into Customer (customerSequenceNumber, customername) values (1, 'Bo')");
  await clerk.open("/employee");
  await clerk.press("/employee", { employee: 1 });
  for (const path of ["/ticket/start", "/quick/start"]) {
    await clerk.open("/customer?id=1");
    await clerk.press(path);
    assert.match(clerk.words(), /no price list with departments yet/, path);
  }
}));
