-- The tables of a store.
--
-- Plain T-SQL: create table and create index, nothing else, so that the same text makes a database on a
-- server and in the embedded engine. Every column is nullable or has a default, keys aside, and a row can
-- be inserted with the few columns that matter to it.
--
-- Money is money, a percentage is decimal(9,4) with 8.25 for 8.25 %, a yes or no is bit, a moment is
-- datetime. Weekdays are numbered from Monday = 1. Names keep to 64 characters and notes to 255, which is
-- what the lines of an invoice can hold.
--
-- What the library does not ask of a store's server carries the note "own": tables and columns that serve
-- the procedures of the embedded engine, keys, a shop's day at the counter, and what makes the sample store readable.
--
-- The schema only grows: the number of its tables, columns and indices is its version, and `ondrel db upgrade` adds to
-- an older database what it lacks. Nothing is renamed or taken away.


-- ---------------------------------------------------------------------------------------------------
-- Store and setup
-- ---------------------------------------------------------------------------------------------------

-- A shop: its address and the promises it makes when nothing else is said.
create table Store (
  storeId int not null primary key,
  name varchar(64),  -- own
  address varchar(128),  -- own
  city varchar(64),  -- own
  state varchar(2),  -- own
  zipCode varchar(10),  -- own
  phone varchar(20),  -- own
  defaultpickuptime varchar(20),
  defaultProcessingDays int
);

-- A weekday of a shop: open or not, the ready time, and the cut-off (hh:mm) after which days are added.
create table StoreHour (
  storeId int not null,
  dayOfWeek int not null,
  storeOpen bit not null default 1,
  defaultPickupTime varchar(20),
  addDaysAfter int,
  addAfterTime varchar(10)
);
create index StoreHourByDay on StoreHour (storeId, dayOfWeek);

-- A run of days on which a shop stays closed.
create table StoreHoliday (
  storeid int not null,
  firstDay datetime not null,
  duration int not null default 1,
  description varchar(64)  -- own
);
create index StoreHolidayByStore on StoreHoliday (storeid);

-- A way of paying that a shop takes, and whether it leaves the cash drawer shut.
create table StorePaymentType (
  storeId int not null,
  paymentTypeName varchar(20) not null,
  doNotOpenCashDrawer bit,
  displaySequence int not null default 0  -- own
);
create index StorePaymentTypeByStore on StorePaymentType (storeId);

-- The options of a shop, one row a shop.
create table miscsetup (
  storeid int not null primary key,
  routeVersion int,
  RollOverDueDateAbove int,
  ItemSortMethod int,
  conveyorType varchar(10),
  oneDiscountPerInvoice bit not null default 0,
  groupSimilarItems bit not null default 0
);

-- A counter terminal; a fixed request file name makes it reuse one file for card requests.
create table terminal (
  terminalid int not null primary key,
  storeId int,  -- own
  terminalName varchar(64),  -- own
  creditCardRequestFilename varchar(255)
);

-- A person who works at the counter. rights are words of price, redo, void, refund, close and setup.
create table employee (
  employeeid int not null primary key,
  employeename varchar(64),
  storeId int,  -- own
  active bit not null default 1,  -- own
  rights varchar(64) not null default '',  -- own
  pinHash varchar(255)  -- own
);

-- A delivery route and the weekdays on which it is driven.
create table route (
  routeNumber int not null primary key,
  routeName varchar(64),  -- own
  deliverySun bit not null default 0,
  deliveryMon bit not null default 0,
  deliveryTue bit not null default 0,
  deliveryWed bit not null default 0,
  deliveryThu bit not null default 0,
  deliveryFri bit not null default 0,
  deliverySat bit not null default 0
);


-- ---------------------------------------------------------------------------------------------------
-- Price lists, departments, items and descriptors
-- ---------------------------------------------------------------------------------------------------

-- A price list with the terms of its VIP discount and its referral credit.
create table PriceList (
  PriceListId int not null primary key,
  name varchar(64),  -- own
  disable bit not null default 0,
  VIPMinQualAmount money,
  VIPValidWithOtherOffers bit,
  VIPStraight bit,
  VIPStraightPercent decimal(9,4),
  VIPSmartAmount money,
  VIPSmartForEveryAmount money,
  VIPValidNbrOfMonths int,
  referralDiscountAmount decimal(9,4),
  referralValidNbrOfDays int,
  referralIncrement money,
  referralLimit money
);

