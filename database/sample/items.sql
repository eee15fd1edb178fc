-- Items by department. Item ids begin with the department's number.
--
-- Columns in short: price; qtyInInventory is the pieces of one unit (a suit is two); prepayDiscount is taken
-- off per unit when the customer pays at drop-off; prepayPercent is the share of the price that must be paid.
-- Unless a block says otherwise an item is discountable in all three ways and counts for the VIP sum.
--
-- Special cases: 107 prints its note; 109 takes no coupon; 110 takes no promotion; 112 gives no VIP discount;
-- 121 and 508 are priced later; 122 takes no discount at all; 123 wants an upcharge; 125 wants a color and a
-- pattern; 124 is disabled; 151 is sold in a pack of six; 205 does not count for the VIP sum; 208 takes no
-- coupon; 406 and all leather goes to an outside service; items 7xx are free. Laundry (3xx) is untaxed.

-- Dry cleaning, three days.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, commonitem, promptforupcharge, promptfordescriptors, displaysequence, imageFileName) values
  (101, 1, 'Pants',         8.00, 3, 1, 0.50, null, 1, 1, 1,  10, 'pants.png'),
  (102, 1, 'Jacket',        9.00, 3, 1, 0.50, null, 1, 1, 1,  20, 'jacket.png'),
  (103, 1, 'Suit 2-Piece', 16.00, 3, 2, 1.00, null, 1, 1, 1,  30, 'suit_2_piece.png'),
  (104, 1, 'Suit 3-Piece', 20.00, 3, 3, 1.25, null, 0, 0, 0,  40, 'suit_3_piece.png'),
  (105, 1, 'Skirt',         8.00, 3, 1, 0.50, null, 0, 1, 0,  50, 'skirt.png'),
  (106, 1, 'Dress',        14.00, 3, 1, 0.75, null, 1, 1, 1,  60, 'dress.png'),
  (108, 1, 'Blouse',        7.50, 3, 1, 0.50, null, 1, 1, 0,  70, 'blouse.png'),
  (111, 1, 'Raincoat',     17.00, 3, 1, 0.00, null, 0, 1, 0,  80, 'raincoat.png'),
  (113, 1, 'Vest',          6.00, 3, 1, 0.00, null, 0, 0, 0,  90, 'vest.png'),
  (114, 1, 'Tuxedo',       22.00, 3, 2, 1.50,   25, 0, 0, 0, 100, 'tuxedo.png'),
  (115, 1, 'Sport Coat',    9.50, 3, 1, 0.50, null, 0, 0, 0, 110, 'sport_coat.png'),
  (116, 1, 'Silk Shirt',    7.00, 3, 1, 0.00, null, 0, 0, 0, 120, 'silk_shirt.png'),
  (117, 1, 'Scarf',         5.00, 3, 1, 0.00, null, 0, 0, 0, 130, 'scarf.png'),
  (118, 1, 'Down Jacket',  24.00, 4, 1, 0.00, null, 0, 0, 0, 140, 'down_jacket.png'),
  (119, 1, 'Robe',         11.00, 3, 1, 0.00, null, 0, 0, 0, 150, 'robe.png'),
  (120, 1, 'Jumpsuit',     13.33, 3, 1, 0.00, null, 0, 0, 0, 160, null);

