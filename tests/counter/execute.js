// Executes each statement that is an argument.
for (var k = 0; k < arguments.length; ++k) Database.execute(arguments[k]);
