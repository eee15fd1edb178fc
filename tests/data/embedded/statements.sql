Select firstDay, duration from StoreHoliday where storeid=1
Select paymentTypeName, doNotOpenCashDrawer from StorePaymentType  Where storeId='1'
Select defaultpickuptime  from store where storeId=1
Select dayOfWeek, storeOpen, defaultPickupTime  from StoreHour where storeId=1
Select IsNull(defaultProcessingDays,0) as defaultProcessingDays  from Store where storeId=1
Select IsNull(addDaysAfter,0) as addDaysAfter, IsNull(addAfterTime,'') as addAfterTime from  StoreHour where storeId=1 And dayOfWeek = '2'
Select departmentID, department.name, splitInvoice, isnull(convert(int, maxItemsInReceipt), 4000000) as maxItemsInReceipt, userMaxItem, isnull(department.daysToProcess, store.defaultprocessingdays) as daysToProcess, useHeatSeals, isnull(splitGroup, 0) as splitGroup  from Department  inner join store on department.storeid = store.storeid  Where department.storeId = 1 AND department.disabled=0 Order by department.displaySequence
select conveyorType from miscsetup where storeid = '1'
select pricelistitemid, taggeditemid from taggedItem where taggedItemID = (select distinct taggedItemID from taggedPiece where heatSealID = 'A10012')
select * from taggeditemdescriptor where taggeditemid = '1'
 select isnull(sum(isnull(adddays, 0)), 0) as tmod from departmentdays where  departmentid = '1' and hour <= 10
 select descriptorname from itemdescriptorprice  where itemDescriptorPriceID = '1'
 select name from descriptor  where descriptorID = '1'
update pricelistitem set usecounter = usecounter + 1 Where priceListItemId =1
Select priceListItemId, departmentId, itemName, price, 3 as daysToProcess, isNull(qtyInInventory, 1) as quantity,  discountable,  VIPDiscountable, couponable, saleOnly, VIPQualified, notes, outsideService, priceLater, prepayDiscount, prepayPercent, isnull(imageFileName, '') as imageFileName, '' as color From  PriceListItem Where priceListItemId =12
Select priceListItemId, departmentId, itemName, price, isnull(daysToProcess,0) as daysToProcess, isNull(qtyInInventory, 1) as quantity,  discountable,  VIPDiscountable, couponable, saleOnly, VIPQualified, notes, outsideService, priceLater, prepayDiscount, prepayPercent, isnull(imageFileName, '') as imageFileName, '' as color From  PriceListItem Where priceListItemId =1
update ItemDescriptorPrice set usecounter = usecounter + 1 where priceListItemId=1 And descriptorName='O''Brien' And descriptorType='UP'
Select descriptorName, price, IsNull(daysToProcess,0) as daysToProcess,  notes, discountable, vipdiscountable, couponable, prepayDiscount, oneShot From  ItemDescriptorPrice where priceListItemId='1' And descriptorName='O''Brien' And disabled = 0 And descriptorType='UP'
 select descriptor.color, descriptor.icon, descriptor.price  from descriptor  inner join descriptorgroup on descriptor.descriptorgroupid = descriptorgroup.descriptorgroupid  where descriptor.name = 'O''Brien'  and descriptorgroup.type = 'CO'
Select descriptorName, price, IsNull(daysToProcess,0) as daysToProcess,  notes From  ItemDescriptorPrice where priceListItemId='1' And descriptorName='O''Brien' And descriptorType='CO'
 update descriptor set descriptor.usagecounter = descriptor.usagecounter + 1  from descriptor  inner join descriptorgroup on descriptor.descriptorgroupid = descriptorgroup.descriptorgroupid  where descriptorgroup.type = 'CO' and descriptor.name = 'O''Brien'