-- A department of a price list: how it splits into tickets, how long it takes, whether it heat-seals.
create table Department (
  departmentID int not null primary key,
  storeid int,
  pricelistid int,
  name varchar(50),
  notes varchar(255),
  printNotes bit default 0,
  splitInvoice bit not null default 0,
  splitGroup int default 0,
  splitwithdepartment int,
  maxItemsInReceipt int,
  userMaxItem bit not null default 0,
  daysToProcess int,
  useHeatSeals bit not null default 0,
  disabled bit not null default 0,
  displaySequence int not null default 0
);
create index DepartmentByStore on Department (storeid, displaySequence);
create index DepartmentByPriceList on Department (pricelistid, displaySequence);

-- Days that a department adds from an hour of the day on; the rows of one department add up.
create table departmentdays (
  departmentid int not null,
  hour int not null,
  adddays int
);
create index departmentdaysByDepartment on departmentdays (departmentid, hour);

-- The pieces that a department can finish in a day.
create table departmentquota (
  DepartmentName varchar(50) not null,
  PiecesDue int default 0
);
create index departmentquotaByName on departmentquota (DepartmentName);

-- The pieces that a department has promised for a day.
create table dailystatistics (
  Date datetime not null,
  DepartmentName varchar(50) not null,
  PiecesDue int
);
create index dailystatisticsByDay on dailystatistics (DepartmentName, Date);

-- A garment, household piece or sold item of a department. qtyInInventory is the pieces of one sold unit.
create table PriceListItem (
  priceListItemId int not null primary key,
  departmentId int,
  itemName varchar(64),
  price money not null default 0,
  daysToProcess int,
  qtyInInventory int,
  discountable bit not null default 1,
  VIPDiscountable bit not null default 1,
  couponable bit not null default 1,
  saleOnly bit not null default 0,
  VIPQualified bit not null default 1,
  notes varchar(255),
  printNotes bit default 0,
  outsideService bit not null default 0,
  priceLater bit not null default 0,
  prepayDiscount money not null default 0,
  prepayPercent decimal(9,4),
  imageFileName varchar(255),
  usecounter int not null default 0,
  displaysequence int not null default 0,
  disabled bit not null default 0,
  commonitem bit not null default 0,
  promptforupcharge bit not null default 0,
  promptfordescriptors bit not null default 0,
  forcecolor bit not null default 0,
  forcepattern bit not null default 0,
  forceupcharge bit not null default 0
);
create index PriceListItemByDepartment on PriceListItem (departmentId, displaysequence);

-- The price of an upcharge (UP), color (CO) or pattern (PA) on one item.
create table ItemDescriptorPrice (
  itemDescriptorPriceID int not null primary key,
  priceListItemId int,
  descriptorName varchar(64),
  descriptorType varchar(2),
  price money not null default 0,
  daysToProcess int,
  notes varchar(255),
  printnotes bit default 0,
  discountable bit not null default 1,
  vipdiscountable bit not null default 1,
  couponable bit not null default 1,
  prepayDiscount money not null default 0,
  oneShot bit not null default 0,
  usecounter int not null default 0,
  disabled bit not null default 0,
  displaysequence int not null default 0,
  imagefilename varchar(255),
  maxQuantity int
);
create index ItemDescriptorPriceByItem on ItemDescriptorPrice (priceListItemId, descriptorType, descriptorName);

-- A color, pattern, brand or other word for a garment, with one price for all garments.
create table descriptor (
  descriptorid int not null primary key,
  descriptorgroupid int,
  name varchar(64),
  color varchar(12),
  icon varchar(255),
  price money not null default 0,
  preview bit not null default 0,
  maxquantity int default 1,
  displayorder int not null default 0,
  usagecounter int not null default 0
);
create index descriptorByGroup on descriptor (descriptorgroupid, displayorder, name);
create index descriptorByName on descriptor (name);

-- A kind of descriptor: its line type and the title of its panel.
create table descriptorgroup (
  descriptorgroupid int not null primary key,
  type varchar(20),
  name varchar(64),  -- own
  displayorder int not null default 0
);

-- The upcharge that a shop adds to a garment promised within so many days.
create table rushupcharge (
  storeid int not null,
  daystoprocess int,
  upchargename varchar(64)
);
create index rushupchargeByStore on rushupcharge (storeid, daystoprocess);

