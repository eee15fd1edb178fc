// The customer pays for a ticket in cash and takes it along.
var pickup = CreateObject("OndrelCorpComponents.pickup");
pickup.DBConnectionString = Database.connectionString;
pickup.storeid = 1;
pickup.custSeqNumber = Number(Request.form.customer);
pickup.userAction = "pickup";
pickup.initStorePaymentTypeInfo();
pickup.addInvoiceToPickup(Number(Request.form.ticket));
var due = pickup.getAmountDue();
pickup.addPayment(due, "Cash");
pickup.applyPayments(4, 3);
pickup.recordPickupAction(4);
Server.workDone();
Response.write(due);