-- Dry cleaning, the special ones.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, displaysequence, discountable, couponable, VIPDiscountable, VIPQualified, priceLater, forcecolor, forcepattern, forceupcharge, disabled, printNotes, notes, imageFileName) values
  (107, 1, 'Evening Gown',     35.00,  5, 1, 2.00,   50, 170, 1, 1, 1, 1, 0, 0, 0, 0, 0, 1, 'Check beads and sequins', 'evening_gown.png'),
  (109, 1, 'Sweater',           7.95,  3, 1, 0.50, null, 180, 1, 0, 1, 1, 0, 0, 0, 0, 0, 0, null,                      'sweater.png'),
  (110, 1, 'Overcoat',         18.00,  3, 1, 1.00, null, 190, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0, null,                      'overcoat.png'),
  (112, 1, 'Necktie',           4.25,  3, 1, 0.00, null, 200, 1, 1, 0, 1, 0, 0, 0, 0, 0, 0, null,                      'necktie.png'),
  (121, 1, 'Wedding Dress',     0.00, 10, 1, 0.00, null, 210, 1, 1, 1, 1, 1, 0, 0, 0, 0, 1, 'Price after inspection',  'wedding_dress.png'),
  (122, 1, 'Military Uniform', 12.00,  3, 2, 0.00, null, 220, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 'Remove insignia',         'military_uniform.png'),
  (123, 1, 'Pleated Skirt',    12.00,  3, 1, 0.75, null, 230, 1, 1, 1, 1, 0, 0, 0, 1, 0, 0, null,                      'pleated_skirt.png'),
  (124, 1, 'Costume',          15.00,  3, 1, 0.00, null, 240, 1, 1, 1, 1, 0, 0, 0, 0, 1, 0, null,                      'costume.png'),
  (125, 1, 'Linen Suit',       18.00,  3, 2, 1.00, null, 250, 1, 1, 1, 1, 0, 1, 1, 0, 0, 0, null,                      'linen_suit.png');

-- Sold over the counter: no cleaning, no days.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, saleOnly, discountable, couponable, VIPDiscountable, VIPQualified, displaysequence) values
  (150, 1, 'Garment Bag',    5.00, 0,    1, 1, 0, 0, 0, 0, 300),
  (151, 1, 'Cedar Hangers', 12.00, 0,    6, 1, 0, 0, 0, 0, 310),
  (152, 1, 'Lint Brush',     4.99, 0, null, 1, 0, 1, 0, 0, 320);

-- Shirts, two days.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, commonitem, promptforupcharge, promptfordescriptors, displaysequence, imageFileName) values
  (201, 2, 'Shirt on Hanger', 2.50, 2, 1, 0.25, null, 1, 1, 1, 10, 'shirt_on_hanger.png'),
  (202, 2, 'Shirt Folded',    3.00, 2, 1, 0.25, null, 1, 1, 0, 20, 'shirt_folded.png'),
  (203, 2, 'Tuxedo Shirt',    5.00, 2, 1, 0.25, null, 0, 1, 0, 30, 'tuxedo_shirt.png'),
  (204, 2, 'Polo Shirt',      4.00, 2, 1, 0.25, null, 0, 0, 0, 40, 'polo_shirt.png'),
  (206, 2, 'Chef Coat',       6.50, 2, 1, 0.00, null, 0, 0, 0, 50, 'chef_coat.png'),
  (207, 2, 'Child Shirt',     1.75, 2, 1, 0.00, null, 0, 0, 0, 60, 'child_shirt.png');

insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, couponable, VIPQualified, displaysequence, imageFileName) values
  (205, 2, 'Lab Coat',      6.00, 2, 1, 0.25, 1, 0, 70, 'lab_coat.png'),
  (208, 2, 'Uniform Shirt', 2.25, 2, 1, 0.00, 0, 1, 80, 'uniform_shirt.png');

-- Laundry, two days.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, commonitem, promptforupcharge, promptfordescriptors, displaysequence, imageFileName) values
  (301, 3, 'Wash and Fold Bag', 20.00, 2, 1, 1.00, null, 1, 0, 0, 10, 'wash_and_fold_bag.png'),
  (302, 3, 'Bed Sheet',          4.00, 2, 1, 0.00, null, 0, 0, 0, 20, 'bed_sheet.png'),
  (303, 3, 'Sheet Set',         12.00, 2, 3, 0.00, null, 0, 0, 0, 30, 'sheet_set.png'),
  (304, 3, 'Pillowcase',         1.50, 2, 1, 0.00, null, 0, 0, 0, 40, 'pillowcase.png'),
  (305, 3, 'Towel',              1.25, 2, 1, 0.00, null, 0, 0, 0, 50, 'towel.png'),
  (306, 3, 'Tablecloth',         9.00, 2, 1, 0.00, null, 0, 0, 0, 60, 'tablecloth.png'),
  (307, 3, 'Napkin',             0.85, 2, 1, 0.00, null, 0, 0, 0, 70, 'napkin.png'),
  (308, 3, 'Apron',              3.00, 2, 1, 0.00, null, 0, 0, 0, 80, 'apron.png');