-- The stock of a sold item, in pieces.
create table inventory (  -- own
  priceListItemId int not null primary key,
  quantityOnHand int not null default 0
);


-- ---------------------------------------------------------------------------------------------------
-- Taxes and surcharges
-- ---------------------------------------------------------------------------------------------------

-- A tax of a shop.
create table Tax (
  storeID int not null,
  taxCode int not null,
  taxPercent decimal(9,4) not null default 0,
  description varchar(64)
);
create index TaxByCode on Tax (taxCode, storeID);

-- A tax on an item.
create table ItemTax (
  priceListItemID int not null,
  taxCode int not null,
  storeID int not null
);
create index ItemTaxByItem on ItemTax (priceListItemID);

-- A tax on an upcharge, color or pattern of an item.
create table ItemDescriptorTax (
  priceListItemID int not null,
  descriptorName varchar(64) not null,
  descriptorType varchar(2) not null,
  taxCode int not null,
  storeID int not null
);
create index ItemDescriptorTaxByItem on ItemDescriptorTax (priceListItemID);

-- A tax on the charge lines of a department.
create table DEPARTMENTTAX (
  storeid int not null,
  departmentid int not null,
  taxcode int not null
);
create index DepartmentTaxByDepartment on DEPARTMENTTAX (departmentid, storeid);

-- A surcharge of a price list: a fixed amount, per piece or once, or with no amount a percentage.
create table Surcharge (
  surchargeCode int not null,
  pricelistId int not null,
  name varchar(64),
  fixedAmount money,
  surchargePercent decimal(9,4),
  applyPerItem bit not null default 0
);
create index SurchargeByCode on Surcharge (surchargeCode, pricelistId);

-- A surcharge on an item.
create table ItemSurcharge (
  priceListItemID int not null,
  surchargeCode int not null,
  priceListId int not null
);
create index ItemSurchargeByItem on ItemSurcharge (priceListItemID);

-- A surcharge on an upcharge, color or pattern of an item.
create table ItemDescriptorSurcharge (
  priceListItemID int not null,
  descriptorName varchar(64) not null,
  descriptorType varchar(2) not null,
  surchargeCode int not null,
  priceListId int not null
);
create index ItemDescriptorSurchargeByItem on ItemDescriptorSurcharge (priceListItemID);

-- A surcharge on the charge lines of a department.
create table departmentsurcharge (
  departmentid int not null,
  surchargeCode int not null
);
create index departmentsurchargeByDepartment on departmentsurcharge (departmentid);

-- A tax on a surcharge.
create table surchargetax (
  surchargecode int not null,
  priceListId int not null,
  taxcode int not null
);
create index surchargetaxByCode on surchargetax (surchargecode, priceListId);


-- ---------------------------------------------------------------------------------------------------
-- Discounts
-- ---------------------------------------------------------------------------------------------------

-- An offer of a price list: coupon (CU), loyalty (LY) or promotion (PR). A percentage, or an amount which
-- counts once or per piece.
create table Discount (
  discountID int not null primary key,
  priceListID int,
  discountType varchar(2),
  discountSubType varchar(10) not null default '',
  discountName varchar(64),
  effectiveDate datetime,
  expiryDate datetime,
  minPieceCount int,
  maxPieceCount int,
  minQualAmount money,
  maxQualAmount money,
  discountPercent decimal(9,4),
  discountAmount money,
  maxDiscountAmount money,
  dueDays int,
  validWithOtherOffer bit not null default 0,
  appliesPerUnit bit not null default 0,
  active bit not null default 1,
  noOfUses int
);
create index DiscountByPriceList on Discount (priceListID, discountType);

-- A department, or one item of it, that an offer is for. An offer without rows is for the whole invoice.
create table DiscountDepartment (
  discountDepartmentID int identity primary key,  -- own
  discountID int,
  departmentID int,
  minPieceCount int,
  minQualAmount money,
  priceListItemID int
);
create index DiscountDepartmentByDiscount on DiscountDepartment (discountID, departmentID);

-- What must be on the invoice in a department before an offer is made at all.
create table DiscountDepartmentRule (
  discountDepartmentRuleID int identity primary key,  -- own
  discountid int,
  departmentid int,
  MinPieceCount int,
  MinQualAmount money
);
create index DiscountDepartmentRuleByDiscount on DiscountDepartmentRule (discountid);

