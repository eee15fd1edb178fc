// The lines of an invoice as plain rows, to be put back or into another invoice.
exports.take = function(table) {
  var rows = table.Clone(), fields = [], names = [], all = [];
  rows.Filter = 0;
  for (var at = 0; at < rows.Fields.Count; at++) {
    fields.push(rows.Fields(at));
    names.push(rows.Fields(at).Name);
  }
  for (; !rows.EOF; rows.MoveNext()) all.push(fields.map(function(field) { return field.Value; }));
  return { names: names, rows: all };
};

exports.put = function(table, taken) {
  table.Filter = 0;
  if (!(table.BOF && table.EOF)) {
    for (table.MoveFirst(); !table.EOF; table.MoveNext()) table.Delete();
  }
  taken.rows.forEach(function(row) { table.AddNew(taken.names, row); });
};