SELECT taxCode FROM DEPARTMENTTAX WHERE storeid = '1' and departmentid = '1'
Select validWithOtherOffer From Discount Where discountId='1'
select count(*) as nrows from ticketlineitem  where ticketlinetype in ('PR', 'CU')  and ticketnumber = '1' and lineitemid = '1'
select * from DiscountDepartmentRule where discountid = '1'
SELECT D.discountID, D.discountSubType, D.discountName, D.effectiveDate,  D.expiryDate, D.minPieceCount, D.maxPieceCount, D.minQualAmount,  D.maxQualAmount, D.discountPercent, D.discountAmount, D.maxDiscountAmount,  D.dueDays, D.validWithOtherOffer, DD.departmentID, D.appliesPerUnit,  DD.minPieceCount AS 'departmentMinPieceCount',  DD.minQualAmount AS 'departmentMinQualAmount' ,  CASE WHEN DD.priceListItemID <= 0 THEN NULL  Else DD.priceListItemId  END as 'priceListItemID'  FROM Discount D LEFT OUTER JOIN DiscountDepartment DD ON D.discountID = DD.discountID  WHERE D.discountID IN(1,2,3) AND (D.active = 1 AND D.priceListID =1 AND D.discountType = 'CU'   AND ( datediff(day, D.effectiveDate, GetDate()) >= 0 OR D.effectiveDate IS NULL )  AND ( datediff(day, D.expiryDate, GetDate()) <= 0 OR D.expiryDate IS NULL )  AND ( D.minPieceCount <=1 OR D.minPieceCount IS NULL )  AND ( D.maxPieceCount >=1 OR D.maxPieceCount IS NULL )  AND ( D.minQualAmount <=25.5 OR D.minQualAmount IS NULL )  AND ( D.maxQualAmount >=25.5 OR D.maxQualAmount IS NULL )) AND ( D.noOfUses IS NULL OR dbo.getCustomerCouponUses(1, D.discountID) < D.noOfUses )  Order By D.discountID, DD.departmentID, DD.priceListItemId 
SELECT D.discountID, D.discountSubType, D.discountName, D.effectiveDate,  D.expiryDate, D.minPieceCount, D.maxPieceCount, D.minQualAmount,  D.maxQualAmount, D.discountPercent, D.discountAmount, D.maxDiscountAmount,  D.dueDays, D.validWithOtherOffer, DD.departmentID, D.appliesPerUnit,  DD.minPieceCount AS 'departmentMinPieceCount',  DD.minQualAmount AS 'departmentMinQualAmount' ,  CASE WHEN DD.priceListItemID <= 0 THEN NULL  Else DD.priceListItemId  END as 'priceListItemID'  FROM Discount D LEFT OUTER JOIN DiscountDepartment DD ON D.discountID = DD.discountID  WHERE D.discountID IN(1,2,3) OR (D.active = 1 AND D.priceListID =1 AND D.discountType = 'CU'   AND ( datediff(day, D.effectiveDate, GetDate()) >= 0 OR D.effectiveDate IS NULL )  AND ( datediff(day, D.expiryDate, GetDate()) <= 0 OR D.expiryDate IS NULL )  AND ( D.minPieceCount <=1 OR D.minPieceCount IS NULL )  AND ( D.maxPieceCount >=1 OR D.maxPieceCount IS NULL )  AND ( D.minQualAmount <=25.5 OR D.minQualAmount IS NULL )  AND ( D.maxQualAmount >=25.5 OR D.maxQualAmount IS NULL )) AND ( D.noOfUses IS NULL OR dbo.getCustomerCouponUses(1, D.discountID) < D.noOfUses )  Order By D.discountID, DD.departmentID, DD.priceListItemId 
 select validWithOtherOffer from discount where discountID = '1'
SELECT D.discountID, D.discountSubType, D.discountName, D.effectiveDate,  D.expiryDate, D.minPieceCount, D.maxPieceCount, D.minQualAmount,  D.maxQualAmount, D.discountPercent, D.discountAmount, D.maxDiscountAmount,  D.dueDays, D.validWithOtherOffer, DD.departmentID,  DD.minPieceCount AS 'departmentMinPieceCount',  DD.minQualAmount AS 'departmentMinQualAmount' ,  CASE WHEN DD.priceListItemID <= 0 THEN NULL  Else DD.priceListItemId  END as 'priceListItemID'  FROM Discount D  LEFT OUTER JOIN DiscountDepartment DD ON D.discountID = DD.discountID  WHERE D.priceListID =1 AND D.discountType = 'LY' AND  (datediff(day, D.effectiveDate, GetDate()) >= 0 OR D.effectiveDate IS NULL )  AND ( datediff(day, D.expiryDate, GetDate()) <= 0 OR D.expiryDate IS NULL )  AND ( D.minPieceCount <=1 OR D.minPieceCount IS NULL )  AND ( D.maxPieceCount >=1 OR D.maxPieceCount IS NULL )  AND ( D.minQualAmount <=25.5 OR D.minQualAmount IS NULL )  AND ( D.maxQualAmount >=25.5 OR D.maxQualAmount IS NULL )  AND D.discountID IN(1,2,3)  Order By D.discountID, DD.departmentID, DD.priceListItemId 
Select VIPMinQualAmount, VIPValidWithOtherOffers, VIPStraight,  VIPStraightPercent, VIPSmartAmount, VIPSmartForEveryAmount, VIPValidNbrOfMonths,  referralDiscountAmount, referralValidNbrOfDays,  referralIncrement, referralLimit  FROM PriceList where PriceListId='1'
select isnull(vipEligible, 0) as vipEligible, isnull(vipExpiryDate, getdate()) as vipExpiryDate, defaultPriceListId from customer where customersequencenumber = '1'
select sum(invoiceTotal) as total from Ticket where ticketStatus='FI'  and customerSequenceNumber = 1 and datediff(mm, createdDate, getdate()) < 1
 select customerreferral.referredby, customer.customername, customerreferral.amountToDate from customerreferral inner join customer on  customerreferral.customersequencenumber = customer.customersequencenumber  where customerreferral.customersequencenumber = 1 and datediff(day, customer.createdDate, '11/24/2026 10:30:00 AM') <= 1
 update customerreferral set amountToDate = amountToDate + 2.50 where customerreferral.customersequencenumber = '1'