-- A loyalty offer that a customer has earned, and how often it can still be used.
create table loyaltyCustomerOffers (
  customerSequenceNumber int not null,
  discountId int not null,
  noOfUses int not null default 0
);
create index loyaltyCustomerOffersByCustomer on loyaltyCustomerOffers (customerSequenceNumber, discountId);


-- ---------------------------------------------------------------------------------------------------
-- Customers
-- ---------------------------------------------------------------------------------------------------

-- A customer. notifyBy is text, email or empty; mergedInto is another customer who has taken over what was this one's.
create table Customer (
  customerSequenceNumber int not null primary key,
  customerID varchar(20),
  customername varchar(128),
  multiplePickup bit not null default 0,
  firstName varchar(64),
  middleInitial varchar(2),
  lastName varchar(64),
  employer varchar(64),
  billingAddress1 varchar(64),
  billingAddress2 varchar(64),
  billingAddress3 varchar(64),
  billingCity varchar(64),
  billingState varchar(2),
  billingZipCode varchar(10),
  MainAreaCode varchar(3),
  MainPhone varchar(10),
  shippingAddress1 varchar(64),
  shippingAddress2 varchar(64),
  shippingAddress3 varchar(64),
  shippingCity varchar(64),
  shippingState varchar(2),
  shippingZipCode varchar(10),
  AltAreaCode varchar(3),
  AltPhone varchar(10),
  email varchar(128),
  routenumber int,
  vipEligible bit default 0,
  vipExpiryDate datetime,
  defaultPriceListId int,
  surchargeExempt bit not null default 0,
  taxExempt bit not null default 0,
  visitCount int not null default 0,
  temporaryaccount bit not null default 0,
  permanentaccount bit not null default 0,
  creditCardTypeName varchar(50),
  creditCardNumber varchar(50),
  creditCardExpDate varchar(10),
  creditCardInXc bit not null default 0,
  createdDate datetime,
  notes varchar(255),  -- own
  notifyBy varchar(10) not null default '',  -- own
  mergedInto int,  -- own
  changeCount int not null default 0  -- own
);
create index CustomerByName on Customer (lastName, firstName);
create index CustomerByPhone on Customer (MainPhone);
create index CustomerByCard on Customer (creditCardNumber);

-- A kind of preference, with its default and its choices, which stand parted by "|".
create table customerpreferencetype (
  customerpreferencetypeid int not null primary key,
  name varchar(64),
  [default] varchar(64),
  options varchar(255),
  displayorder int not null default 0
);

-- What a customer prefers: always, or, with a ticket number, on that ticket.
create table customerpreference (
  customerpreferencetypeid int not null,
  customersequencenumber int not null,
  ticketnumber int,
  value varchar(64)
);
create index customerpreferenceByCustomer on customerpreference (customersequencenumber, ticketnumber);

-- Who sent a new customer, and how much credit that has built up so far.
create table customerreferral (
  customersequencenumber int not null primary key,
  referredby int,
  amountToDate money not null default 0
);

-- A customer's place on a route: per weekday 0 none, 1 delivery, 2 collection, 3 both.
create table customerdelivery (
  id int not null primary key,
  customersequencenumber int,
  routeid int,
  active bit not null default 1,
  deliverSun int not null default 0,
  deliverMon int not null default 0,
  deliverTue int not null default 0,
  deliverWed int not null default 0,
  deliverThu int not null default 0,
  deliverFri int not null default 0,
  deliverSat int not null default 0
);
create index customerdeliveryByCustomer on customerdelivery (customersequencenumber);

-- Something that the driver has to do for a customer.
create table deliverywillcall (
  deliverywillcallid int identity primary key,  -- own
  customersequencenumber int,
  actionrequired varchar(20),
  ticketnumber int
);

-- The addressees of a letter run.
create table marketingLettersCSN (
  customerSequenceNumber int not null,  -- own
  customerName varchar(128),  -- own
  firstName varchar(64),  -- own
  lastName varchar(64),  -- own
  address1 varchar(64),  -- own
  address2 varchar(64),  -- own
  city varchar(64),  -- own
  state varchar(2),  -- own
  zipCode varchar(10),  -- own
  email varchar(128),  -- own
  letterDate datetime  -- own
);


