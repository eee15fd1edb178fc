// A clerk without a browser: asks for pages and presses what stands on them, by HTTP.
import assert from "node:assert/strict";

export class Clerk {
  constructor(host) {
    this.host = host;
    this.cookie = "";
    this.presses = 0;
    this.html = "";
  }

  async ask(path, options = {}) {
    const answer = await fetch(this.host.address + path, { redirect: "manual", ...options, headers: { ...options.headers, Cookie: this.cookie } });
    const cookie = answer.headers.getSetCookie()[0];
    if (cookie) this.cookie = cookie.split(";")[0];
    return answer;
  }

  // A page, after whatever it sends the browser on to.
  async open(path, options) {
    let answer = await this.ask(path, options);
    while (answer.status === 303) answer = await this.ask(path = answer.headers.get("location"));
    this.path = path;
    this.html = await answer.text();
    this.status = answer.status;
    this.token = /name="request-token" content="([^"]*)"/.exec(this.html)?.[1] ?? this.token;
    this.work = /data-work="(\d+)"/.exec(this.html)?.[1] ?? this.work;
    return this.html;
  }

  // Presses the button of a form that goes to a path, with what else is filled in.
  async press(path, values = {}, which = "") {
    const form = this.html.split("<form ").filter((one) => one.includes(`action="${path}"`) && one.includes(which))[0];
    assert.ok(form, `no form to ${path} on ${this.path}: ${this.words().slice(0, 300)}`);
    const fields = Object.fromEntries([...form.split("</form>")[0].matchAll(/<input type="hidden" name="([^"]*)" value="([^"]*)"/g)].map((one) => [one[1], one[2].replace(/&amp;/g, "&")]));
    return this.open(path, { method: "POST", body: new URLSearchParams({ ...fields, ...values }) });
  }

  async json(path, values) {
    const answer = await this.ask(path, { method: "POST", headers: { "Content-Type": "application/json", "X-Request-Token": this.token }, body: JSON.stringify({ work: this.work, page: "test", press: ++this.presses, ...values }) });
    const said = await answer.text();
    assert.equal(answer.status, 200, `${path} ${JSON.stringify(values)}: ${said}`);
    return JSON.parse(said);
  }
  click(name, values = {}) { return this.json("/ticket/act", { click: name, ...values }); }
  till(name, values = {}) { return this.json("/pickup/act", { click: name, ...values }); }

  // What is read on the page.
  words() {
    const signs = { amp: "&", lt: "<", gt: ">", quot: '"' };
    return this.html.replace(/<[^>]*>/g, " ").replace(/\s+/g, " ").replace(/&#(\d+);|&(\w+);/g, (all, code, name) => code ? String.fromCharCode(code) : signs[name] ?? all);
  }

  async begin(terminal = 2, employee = 4) {
    await this.open("/");
    await this.open("/place");
    await this.press("/place", { terminal });
    await this.press("/employee", { employee });
  }

  async ticket(customer) {
    await this.open(`/customer?id=${customer}`);
    await this.press("/ticket/start");
    assert.equal(this.path, "/ticket", this.words().slice(0, 200));
  }
  async visit(customer, action = "") {
    await this.open(`/customer?id=${customer}`);
    await this.press("/pickup/start", {}, action ? `value="${action}"` : "Pickup");
    assert.equal(this.path, "/pickup", this.words().slice(0, 200));
  }

  // Finishes and saves; the result is the numbers of the tickets.
  async save() {
    await this.open("/ticket");
    await this.press("/ticket/finish");
    await this.press("/ticket/save");
    assert.match(this.path, /saved/, this.words().slice(0, 400));
    return /tickets=([\d-]+)/.exec(this.path)[1].split("-").map(Number);
  }

  // A ticket with a bag of laundry at 20.00, without tax.
  async newTicket(customer) {
    await this.ticket(customer);
    await this.click("item", { id: 301, quantity: 1 });
    return (await this.save())[0];
  }
  // Collects one ticket and pays it; the result is the change.
  async collect(customer, ticket, tenders) {
    await this.visit(customer);
    for (const one of [...this.html.matchAll(/data-ticket="(\d+)" data-within="(1?)"/g)]) {
      if ((Number(one[1]) === ticket) !== (one[2] === "1")) await this.till(one[2] ? "leave" : "add", { ticket: one[1] });
    }
    let change = 0;
    for (const [type, amount, reference] of tenders) {
      const answer = await this.till("tender", { type, amount: String(amount), reference: reference ?? (type === "Check" ? "77" : ""), sure: true });
      assert.equal(answer.problem, "");
      change = money(answer.amounts, "Change");
    }
    await this.open("/pickup");
    await this.press("/pickup/pay");
    if (this.html.includes("Yes, go on")) await this.press("/pickup/pay");
    assert.equal(this.path, "/collected", this.words().slice(0, 300));
    return change;
  }
  async sell(customer, tender, given, reference) { return this.collect(customer, await this.newTicket(customer), [[tender, given, reference]]); }

  async openDrawer(float) {
    await this.open("/day");
    await this.press("/day/act", { amount: String(float) }, "value=\"open\"");
  }
  // Counts, compares and closes; the result is the page that compared.
  async closeDrawer(cash, checks = 0) {
    await this.open("/day/count");
    await this.press("/day/count", { ...coins(cash), checks: String(checks) });
    const compared = this.html;
    await this.press("/day/count");
    assert.match(this.path, /day\/z/, this.words().slice(0, 300));
    return compared;
  }
  async moveCash(type, amount, reason) {
    await this.open("/day");
    await this.press("/day/act", { amount: String(amount), reason }, `value="${type}"`);
  }
}

// So many dollars and cents in the fewest pieces, as the count asks for them.
export function coins(amount) {
  const values = {};
  let left = Math.round(amount * 100);
  [10000, 5000, 2000, 1000, 500, 200, 100, 50, 25, 10, 5, 1].forEach((one, at) => {
    values[`coin${at}`] = String(Math.floor(left / one));
    left %= one;
  });
  return values;
}

// Money that a screen shows behind a name.
export function money(html, name) {
  const found = new RegExp(`<div class="value">(-?)\\$([\\d.]+)</div><div class="name">${name}</div>`).exec(html);
  return found ? Number(found[2]) * (found[1] ? -1 : 1) : 0;
}
export function total(answer) {
  return Number(/Total<\/span> <strong class="value">\$([\d.]+)/.exec(answer.bar ?? answer)[1]);
}