update customer set temporaryaccount = (case permanentaccount when 1 then 0 else 1 end)
execute InsertMiscCharge '1' ,'1' ,'1' ,'C' ,2.50 ,'11/24/2026 10:30:00 AM' ,'Referral' ,'C' ,'3',1
SELECT IT.priceListItemID as 'priceListItemID',  IT.taxCode as 'taxCode', T.taxPercent as 'taxPercent',  T.[description] as 'description' FROM ItemTax IT, Tax T  WHERE IT.priceListItemID IN (1,2,3) AND IT.storeID = T.storeID  AND IT.taxCode = T.taxCode
SELECT IT.priceListItemID as 'priceListItemID', IT.descriptorName as 'descriptorName',  IT.descriptorType as 'descriptorType', IT.taxCode as 'taxCode',  T.taxPercent as 'taxPercent', T.[description] as 'description'  FROM ItemDescriptorTax IT, Tax T WHERE IT.priceListItemID IN (1,2,3) AND  convert(varchar, IT.priceListItemID) +  IT.descriptorType  + IT.descriptorName IN ('1UPZipper','2COBlue') AND IT.storeID = T.storeID  AND IT.taxCode = T.taxCode 
select tax.taxcode, tax.taxpercent, tax.description from surcharge inner join surchargetax on surcharge.surchargecode = surchargetax.surchargecode and surcharge.priceListID = surchargeTax.priceListId inner join tax on surchargetax.taxcode = tax.taxcode where surcharge.surchargecode = '1' and surchargetax.pricelistid = '1'
 SELECT tax.* FROM departmenttax INNER JOIN tax ON  departmenttax.taxcode = tax.taxcode  WHERE departmenttax.storeId = '1' AND departmenttax.departmentID = '1'
SELECT ISC.priceListItemID as 'priceListItemID',  ISC.surchargeCode as 'surchargeCode',  SC.fixedAmount as 'fixedAmount' , SC.surchargePercent as 'surchargePercent',  SC.[name] as 'description', SC.applyPerItem FROM ItemSurcharge ISC, Surcharge SC  WHERE ISC.priceListItemID IN (1,2,3)  AND ISC.priceListId = SC.priceListId  AND ISC.surchargeCode = SC.surchargeCode
SELECT ISC.priceListItemID as 'priceListItemID', ISC.descriptorName as 'descriptorName',  ISC.descriptorType as 'descriptorType', ISC.surchargeCode as 'surchargeCode',  SC.fixedAmount as 'fixedAmount', SC.surchargePercent as 'surchargePercent',  SC.[name] as 'description', SC.applyPerItem  FROM ItemDescriptorSurcharge ISC, Surcharge SC  WHERE ISC.priceListItemID IN (1,2,3)  AND convert(varchar, ISC.priceListItemID) + ISC.descriptorType + ISC.descriptorName  IN ('1UPZipper','2COBlue')  AND ISC.priceListId = SC.priceListId  AND ISC.surchargeCode = SC.surchargeCode
SELECT ds.surchargeCode as surchargeCode, sc.fixedAmount as fixedAmount, sc.surchargePercent as surchargePercent, sc.[name] as description, SC.applyPerItem  from departmentsurcharge ds, surcharge sc where ds.departmentid = '1' and ds.surchargeCode = sc.surchargecode  and sc.pricelistId = '1'
Select taxCode, description, taxPercent FROM Tax Where storeID = '1'
 select isnull(sum(isnull(adddays, 0)), 0) as tmod from departmentdays where  departmentid = '1' and hour <= 1
 select routeVersion from miscsetup where routeVersion = 2 and storeid = '1'
 select id from customerdelivery where customersequencenumber = '1' and deliverWed in (1, 3)  and active = 1 
 select 1 from customer  inner join route on customer.routenumber = route.routenumber  where customer.customersequencenumber = '1' and route.deliveryWed = 1
select (ms.RollOverDueDateAbove * dq.PiecesDue) / 100 as threshold from miscsetup ms, departmentquota dq where ms.storeid = '1' and dq.DepartmentName = 'Dry Cleaning'
select isnull(PiecesDue, 0) as PiecesDue from dailystatistics where Date = convert(varchar, '11/30/2026', 110) and DepartmentName = 'Dry Cleaning'
 select isnull(max(daystoprocess), -1) as rushdays from rushupcharge  where storeid = '1'
 select * from rushupcharge where storeid = '1'
 select * from rushupcharge where storeid = '1'  and daystoprocess >= 1  order by daystoprocess asc 
 select d1.departmentid from  department d1  inner join department d2 on (d2.splitgroup = d1.splitgroup or d1.splitGroup = 0) and d2.pricelistid = d1.pricelistid  where d2.departmentID = 1