-- ---------------------------------------------------------------------------------------------------
-- Tickets
-- ---------------------------------------------------------------------------------------------------

-- A stored invoice. ticketStatus is AC in the shop, OD out with the driver, FI collected; invoiceType is
-- D dropped off, Q dropped off uncounted, C sold over the counter. invoiceTotal is the goods with taxes and
-- surcharges before any discount, netTotal what is to be paid.
create table Ticket (
  ticketNumber int not null primary key,
  storeId int,  -- own
  invoiceNumber varchar(20),
  invoiceType varchar(1),
  ticketStatus varchar(2),
  onHold bit not null default 0,  -- own
  priceListId int,
  routeNumber int,
  customerSequenceNumber int,
  starchPreferenceName varchar(64),
  finishPreferenceName varchar(64),
  createdDate datetime,
  createdByEmployeeId int,
  lastModifiedDate datetime,
  lastModifiedByEmployeeId int,  -- own
  employeeName varchar(64),  -- own
  storeName varchar(64),  -- own
  terminalId int,  -- own
  dueDate datetime,
  pickupTime varchar(20),
  firstVisit bit not null default 0,  -- own
  amountPaid money not null default 0,
  invoiceTotal money not null default 0,
  netTotal money not null default 0,
  taxTotal money not null default 0,  -- own
  surchargeTotal money not null default 0,  -- own
  vipQualifyingAmount money not null default 0,  -- own
  couponTotal money not null default 0,  -- own
  promotionTotal money not null default 0,  -- own
  priceChangeTotal money not null default 0,  -- own
  accessoryTotal money not null default 0,  -- own
  prepayEnabled bit not null default 0,
  lotid int,
  dateout datetime
);
create index TicketByCustomer on Ticket (customerSequenceNumber, ticketStatus);
create index TicketByInvoice on Ticket (invoiceNumber);
create index TicketByCreated on Ticket (createdDate);
create index TicketByPromise on Ticket (storeId, ticketStatus, dueDate);

-- The customer as he was when the ticket was written, and the name and place of somebody who collects. The
-- whole name follows from its parts.
create table TicketCustomer (
  ticketNumber int not null primary key,
  customerID varchar(20),
  multiplePickup bit not null default 0,
  multiPickupCustomerName varchar(64),
  multiPickupLocation varchar(64),
  firstName varchar(64),
  middleInitial varchar(2),
  lastName varchar(64),
  employer varchar(64),
  billingAddress1 varchar(64),
  billingAddress2 varchar(64),
  billingAddress3 varchar(64),
  billingCity varchar(64),
  billingState varchar(2),
  billingZipCode varchar(10),
  MainAreaCode varchar(3),
  MainPhone varchar(10),
  shippingAddress1 varchar(64),
  shippingAddress2 varchar(64),
  shippingAddress3 varchar(64),
  shippingCity varchar(64),
  shippingState varchar(2),
  shippingZipCode varchar(10),
  AltAreaCode varchar(3),
  AltPhone varchar(10),
  email varchar(128),
  customername as convert(varchar(128), ltrim(rtrim(isnull(firstName, '') + ' ' + isnull(lastName, ''))))
);

-- A line of a ticket: garment, descriptor, charge, discount, surcharge or tax. The two columns called
-- percent hold amounts.
create table TicketLineItem (
  ticketNumber int not null,
  lineItemNumber int not null,
  createdByEmployeeID int,
  lastModifiedByEmployeeID int,
  parentLineNumber int not null default -1,
  displaySequence int not null default 0,
  departmentID int,
  departmentName varchar(64),
  ticketLineType varchar(20),
  lineItemID int,
  saleOnly bit,
  lineItemName varchar(64),
  originalUnitPrice money,
  unitPrice money,
  quantity int,
  lineItemTotal money not null default 0,
  totalTaxPercent money,
  totalSurchargePercent money,
  lineItemTaxableAmount money not null default 0,
  itemNotes varchar(255),
  outsideService bit not null default 0,
  totalUpchargeAmount money,
  chargeTaxCode int,
  packagedQuantity int,
  daysToProcess int,
  dueDate datetime,
  priceLater bit not null default 0,
  promptResponse varchar(255),
  redo bit not null default 0,
  prepaydiscount money not null default 0,
  invoicenumber varchar(20) not null default '',
  pickedup bit not null default 0,
  heatseal varchar(20)
);
create index TicketLineItemByTicket on TicketLineItem (ticketNumber, lineItemNumber);
create index TicketLineItemByItem on TicketLineItem (lineItemID, ticketLineType);

