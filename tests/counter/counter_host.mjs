// A host of its own for a test: a store in a file, a free port, and a browser beside it.
import { spawn, execFileSync } from "node:child_process";
import { appendFileSync, mkdirSync, mkdtempSync, readdirSync, readFileSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { chromium } from "playwright-core";

const program = process.env.ONDREL_PROGRAM;

export class Host {
  // `more`: other arguments of the host; `isEmpty`: a store without anything in it.
  constructor({ more = [], isEmpty = false } = {}) {
    this.more = more;
    this.folder = mkdtempSync(join(tmpdir(), "counter-"));
    this.connection = `Driver=Embedded;Database=${join(this.folder, "shop.db")}`;
    execFileSync(program, ["db", "create", this.connection]);
    if (!isEmpty) execFileSync(program, ["db", "sample", this.connection]);
    mkdirSync(join(this.folder, "c", "cards"), { recursive: true });
    this.cards = spawn(process.env.ONDREL_CARDS, [join(this.folder, "c", "cards"), "50"]);
  }

  // Listens on a free port, or on the one it had before.
  async start() {
    const port = this.address ? new URL(this.address).port : "0";
    this.process = spawn(program, ["serve", "--db", this.connection, "--listen", `127.0.0.1:${port}`, "--now", "2026-11-24 10:30",
      "--pages", process.env.ONDREL_PAGES, "--log", join(this.folder, "host.log"), "--set", "cardFolder=C:/cards",
      "--set", `messages=file:${join(this.folder, "messages")}`, "--set", `printer=file:${join(this.folder, "printer")}`, ...this.more],
      { env: { ...process.env, ONDREL_DRIVES: this.folder } });
    this.address = await new Promise((found, failed) => {
      this.process.stdout.on("data", (text) => { const line = /http:\/\/\S+/.exec(text); if (line) found(line[0].replace(/\/$/, "")); });
      this.process.on("exit", (code) => failed(new Error(`the host ended with ${code}`)));
      this.process.stderr.on("data", (text) => process.stderr.write(text));
    });
  }

  async stop() {
    const ended = new Promise((done) => this.process.on("exit", done));
    this.process.kill("SIGTERM");
    await ended;
  }

  // The first column of the first row of a query, as text.
  query(sql) {
    return execFileSync(program, ["run", "--db", this.connection, join(process.env.ONDREL_TESTS, "query.js"), sql], { encoding: "utf8" }).trim();
  }

  // A statement straight on the file, for what no counter does. False where there is no tool for that.
  execute(sql) {
    try {
      execFileSync("sqlite3", [join(this.folder, "shop.db"), sql]);
      return true;
    } catch (error) {
      if (error.code === "ENOENT") return false;
      throw error;
    }
  }

  // Statements that prepare a case.
  prepare(...statements) {
    execFileSync(program, ["run", "--db", this.connection, join(process.env.ONDREL_TESTS, "execute.js"), ...statements]);
  }

  // What the host has left in its log and journals.
  files() {
    const journals = join(this.folder, "shop.db.sessions");
    return [join(this.folder, "host.log"), ...readdirSync(journals).map((name) => join(journals, name))].map((name) => readFileSync(name, "utf8")).join("\n");
  }

  // As if the host had ended between the commit of a numbered call and its answer, in every session.
  interruptCommit(page = "ticket/save") {
    const journals = join(this.folder, "shop.db.sessions");
    for (const name of readdirSync(journals)) appendFileSync(join(journals, name), `call\t46350.4\t${page}.js\t/${page}\tn-1\t\t\t\t\ncommitting\n`);
  }

  remove() {
    this.cards.kill();
    rmSync(this.folder, { recursive: true, force: true });
  }
}

export function browser() {
  return chromium.launch({
    executablePath: "/usr/bin/chromium",
    args: ["--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--disable-quic", "--no-first-run", "--disable-background-networking",
      "--disable-component-update", "--disable-sync"]
  });
}