-- Household, five days. A pair of curtains is two pieces.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, commonitem, promptforupcharge, promptfordescriptors, displaysequence, imageFileName) values
  (401, 4, 'Comforter',        30.00, 5, 1, 2.00, null, 1, 1, 1, 10, 'comforter.png'),
  (402, 4, 'Blanket',          18.00, 5, 1, 1.00, null, 1, 0, 0, 20, 'blanket.png'),
  (403, 4, 'Bedspread',        28.00, 5, 1, 1.50, null, 0, 0, 0, 30, 'bedspread.png'),
  (404, 4, 'Drapes per Pleat',  2.75, 5, 1, 0.00, null, 0, 0, 0, 40, 'drapes_per_pleat.png'),
  (405, 4, 'Curtain Pair',     25.00, 5, 2, 0.00, null, 0, 0, 0, 50, 'curtain_pair.png'),
  (407, 4, 'Sleeping Bag',     22.00, 5, 1, 0.00, null, 0, 0, 0, 60, 'sleeping_bag.png'),
  (408, 4, 'Pillow',           14.00, 5, 1, 0.00, null, 0, 0, 0, 70, 'pillow.png'),
  (409, 4, 'Slipcover',        20.00, 5, 1, 0.00, null, 0, 0, 0, 80, 'slipcover.png'),
  (410, 4, 'Quilt',            40.00, 5, 1, 0.00,   20, 0, 0, 0, 90, 'quilt.png');

-- Sent out: the pack size is left open, which counts as one.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, outsideService, prepayPercent, displaysequence, imageFileName) values
  (406, 4, 'Area Rug', 45.00, 10, 1, 30, 100, 'area_rug.png');

-- Alterations, four days.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, commonitem, promptforupcharge, promptfordescriptors, displaysequence, imageFileName) values
  (501, 5, 'Hem Pants',       10.00, 4, 1, 0.00, null, 1, 0, 0, 10, 'hem_pants.png'),
  (502, 5, 'Shorten Sleeves', 15.00, 4, 1, 0.00, null, 0, 0, 0, 20, 'shorten_sleeves.png'),
  (503, 5, 'Replace Zipper',  12.00, 4, 1, 0.00, null, 0, 0, 0, 30, 'replace_zipper.png'),
  (504, 5, 'Take In Waist',   14.00, 4, 1, 0.00, null, 0, 0, 0, 40, 'take_in_waist.png'),
  (505, 5, 'Replace Button',   1.00, 4, 1, 0.00, null, 0, 0, 0, 50, 'replace_button.png'),
  (506, 5, 'Repair Seam',      6.00, 4, 1, 0.00, null, 0, 0, 0, 60, 'repair_seam.png'),
  (507, 5, 'Patch',            8.00, 4, 1, 0.00, null, 0, 0, 0, 70, 'patch.png');

insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, priceLater, displaysequence) values
  (508, 5, 'Custom Alteration', 0.00, 7, 1, 80);

-- Leather, sent out, two weeks, a quarter of the price ahead.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, outsideService, prepayPercent, displaysequence, imageFileName) values
  (601, 6, 'Leather Jacket', 55.00, 14, 1, 1, 25, 10, 'leather_jacket.png'),
  (602, 6, 'Leather Pants',  50.00, 14, 1, 1, 25, 20, 'leather_pants.png'),
  (603, 6, 'Suede Jacket',   60.00, 14, 1, 1, 25, 30, 'suede_jacket.png'),
  (604, 6, 'Leather Skirt',  40.00, 14, 1, 1, 25, 40, 'leather_skirt.png'),
  (605, 6, 'Fur Collar',     25.00, 14, 1, 1, 25, 50, 'fur_collar.png'),
  (606, 6, 'Leather Gloves', 18.00, 14, 2, 1, 25, 60, 'leather_gloves.png');

-- Redo, free.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, displaysequence, discountable, couponable, VIPDiscountable, VIPQualified) values
  (701, 7, 'Redo Garment',   0.00, 2, 10, 0, 0, 0, 0),
  (702, 7, 'Redo Shirt',     0.00, 1, 20, 0, 0, 0, 0),
  (703, 7, 'Redo Household', 0.00, 4, 30, 0, 0, 0, 0);