-- What was changed on a stored ticket: A added, D deleted, C quantity changed, O price overridden.
create table TicketLogItem (
  ticketLogItemID int identity primary key,  -- own
  ticketNumber int,
  logDate datetime,
  logType varchar(2),
  quantity int,
  deptName varchar(64),
  itemName varchar(64),
  amount money
);
create index TicketLogItemByTicket on TicketLogItem (ticketNumber);

-- What happened to a ticket, by whom: R released to the customer, M modified.
create table ticketlog (
  ticketlogid int identity primary key,  -- own
  ticketnumber int,
  logdate datetime,
  logtype varchar(2),
  employeename varchar(64)
);
create index ticketlogByTicket on ticketlog (ticketnumber);

-- A paper tag of a ticket.
create table TicketTag (
  ticketNumber int not null,
  tagNumber varchar(20),
  tagNumberType varchar(1),
  tagColor varchar(20),
  lotNumber varchar(20)
);
create index TicketTagByTicket on TicketTag (ticketNumber);

-- The customer of a ticket with a free re-clean, for the person who calls him. Filled by position.
create table redoCust (
  customerid varchar(20),
  firstname varchar(64),
  lastname varchar(64),
  billingAddress1 varchar(64),
  billingAddress2 varchar(64),
  billingAddress3 varchar(64),
  billingCity varchar(64),
  billingState varchar(2),
  billingZipCode varchar(10),
  mainPhone varchar(20),
  shippingAddress1 varchar(64),
  shippingAddress2 varchar(64),
  shippingAddress3 varchar(64),
  shippingCity varchar(64),
  shippingState varchar(2),
  shippingZipCode varchar(10),
  email varchar(128),
  invoiceNumber varchar(20)
);

-- A place on the rack where pieces of a ticket hang.
create table rackassignment (
  rackassignmentid int identity primary key,  -- own
  ticketnumber int,
  racklocation varchar(20)  -- own
);
create index rackassignmentByTicket on rackassignment (ticketnumber);

-- A garment that is known by its heat seal.
create table taggeditem (
  taggedItemID int identity primary key,
  OccupationPercent int,
  PriceListItemID int
);

-- A heat seal of a known garment.
create table taggedpiece (
  heatSealID varchar(20) not null,
  taggedItemID int not null
);
create index taggedpieceBySeal on taggedpiece (heatSealID);
create index taggedpieceByItem on taggedpiece (taggedItemID);

-- What a known garment looks like and what is always done to it.
create table taggeditemdescriptor (
  taggeditemid int not null,
  descriptorname varchar(64),
  descriptortype varchar(20)
);
create index taggeditemdescriptorByItem on taggeditemdescriptor (taggeditemid);

-- A known garment on a line of a ticket.
create table ticketlineitemtaggeditem (
  taggedItemID int not null,
  ticketNumber int not null,
  lineItemNumber int not null
);
create index ticketlineitemtaggeditemByTicket on ticketlineitemtaggeditem (ticketNumber);
create index ticketlineitemtaggeditemByItem on ticketlineitemtaggeditem (taggedItemID);

-- A roll of heat seals that the shop bought: the first and the last of it.
create table validheatsealranges (
  starths varchar(20) not null,
  endhs varchar(20) not null
);


-- ---------------------------------------------------------------------------------------------------
-- Payments and cards
-- ---------------------------------------------------------------------------------------------------

-- A payment as it was tendered at a terminal. The procedure that follows the insert books it and takes it out.
create table TerminalPayment (
  terminalPaymentId int identity primary key,  -- own
  terminalId int,
  paymentNumber int,
  paymentType varchar(20),
  paymentAmount money not null default 0,
  checkOrCardNumber varchar(50),
  creditCardType varchar(20),
  creditCardId int,
  creditCardExpirydate varchar(10),
  approvalCode varchar(50),
  transactionNumber varchar(50),
  totalCashPayment money,
  signatureID int
);
create index TerminalPaymentByTerminal on TerminalPayment (terminalId);

-- An approved card sale and how much of it has been used.
create table cardpayment (
  transactionid varchar(50) not null primary key,
  customersequencenumber int,  -- own
  amount money not null default 0,  -- own
  amountapplied money
);

