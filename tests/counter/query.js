// Prints the first column of every row of the query that is its argument.
var rows = Database.query(arguments[0]);
for (; !rows.EOF; rows.MoveNext()) print(rows.Fields(0).Value);
