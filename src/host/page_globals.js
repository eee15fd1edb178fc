(function (global) {
  "use strict";
  var host = {};
  ["alone", "answer", "changed", "clerk", "compile", "deliver", "doubtful", "encode", "hashPin", "header", "isPin", "keep", "now", "recall", "record",
   "request", "room", "setting", "settleDoubt", "signIn", "signOut", "token", "workDone"].forEach(function (name) {
    host[name] = global["host_" + name];
    delete global["host_" + name];
  });
  delete global.quit;
  var parseJson = JSON.parse, jsonOf = JSON.stringify;

  function constant(object, name, value) {
    Object.defineProperty(object, name, {value: value, enumerable: true});
  }

  // ---- scripts: each is the body of a function of its own

  var units = {}, taken;
  Object.defineProperty(global, "__take", {value: function (body) { taken = body; }});

  function unit(name) {
    if (!units[name]) {
      taken = null;
      host.compile(name);
      units[name] = {body: taken, exports: null};
    }
    return units[name];
  }

  function include(name) {
    var script = unit(String(name));
    if (!script.exports) {
      script.exports = {};
      try {
        script.body.call(global, script.exports);
      } catch (error) {
        script.exports = null;
        throw error;
      }
    }
    return script.exports;
  }

  // ---- Request

  // [name, value, name, value...]; the values of a name that comes again are joined.
  function fields(pairs) {
    var result = Object.create(null);
    for (var k = 0; k < pairs.length; k += 2)
      result[pairs[k]] = pairs[k] in result ? result[pairs[k]] + ", " + pairs[k + 1] : pairs[k + 1];
    return result;
  }

  function requestOf(parts) {
    var request = {
      method: parts[0], path: parts[1], query: fields(parts[2]), form: fields(parts[3]), body: parts[4],
      headers: fields(parts[5]), number: parts[7], address: parts[8], json: undefined
    };
    if (parts[6]) request.json = parseJson(parts[4]);
    Object.defineProperty(request, "token", {get: function () { return host.token(); }});
    Object.defineProperty(request, "clerk", {get: function () {
      var clerk = host.clerk();
      return clerk[0] ? {id: clerk[0], name: clerk[1]} : null;
    }});
    return request;
  }

  // ---- Response

  function responseOf(answer) {
    var room = host.room();
    return {
      get status() { return answer.status; },
      set status(value) {
        value = Number(value);
        if (!(value >= 200 && value <= 599)) throw new Error("The status of an answer is 200 to 599");
        answer.status = value;
      },
      header: function (name, value) { host.header(String(name), String(value)); },
      write: function () {
        for (var k = 0; k < arguments.length; ++k) {
          var value = arguments[k], text = value === null || value === undefined ? "" : String(value);
          room -= text.length;
          if (room < 0) throw new Error("The answer is too long");
          answer.parts.push(text);
        }
      },
      json: function (value) {
        this.header("Content-Type", "application/json");
        this.write(jsonOf(value));
      },
      redirect: function (path) {
        this.header("Location", path);
        answer.status = 303;
      }
    };
  }

  // ---- Session and Server

  var session = {kept: {}};
  constant(global, "Session", session);

  function recorded(work) {
    var known = host.recall();
    if (known === undefined) {
      var outcome;
      try {
        var value = work();
        outcome = {value: value === undefined ? null : value};
      } catch (error) {
        outcome = {error: String(error.description || error.message || error), number: error.number};
      }
      known = jsonOf(outcome);
      host.record(known);
    }
    var result = parseJson(known);
    if (!("error" in result)) return result.value;
    var failure = new Error(result.error);
    failure.description = result.error;
    failure.number = result.number;
    throw failure;
  }

  constant(global, "Server", {
    HTMLEncode: function (text) {
      if (text === null || text === undefined) return "";
      return host.encode(text instanceof Date ? text : String(text));
    },
    include: include,
    recorded: recorded,
    alone: function () { host.alone(); },
    doubtful: function () { return host.doubtful(); },
    settleDoubt: function () { host.settleDoubt(); },
    now: function () { return host.now(); },
    deliver: function (outlet, bytes) { host.deliver(String(outlet), String(bytes)); },
    hashPin: function (pin) { return host.hashPin(String(pin)); },
    isPin: function (pin, hash) { return host.isPin(String(pin), String(hash)); },
    setting: function (name) { return host.setting(String(name)); },
    signIn: function (clerk, pin) { return host.signIn(String(clerk), String(pin)); },
    signOut: function () { host.signOut(); },
    workDone: function () { host.workDone(); }
  });

  // An error that arose in a function of the host tells the page's line.
  function atPage(error) {
    var place = error && error.fileName === "host" && /\((?!host:)([^():]+):(\d+)\)/.exec(String(error.stack));
    if (place) {
      error.fileName = place[1];
      error.lineNumber = Number(place[2]);
    }
    return error;
  }

  // ---- what the host calls

  Object.defineProperty(global, "__keep", {value: function (text) { session.kept = parseJson(text); }});

  Object.defineProperty(global, "__serve", {value: function (name) {
    if (host.changed()) units = {};
    var answer = {status: 200, parts: []};
    try {
      global.Request = requestOf(host.request());
    } catch (error) {
      host.header("Content-Type", "text/plain; charset=utf-8");
      host.answer(400, "The body is no JSON.\n");
      return;
    }
    global.Response = responseOf(answer);
    try {
      unit(name).body.call(global, {});
      host.answer(answer.status, answer.parts.join(""));
    } catch (error) {
      throw atPage(error);
    } finally {
      host.keep(jsonOf(session.kept));
      global.Request = global.Response = undefined;
    }
  }});
})(this);
