// Sends the next message of the queue. The rack's pages ask for it until nothing waits.
var desk = Server.include("shared/desk.js");
var racks = Server.include("shared/racks.js");

if (Request.method !== "POST" || !desk.place()) {
  Response.status = 409;
  return Response.json({ problem: "Load the page again." });
}
// Not alone: an outlet may take seconds, and others pay meanwhile.
var result = Server.recorded(racks.sendNext);
desk.workDone();
Response.json(result);