-- A gift card and what is left on it.
create table GIFTCARD (
  giftCardId int not null primary key,
  giftValue money not null default 0,
  lastUsedDate datetime
);

-- Somebody other than the customer who collected without a receipt.
create table claimReceipt (
  claimReceiptId int identity primary key,  -- own
  name varchar(128),
  relationship varchar(64),
  identificationType varchar(64),
  identification varchar(64),
  phoneNumber varchar(20),
  note varchar(255)
);

-- A request to the card program, and its answer once there is one.
create table XChargeTransaction (
  TransactionGUID varchar(50) not null primary key,
  RequestFile varchar(255),
  terminalid int,
  clerk varchar(50),
  receipt varchar(50),
  amount money,
  customerSequenceNumber int,
  answer varchar(255),
  dateAnswered datetime
);

-- A charge of a batch. Stage: 1 with the card program, 2 lost, 3 approved, -2 refused, 0 booked, -3 withdrawn.
create table PaymentBatch (
  paymentBatchId int identity primary key,  -- own
  BatchID int,
  CustomerSequenceNumber int,
  EmployeeInitiated int,
  CustomerName varchar(128),
  AccountNumber varchar(50),
  ExpirationDate varchar(10),
  TransactionAmount money not null default 0,
  TransactionGUID varchar(50),
  Stage int not null default 1,
  Answer varchar(255)
);
create index PaymentBatchByBatch on PaymentBatch (BatchID, Stage);
create index PaymentBatchByGuid on PaymentBatch (TransactionGUID);

-- A card on file. Its id is the number that the card program gave it, or the card number itself. A card that
-- is put on file again has another row; changes and deletions by its id concern all of them.
create table xcaccount (
  xcaccountid varchar(50),
  customersequencenumber int,
  recurring bit not null default 1,
  cardtype varchar(50),
  accountnumber varchar(50),
  expiration varchar(10)
);
create index xcaccountById on xcaccount (xcaccountid);

-- A card brand that a shop takes.
create table creditcardtypedomain (
  storeid int not null,
  name varchar(50) not null,
  creditCardTypeID int not null
);
create index creditcardtypedomainByName on creditcardtypedomain (storeid, name);


-- ---------------------------------------------------------------------------------------------------
-- A shop's day
-- ---------------------------------------------------------------------------------------------------

-- The version of the tables, one row.
create table SchemaVersion (  -- own
  version int not null,
  changedDate datetime
);

-- What was done at the counter to a ticket (ticketNumber), a customer or the shop's own data, by whom. kind is
-- rack, off, out, void, refund, copy, credit, customer, merge, setup, told.
create table ShopLog (  -- own
  shopLogId int identity primary key,
  logDate datetime,
  storeId int,
  terminalId int,
  employeeId int,
  employeeName varchar(64),
  kind varchar(20),
  ticketNumber int,
  customerSequenceNumber int,
  amount money,
  detail varchar(255)
);
create index ShopLogByTicket on ShopLog (ticketNumber);
create index ShopLogByCustomer on ShopLog (customerSequenceNumber);

-- A place of the rack or a slot of the conveyor that a shop has.
create table RackPlace (  -- own
  storeId int not null,
  place varchar(20) not null,
  isSlot bit not null default 0,
  unique (storeId, place)
);

-- A piece of a ticket that was seen at assembly, by its tag or heat seal.
create table PieceScan (  -- own
  ticketNumber int not null,
  code varchar(20) not null,
  scanDate datetime,
  unique (ticketNumber, code)
);

-- A message to a customer about a ticket; reason is ready, late or statement. Each is queued once.
create table CustomerMessage (  -- own
  messageId int identity primary key,
  storeId int,
  customerSequenceNumber int,
  ticketNumber int not null default 0,
  reason varchar(20) not null default '',
  channel varchar(10),
  address varchar(128),
  body varchar(255),
  queuedDate datetime,
  takenDate datetime,
  sentDate datetime,
  problem varchar(255),
  unique (ticketNumber, reason, channel)
);
create index CustomerMessageBySent on CustomerMessage (storeId, sentDate);