InsertTicket 1, 'A1001','D','AC',1,NULL,1,'11/27/2026 5:00:00 PM',1,'Light',NULL,0,1,0,26.70,1.20,.5,NULL,'Front',1,25.00,0,0,0,25.00,0,0,'Ann','Fernhill',0,'5:00 PM', 1
UpdateInventory 1001,1
UpdateTicket 1001,'NULL',1,'11/27/2026 5:00:00 PM',1,'Light',NULL,0,1,0,26.70,1.20,.5,NULL,'Front',25.00,0,0,0,25.00,0,0,'Ann','Fernhill',0,'Q','5:00 PM', 1
UpdateInventory 1001,0
Delete TicketLineItem where ticketNumber=1001
 delete from ticketlineitemtaggeditem where ticketnumber = '1'
insert into redoCust select c.customerid, c.firstname, c.lastname, c.billingAddress1, c.billingAddress2, c.billingAddress3, c.billingCity, c.billingState, c.billingZipCode, dbo.formatPhone(c.mainAreaCode, c.mainPhone) as mainPhone, c.shippingAddress1, c.shippingAddress2, c.shippingAddress3, c.shippingCity, c.shippingState, c.shippingZipCode, c.email, t.invoiceNumber from customer c, ticket t Where c.customersequencenumber = t.customersequencenumber and t.ticketnumber = 1001
INSERT INTO TicketLineItem(ticketNumber, lineItemNumber,  createdByEmployeeID, lastModifiedByEmployeeID,  parentLineNumber, displaySequence, departmentID,  departmentName, ticketLineType, lineItemID, saleOnly,  lineItemName, originalUnitPrice, unitPrice, quantity,  lineItemTotal, totalTaxPercent, totalSurchargePercent,  lineItemTaxableAmount, itemNotes,  outsideService, totalUpchargeAmount, chargeTaxCode, packagedQuantity, daysToProcess, dueDate, priceLater, promptResponse, redo, prepaydiscount, invoicenumber, pickedup, heatseal) VALUES(1001,4,5,5,-1,4,1,'Dry Cleaning','IT',12,0,'Men''s Suit',12.50,12.50,1,12.50,8.25,0.00,12.50, 'No crease',1,2.00, NULL,2,3,'11/27/2026 5:00:00 PM', 0, 'Yes', 0, 0.5,'A1001',0, NULL)
INSERT INTO TicketLogItem(ticketNumber,  logDate, logType, quantity, deptName, itemName, amount) VALUES(1,'11/24/2026 10:30:00 AM','D',1,'Dry Cleaning','Suit',-3.50)
 insert into deliverywillcall  (customersequencenumber, actionrequired, ticketnumber)  values (1, 'DROPOFF', 1001)
UPDATE Customer SET visitCount = dbo.getCustomerVisits(customersequencenumber, null, null) where customerSequenceNumber =1
update loyaltyCustomerOffers set noOfUses = noOfUses-1 where customerSequenceNumber =1 and discountId =1
SELECT customerSequenceNumber, IsNull(starchPreferenceName, '') as starchPreferenceName, IsNull(finishPreferenceName, '') as finishPreferenceName,  dueDate, invoiceNumber, amountPaid, invoiceType, priceListId, createdDate, routeNumber, isnull(lotid, 0) as lotid, prepayEnabled FROM Ticket where ticketNumber='1'
 select count(*) as cnt from tickettag where ticketnumber = '1'
