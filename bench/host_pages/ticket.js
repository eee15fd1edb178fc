// The ticket as it is.
var lines = Session.invoice.lineItems.Clone();
Response.write("<table>");
for (; !lines.EOF; lines.MoveNext())
  Response.write("<tr><td>", Server.HTMLEncode(lines("itemType").Value), "<td>", lines("quantity").Value, "<td>",
    Server.HTMLEncode(lines("itemName").Value), "<td>", Number(lines("lineItemTotal").Value).toFixed(2));
Response.write("</table>");