-- The drawer of a terminal from its float to its count. What was paid there lies between two payments' numbers.
create table DrawerPeriod (  -- own
  drawerPeriodId int not null primary key,
  storeId int,
  terminalId int,
  openedDate datetime,
  openedBy int,
  floatAmount money not null default 0,
  firstPaymentId int not null default 0,
  lastPaymentId int,
  firstPickupId int not null default 0,
  lastPickupId int,
  firstRefundId int not null default 0,
  lastRefundId int,
  closedDate datetime,
  closedBy int,
  countedAmount money,
  expectedAmount money,
  countedChecks money,
  zNumber int,
  unique (storeId, zNumber)
);
create index DrawerPeriodByTerminal on DrawerPeriod (terminalId, closedDate);

-- Cash that went into a drawer or out of it without a sale. entryType is I in, O out, X given back on a check. Without a
-- period it was before the drawer was opened, and goes to the next one of its terminal.
create table DrawerEntry (  -- own
  drawerEntryId int identity primary key,
  drawerPeriodId int,
  terminalId int,
  entryType varchar(1),
  amount money not null default 0,
  reason varchar(128),
  entryDate datetime,
  employeeId int
);
create index DrawerEntryByPeriod on DrawerEntry (drawerPeriodId);

-- What a closed drawer's report says, line by line. Nothing changes a row once it is there.
create table DrawerReport (  -- own
  drawerPeriodId int not null,
  position int not null,
  section varchar(20),
  name varchar(64),
  pieces int,
  amount money,
  primary key (drawerPeriodId, position)
);

-- Money given back on a ticket. Payment has the same amount below nothing.
create table Refund (  -- own
  refundId int identity primary key,
  ticketNumber int,
  customerSequenceNumber int,
  storeId int,
  terminalId int,
  employeeId int,
  refundDate datetime,
  amount money not null default 0,
  taxAmount money not null default 0,
  paymentType varchar(20),
  reason varchar(128),
  isVoid bit not null default 0
);
create index RefundByTicket on Refund (ticketNumber);
create index RefundByDate on Refund (refundDate);


-- ---------------------------------------------------------------------------------------------------
-- Books of the procedures
-- ---------------------------------------------------------------------------------------------------

-- The next number to hand out: TICKET over all shops (store 0), INVOICE and TAG per shop.
create table NumberCounter (  -- own
  storeId int not null,
  counterName varchar(20) not null,
  nextNumber int not null default 1
);
create index NumberCounterByName on NumberCounter (counterName, storeId);

-- Money booked: the part of a payment that went to one ticket, or with no ticket to the account.
create table Payment (  -- own
  paymentId int identity primary key,
  paymentDate datetime,
  paymentAction varchar(20),
  storeId int,
  terminalId int,
  employeeId int,
  customerSequenceNumber int,
  ticketNumber int,
  paymentType varchar(20),
  paymentAmount money not null default 0,
  checkOrCardNumber varchar(50),
  creditCardType varchar(20),
  creditCardId int,
  creditCardExpirydate varchar(10),
  approvalCode varchar(50),
  transactionNumber varchar(50),
  signatureId int,
  claimReceiptId int
);
create index PaymentByTicket on Payment (ticketNumber);
create index PaymentByCustomer on Payment (customerSequenceNumber, paymentDate);

-- A ticket handed out: when, by whom, against which signature or claim.
create table TicketPickup (  -- own
  ticketPickupId int identity primary key,
  ticketNumber int,
  pickupDate datetime,
  storeId int,
  terminalId int,
  employeeId int,
  customerSequenceNumber int,
  amountPaid money not null default 0,
  signatureId int,
  pickupReceipt int,
  claimReceiptId int
);
create index TicketPickupByTicket on TicketPickup (ticketNumber);

-- A charge or credit on a customer's account that no ticket stands for. chargeType is C credit, D debit.
create table MiscCharge (  -- own
  miscChargeId int identity primary key,
  storeId int,
  employeeId int,
  customerSequenceNumber int,
  chargeType varchar(1),
  amount money not null default 0,
  chargeDate datetime,
  description varchar(255),
  chargeStatus varchar(1),
  terminalId int,
  active bit not null default 1
);
create index MiscChargeByCustomer on MiscCharge (customerSequenceNumber);

-- A message that waits for the conveyor.
create table ConveyorQueue (  -- own
  conveyorQueueId int identity primary key,
  action varchar(20),
  ticketNumber int,
  queuedDate datetime
);