SELECT lineItemNumber, parentLineNumber, TicketLineItem.departmentID as departmentID,  TicketLineItem.departmentName, ticketLineType, lineItemID, TicketLineItem.saleOnly as saleOnly,  lineItemName, IsNull(originalUnitPrice,0.0) as originalUnitPrice, IsNull(unitPrice,0.0) as unitPrice, quantity, lineItemTotal,  IsNull(totalTaxPercent,0.0) as totalTaxPercent, IsNull(totalSurchargePercent,0.0) as totalSurchargePercent, lineItemTaxableAmount, itemNotes,  TicketLineItem.outsideService as outsideService, totalUpchargeAmount,  chargeTaxCode, PriceListItem.discountable, PriceListItem.couponable , PriceListItem.VIPDiscountable, PriceListItem.VIPQualified,  IsNull(packagedQuantity,1) as packagedQuantity,  pricelistitem.notes, TicketLineItem.daysToProcess, TicketLineItem.dueDate as dueDate, TicketLineItem.priceLater, TicketLineItem.promptResponse, TicketLineItem.redo,  TicketLineItem.prepayDiscount, TicketLineItem.InvoiceNumber, TicketLineItem.pickedUp,  isnull(PriceListItem.imageFileName, '') as imageFileName, '' as color, isnull(heatSeal, '') as heatSeal, department.useHeatSeals  From TicketLineItem  left outer join PriceListItem on lineItemId = priceListItemId  left outer join department on TicketLineItem.departmentId = department.departmentID  Where ticketNumber = '1' order by case ticketLineType when 'IT' then 0 when 'AC' then 1 else 2 end, TicketLineItem.displaySequence 
SELECT customerSequenceNumber, IsNull(starchPreferenceName, '') as starchPreferenceName, IsNull(finishPreferenceName, '') as finishPreferenceName,  dueDate, invoiceNumber, amountPaid, priceListId, lastModifiedDate,  IsNull(multiPickupCustomerName, '') as multiplePickupCustomerName,  IsNull(multiPickupLocation,'') as multiplePickupLocation,  invoiceTotal, createdByEmployeeId, createdDate, IsNull(pickupTime,'') as pickupTime ,  netTotal FROM Ticket, TicketCustomer where Ticket.ticketNumber='1' AND Ticket.ticketNumber = TicketCustomer.ticketNumber
SELECT t.lineItemNumber, t.parentLineNumber, T.departmentID,  t.departmentName, t.ticketLineType, t.lineItemID,   t.lineItemName, t.originalUnitPrice, t.unitPrice, t.quantity, t.lineItemTotal,  t.totalTaxPercent, t.totalSurchargePercent, t.lineItemTaxableAmount, t.itemNotes,  t.totalUpchargeAmount,  t.chargeTaxCode , notes , isnull(printNotes, 0) as printNotes, T.dueDate as dueDate,  T.daysToProcess as daysToProcess, T.outsideService, T.priceLater, T.promptResponse,  T.invoiceNumber, T.pickedUp, IsNull(t.packagedQuantity,1) as packagedQuantity, isnull(T.heatSeal, '') as heatSeal  From TicketLineItem T LEFT OUTER JOIN PriceListItem ON t.lineItemId = PriceListItem.priceListItemId  Where t.ticketNumber = '1' order by t.displaySequence
 select starths, endhs from validheatsealranges 
 select ticket.invoicenumber  from ticket  inner join ticketlineitemtaggeditem on ticketlineitemtaggeditem.ticketnumber = ticket.ticketnumber  inner join taggedpiece on taggedpiece.taggeditemid = ticketlineitemtaggeditem.taggeditemid  where taggedpiece.heatsealid = 'A10012'  and invoiceNumber <> 'A1001' and ticket.ticketstatus in ('ac', 'od') 
 select ticket.invoicenumber  from ticket  inner join ticketlineitemtaggeditem on ticketlineitemtaggeditem.ticketnumber = ticket.ticketnumber  inner join taggedpiece on taggedpiece.taggeditemid = ticketlineitemtaggeditem.taggeditemid  where taggedpiece.heatsealid = 'A10012'  and ticket.ticketstatus in ('ac', 'od') 
 select customer.customername  from ticket  inner join customer on ticket.customersequencenumber = customer.customersequencenumber  inner join ticketlineitemtaggeditem on ticketlineitemtaggeditem.ticketnumber = ticket.ticketnumber  inner join taggedpiece on taggedpiece.taggeditemid = ticketlineitemtaggeditem.taggeditemid  where taggedpiece.heatsealid = 'A10012'  and ticket.customersequencenumber <> 1
 select taggedpiece.HeatSealID, PriceListItem.disabled as plid, department.disabled as dd, pricelist.disable as pd  from TaggedItem inner join TaggedPiece on taggeditem.TaggedItemID = TaggedPiece.TaggedItemID inner join PriceListItem on taggeditem.PriceListItemID = PriceListItem.priceListItemID inner join Department on pricelistitem.departmentID = department.departmentID inner join PriceList on department.priceListID = pricelist.priceListID Where (PriceListItem.disabled = 1 Or Department.disabled = 1 Or pricelist.disable = 1) and taggedpiece.HeatSealID = 'A10012' 
 select * from taggedpiece where heatsealid = 'A10012'
 update taggeditem set pricelistitemid = 1 where taggeditemid = 1
 insert into taggeditem (OccupationPercent, PriceListItemID)  values (25, 1) 
 select @@identity as newID 
insert into taggedpiece(heatsealid, taggeditemid)  values ('A10012', '1')
 delete from taggeditemdescriptor where taggeditemid = 1
 insert into taggeditemdescriptor (taggeditemid, descriptorname, descriptortype)  values ('1', 'Suit', 'UP')
 INSERT INTO TicketLineItemTaggedItem (taggedItemID, ticketNumber, lineItemNumber)  VALUES ('1', '1', '1')
Delete TicketTag Where ticketNumber=1001
INSERT INTO TicketTag (ticketNumber, tagNumber, tagNumberType, tagColor, lotNumber)  VALUES(1001,'10012', 'T' ,'Red', '3')
InsertTicketTags 1001,'A1001',1
 select surchargeExempt, taxExempt from customer where customersequencenumber = '1'
 select *, isnull(options, '') as options from customerpreferencetype order by displayorder 
 select *, isnull(options, '') as options from customerpreferencetype order by displayorder
 select [value] from customerpreference where  customerpreferencetypeid = '1' and customersequencenumber = '1' and ticketnumber is null 
 select customerpreferencetypeid from customerpreferencetype where name = 'Starch'
 delete customerpreference where  customersequencenumber = 1 and ticketnumber = 1
 insert into customerpreference (customerpreferencetypeid, customersequencenumber, ticketnumber, value)  values (1, 1, 1, 'No starch')
 select forcecolor from pricelistitem where pricelistitemid = 1
 select forcepattern from pricelistitem where pricelistitemid = 1
 select forceupcharge from pricelistitem where pricelistitemid = 1
 select count(*) as cnt from itemdescriptorprice  where descriptorType = 'UP'  and disabled = 0  and priceListItemID = 1
 select isnull(Notes,'')  as notes from ItemDescriptorPrice where printnotes = 1 and priceListItemId='1' And descriptorName='Zipper' And descriptorType='UP'
