// A letter to two customers, printed into the spool folder. Put the template and the list of addressees in place first:
//
//   export ONDREL_DRIVES=/tmp/drives
//   folder="$ONDREL_DRIVES/c/program files/ondrelcorp/ovsserver/web/marketing letters"
//   mkdir -p "$folder" && cp examples/letters/* "$folder"
//   scripts/ondrel run examples/letters.js
//   ls "$ONDREL_DRIVES/c/program files/ondrelcorp/ovsserver/spool"

var letters = CreateObject("OndrelCorpComponents.MarketingLetters");
letters.mailMergeLetterToPrinter("thank_you.rtf", "addressees.csv");
var missing = [letters.fullFileName, letters.fullDataSourceName].filter(function (file) { return !letters.FileExists(file); });
if (missing.length > 0) print("nothing was printed; these files are not in place:\n  " + missing.join("\n  "));
else print("printed " + letters.fullFileName + "\nto the addressees of " + letters.fullDataSourceName);