-- Of the disabled department.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, commonitem, promptforupcharge, promptfordescriptors, displaysequence, imageFileName) values
  (801, 8, 'Fur Coat', 75.00, 30, 1, 0.00, null, 0, 0, 0, 10, 'fur_coat.png');

-- Corporate list.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, commonitem, promptforupcharge, promptfordescriptors, displaysequence, imageFileName) values
  (2101, 21, 'Pants',         7.00, 4, 1, 0.00, null, 1, 0, 0, 10, 'pants.png'),
  (2102, 21, 'Jacket',        8.00, 4, 1, 0.00, null, 1, 0, 0, 20, 'jacket.png'),
  (2103, 21, 'Suit 2-Piece', 14.00, 4, 2, 0.00, null, 1, 0, 0, 30, 'suit_2_piece.png'),
  (2104, 21, 'Dress',        12.00, 4, 1, 0.00, null, 0, 0, 0, 40, 'dress.png'),
  (2105, 21, 'Blouse',        6.50, 4, 1, 0.00, null, 0, 0, 0, 50, 'blouse.png'),
  (2106, 21, 'Overcoat',     15.00, 4, 1, 0.00, null, 0, 0, 0, 60, 'overcoat.png');

insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, commonitem, promptforupcharge, promptfordescriptors, displaysequence, imageFileName) values
  (2201, 22, 'Uniform Shirt', 2.00, 3, 1, 0.00, null, 1, 0, 0, 10, 'uniform_shirt.png'),
  (2202, 22, 'Uniform Pants', 3.50, 3, 1, 0.00, null, 1, 0, 0, 20, 'uniform_pants.png'),
  (2203, 22, 'Uniform Set',   5.00, 3, 2, 0.00, null, 0, 0, 0, 30, 'uniform_set.png'),
  (2204, 22, 'Coverall',      6.00, 3, 1, 0.00, null, 0, 0, 0, 40, 'coverall.png'),
  (2205, 22, 'Safety Vest',   2.75, 3, 1, 0.00, null, 0, 0, 0, 50, 'safety_vest.png');

insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, commonitem, promptforupcharge, promptfordescriptors, displaysequence, imageFileName) values
  (2301, 23, 'Tablecloth', 6.00, 2, 1, 0.00, null, 0, 0, 0, 10, 'tablecloth.png'),
  (2302, 23, 'Napkin',     0.45, 2, 1, 0.00, null, 0, 0, 0, 20, 'napkin.png'),
  (2303, 23, 'Chef Coat',  4.00, 2, 1, 0.00, null, 0, 0, 0, 30, 'chef_coat.png'),
  (2304, 23, 'Bath Towel', 0.95, 2, 1, 0.00, null, 0, 0, 0, 40, 'bath_towel.png');

-- Mill Lane list.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, commonitem, promptforupcharge, promptfordescriptors, displaysequence, imageFileName) values
  (3101, 31, 'Pants',         7.50, 2, 1, 0.00, null, 1, 0, 0, 10, 'pants.png'),
  (3102, 31, 'Suit 2-Piece', 15.00, 2, 2, 0.00, null, 1, 0, 0, 20, 'suit_2_piece.png'),
  (3103, 31, 'Dress',        13.00, 2, 1, 0.00, null, 0, 0, 0, 30, 'dress.png');

insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, commonitem, promptforupcharge, promptfordescriptors, displaysequence, imageFileName) values
  (3201, 32, 'Shirt on Hanger', 2.25, 1, 1, 0.00, null, 1, 0, 0, 10, 'shirt_on_hanger.png'),
  (3202, 32, 'Shirt Folded',    2.75, 1, 1, 0.00, null, 0, 0, 0, 20, 'shirt_folded.png');

-- Of the disabled price list.
insert into PriceListItem (priceListItemId, departmentId, itemName, price, daysToProcess, qtyInInventory, prepayDiscount, prepayPercent, commonitem, promptforupcharge, promptfordescriptors, displaysequence, imageFileName) values
  (4101, 41, 'Cape', 16.00, 5, 1, 0.00, null, 0, 0, 0, 10, 'cape.png');

-- Stock of the sold items in pieces: twelve packs of hangers, three brushes.
insert into inventory (priceListItemId, quantityOnHand) values
  (150, 40),
  (151, 72),
  (152,  3);