select conveyorType as val from miscsetup where storeid = '1'
Select IsNull(daysToProcess,0) as daysToProcess, name, notes from Department where departmentid=1
exec dbo.isHeatSealDept '1'
INSERT INTO TicketCustomer  SELECT 1 as ticketNumber, customerID, multiplePickup,  NULL as  multiPickupCustomerName, NULL as multiPickupLocation,  firstName, middleInitial,lastName, employer, billingAddress1,  billingAddress2,billingAddress3,billingCity, billingState,  billingZipCode,MainAreaCode,MainPhone,shippingAddress1,  shippingAddress2,shippingAddress3, shippingCity, shippingState,  shippingZipCode , AltAreaCode, AltPhone, email  From Customer WHERE customerSequenceNumber =1
InsertQuickInvoice 1, 'A1001',1,1,'11/27/2026 5:00:00 PM',1,'Light',NULL,'0',1,0,'Ann','Fernhill','5:00 PM'
 delete customerpreference where  customersequencenumber = 1 and ticketnumber = 1001
 insert into customerpreference (customerpreferencetypeid, customersequencenumber, ticketnumber, value)  values (1, 1, 1001, 'No starch')
exec sendtowhiteadc 'TICKET_CREATE',1001
INSERT INTO TicketLineItem(ticketNumber, lineItemNumber,  createdByEmployeeID, lastModifiedByEmployeeID,  parentLineNumber, displaySequence, departmentID,  departmentName, ticketLineType, lineItemID, saleOnly,  lineItemName, quantity, lineItemTotal, itemNotes, daysToProcess, dueDate) VALUES(1,1,1,1,-1,1,1,'Dry Cleaning','UP',NULL,0,'Suit',1,0, 'Two buttons''s missing',1,'11/27/2026 5:00:00 PM' )
SELECT customerSequenceNumber, IsNull(starchPreferenceName, '') as starchPreferenceName, IsNull(finishPreferenceName, '') as finishPreferenceName,  dueDate, invoiceNumber, createddate, createdByEmployeeId ,  IsNull(pickupTime,'') as pickupTime  FROM Ticket where ticketNumber=1
SELECT lineItemNumber,TicketLineItem.departmentID As departmentId, departmentName,  ticketLineType , lineItemID, lineItemName, quantity, itemNotes,  TicketLineItem.daysToProcess , TicketLineItem.dueDate, notes, Printnotes FROM TicketLineItem, Department  where ticketNumber =1 And TicketLineItem.departmentid = Department.departmentid  Order by TicketLineItem.displaySequence
 select [value] from customerpreference where  customerpreferencetypeid = '1' and customersequencenumber = '1' and ticketnumber is null 
Select priceListItemId, departmentId, itemName  From PriceListItem Where priceListItemId =1
 select departmentid, name from department where disabled = 0 and pricelistid = '1'  order by displaysequence 
 select pricelistitem.itemname, pricelistitem.pricelistitemid, pricelistitem.departmentid, pricelistitem.promptforupcharge, pricelistitem.promptfordescriptors,  isnull(pricelistitem.imagefilename, '') as icon,  department.name as departmentname,  department.useheatseals  from pricelistitem  inner join department on pricelistitem.departmentID = department.departmentID  where department.pricelistid = '1' and pricelistitem.disabled = 0 and pricelistitem.commonitem = 1  order by pricelistitem.displaysequence, pricelistitem.itemname 
 select pricelistitem.itemname, pricelistitem.pricelistitemid, pricelistitem.departmentid, pricelistitem.promptforupcharge, pricelistitem.promptfordescriptors,  isnull(pricelistitem.imagefilename, '') as icon,  department.name as departmentname,  department.useheatseals  from pricelistitem  inner join department on pricelistitem.departmentID = department.departmentID  where department.pricelistid = '1' and pricelistitem.disabled = 0 and pricelistitem.departmentID = '1'  order by pricelistitem.displaysequence, pricelistitem.itemname 
 select * from descriptorgroup order by displayorder 
 select descriptorid, name, isnull(color, '') as color, isnull(icon, '') as icon, preview, maxquantity from descriptor where descriptorgroupid = '1' and name like 'bl%'  order by displayorder, name 
select itemdescriptorprice.descriptorname, itemdescriptorprice.itemdescriptorpriceid, isnull(itemdescriptorprice.imagefilename, '') as icon, isnull(itemdescriptorprice.maxQuantity, 1) as maxQuantity, pricelistitem.promptfordescriptors  from itemdescriptorprice  inner join pricelistitem on itemdescriptorprice.pricelistitemid = pricelistitem.pricelistitemid  where itemdescriptorprice.disabled = 0 and itemdescriptorprice.descriptortype = 'UP'  and itemdescriptorprice.pricelistitemid = '1' order by itemdescriptorprice.displaysequence, itemdescriptorprice.descriptorname 
select itemdescriptorprice.descriptorname, itemdescriptorprice.itemdescriptorpriceid, isnull(itemdescriptorprice.imagefilename, '') as icon, 1 as maxQuantity, pricelistitem.promptfordescriptors  from itemdescriptorprice  inner join pricelistitem on itemdescriptorprice.pricelistitemid = pricelistitem.pricelistitemid  where itemdescriptorprice.disabled = 0 and itemdescriptorprice.descriptortype = 'UP'  and itemdescriptorprice.pricelistitemid = '1' order by itemdescriptorprice.displaysequence, itemdescriptorprice.descriptorname 
 select  ticket.ticketnumber,  ticket.ticketstatus,  ticket.invoicenumber,  dbo.pivotTicketRackLocationBrief(ticket.ticketnumber, ', ') as racklocation,  ticketcustomer.customername,  dbo.formatphone(ticketcustomer.mainareacode, ticketcustomer.mainphone) as customerphone  from ticket  inner join ticketcustomer on ticket.ticketnumber = ticketcustomer.ticketnumber  where ticket.ticketnumber = '1' 
 select ticket.invoicenumber, ticket.ticketnumber, employee.employeename, ticket.createddate, isnull(convert(varchar, ticket.dateout, 101), '-') as dateout, customer.customername, dbo.pivotTicketRackLocationBrief(ticket.ticketNumber, ',') as racklocation  from ticket  inner join customer on ticket.customersequencenumber = customer.customersequencenumber  inner join employee on ticket.createdbyemployeeid = employee.employeeid  where ticket.ticketnumber in  (   select distinct pitem1.ticketnumber  from ticketlineitem pitem1  inner join TicketLineItem sitem1 on  sitem1.ticketNumber = pitem1.ticketNumber and  sitem1.parentLineNumber = pitem1.lineItemNumber and  sitem1.lineItemName = 'O''Brien' and sitem1.ticketLineType = 'UP'  where pitem1.lineItemId = 11 and pitem1.quantity >= 2 and datediff(day, pitem1.duedate, getdate()) <= 180  intersect  select distinct pitem2.ticketnumber  from ticketlineitem pitem2  where pitem2.lineItemId = 12 and pitem2.quantity >= 1 and datediff(day, pitem2.duedate, getdate()) <= 180   )  order by ticket.createddate desc 
select ticketnumber, invoicenumber, amountPaid, nettotal from ticket where ticketnumber = '1'
select ticketnumber, invoicenumber, amountPaid, nettotal, datediff(minute, createddate, getdate()) as age from ticket where ticketnumber = '1'
 update ticketlineitem set pickedup = 1  where ticketnumber = 1 and lineitemnumber = 1
Select t.ticketNumber, case t.invoiceNumber when '' then ticket.invoicenumber else t.invoicenumber end as invoicenumber, t.lineItemNumber as lineNumber, t.parentLineNumber as parentLineNumber, t.lineItemName as itemName, t.ticketLineType as itemType,  t.quantity, t.unitPrice, t.lineItemTotal, t.lineItemId, IsNull(t.packagedQuantity,1) as packagedQuantity,  t.saleOnly, isnull(t.itemNotes,'') as itemnotes  ,isnull(p.notes, '') as notes  , isnull(p.printNotes, 0) as printNotes, t.departmentName as departmentName, t.daysToProcess as daysToProcess, t.dueDate as dueDate, t.promptResponse,  t.pickedUp, t.departmentid, isnull(t.heatseal, '') as heatseal  From TicketLineItem t inner join ticket on t.ticketnumber = ticket.ticketnumber  left outer join Pricelistitem p on t.lineItemId = p.priceListItemId  Where t.ticketNumber IN (1001,1002)  order by t.ticketnumber, t.invoicenumber 
 select isnull(Notes,'')  as notes from ItemDescriptorPrice where printnotes = 1 and priceListItemId='1' And descriptorName='Suit' And descriptorType='UP'
select employeename from employee where employeeid = '1'
 insert into ticketlog (ticketnumber, logdate, logtype, employeename)  values ( 1,  getdate(),  'R',  'Ann'  ) 
 select isnull(sum(ticketlineitem.prepaydiscount * ticketlineitem.quantity), 0) from ticketlineitem  inner join ticket on ticketlineitem.ticketnumber = ticket.ticketnumber  where ticket.prepayenabled = 1 and ticketlineitem.ticketnumber = '1'
select count(*) as cnt from rackassignment where ticketnumber = '1'
PickupPayment '''1001'',''1002''', 1 ,1 ,1 ,1 ,1 ,-1 ,1 ,NULL
 insert into claimReceipt  (name, relationship, identificationType, identification, phoneNumber, note)  values  (   'Ann O''Brien', 'Wife', NULL, NULL, '555 1234', NULL ) 
 update cardpayment set amountapplied =  isnull(amountapplied, 0) + -3.50 where transactionid = 'T123'
 INSERT INTO TerminalPayment (terminalId, paymentNumber, paymentType,  paymentAmount,checkOrCardNumber, creditCardType, creditCardExpirydate,  approvalCode, transactionNumber, totalCashPayment, signatureID)  VALUES(1,1,'Check',0,'7',null,'2712','OK123','OK123',NULL,NULL)
UPDATE GIFTCARD SET giftValue = giftValue - 0 , lastUsedDate = getDate() where giftCardId = 1
 select  discountpercent as percentage,   discountamount as flat  from discount where discountid = '1'
Select taxCode, description, taxPercent FROM Tax Where storeID = '1'
 select isnull(creditCardRequestFilename, '') as filename from terminal where terminalid = '3'
insert into XChargeTransaction (TransactionGUID, RequestFile, terminalid, clerk, receipt, amount, customerSequenceNumber)  VALUES ('6F9619FF-8B86-D011-B42D-00C04FC964FF', 'C:\XC\abc', null, 5, 'R-1', -3.50, '10')
select RequestFile from XChargeTransaction where TransactionGUID = '6F9619FF-8B86-D011-B42D-00C04FC964FF'
 update xchargetransaction set  dateAnswered = getdate() ,answer = 'OK123' where transactionguid = '6F9619FF-8B86-D011-B42D-00C04FC964FF'
select *, isnull(answer, '') as answer from xchargetransaction where transactionGUID = '6F9619FF-8B86-D011-B42D-00C04FC964FF'
 INSERT INTO TerminalPayment (terminalId, paymentNumber, paymentType,  paymentAmount,checkOrCardNumber, creditCardId, creditCardExpirydate,  approvalCode, transactionNumber, totalCashPayment, signatureID)  VALUES( 1,1,'Credit Card',12.34,'************1111',2,'2712','OK123','XXXXX',0,NULL)
select creditCardTypeID from creditcardtypedomain where storeid = '1' and name = 'Visa'
select isnull(max(BatchID), 0) + 1 as NextBatchID from PaymentBatch
insert into PaymentBatch (BatchID, CustomerSequenceNumber, EmployeeInitiated, CustomerName, AccountNumber, ExpirationDate, TransactionAmount, TransactionGUID) values (1, '10', 5, 'Ann O''Brien', 'XC00001','2712', 12.34, '6F9619FF-8B86-D011-B42D-00C04FC964FF')
update PaymentBatch set  stage = 2,  Answer = 'APPROVED'  where TransactionGUID = '6F9619FF-8B86-D011-B42D-00C04FC964FF'
select * from PaymentBatch where BatchID = '1'
select * from paymentbatch where stage in (1, 2, 3) and batchid = '1'
select * from paymentbatch where stage in (0, 1, 2) and batchid = '1'
update PaymentBatch set Stage = 2 where TransactionGUID = '6F9619FF-8B86-D011-B42D-00C04FC964FF'
execute dbo.InsertPayment 1, 1, 1, 1, 'CREDIT CARD', 12.34, 'XC00001', 'APPROVED O K', 'XXXXX', '2', '2712', NULL
 update customer set   creditCardTypeName = 'VISA', creditCardNumber = 'XC00001', creditCardExpDate = '1227', creditCardInXc = 0  where customersequencenumber = 1
 insert into xcaccount (xcaccountid, customersequencenumber, recurring, cardtype, accountnumber, expiration)  values (  'XC00001', 1, 1 , 'VISA', 'XC00001', '1227')
 update xcaccount set expiration = '1227' where xcaccountid = 'XC00001'
 update customer set  creditCardExpDate = '1227'  where creditCardNumber = 'XC00001'
 delete xcaccount where xcaccountid = 'XC00001'
 update customer set   creditCardTypeName = '', creditCardNumber = null, creditCardExpDate = null, creditCardInXc = 0  where creditCardNumber = 'XC00001'
select * from marketingLettersCSN
 select descriptorid, name, isnull(color, '') as color, isnull(icon, '') as icon, preview, maxquantity from descriptor where descriptorgroupid = '1' order by displayorder, name 
 select top 30 descriptorid, name, isnull(color, '') as color, isnull(icon, '') as icon, preview, maxquantity from descriptor where descriptorgroupid = '4' order by displayorder, name 
 select * from descriptorgroup  where [type] = 'up' order by displayorder 
 select [value] from customerpreference where  customerpreferencetypeid = '1' and customersequencenumber = '1' and ticketnumber = '1001'
GetProbableCoupons  '1','3',25.5,'10'
GetProbableLoyaltyDiscounts  '10','1','3',25.5
GetProbablePromotions  '1','3',25.5,'10','11/24/2026 10:30:00 AM'
ApplyPrePayPayment '1001,1002',10,1,5,3, 'Pre pay'
ApplyPrePayPayment 1001,10,1,5,3, 'Pickup'
 select * from descriptorgroup  order by displayorder 
 select top 30 descriptorid, name, isnull(color, '') as color, isnull(icon, '') as icon, preview, maxquantity from descriptor where descriptorgroupid = '3' order by displayorder, name 
