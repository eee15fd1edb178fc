#include "data/odbc/odbc_target.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/error_of.h"

namespace ondrel {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

OdbcMachine machineWith(std::vector<std::string> drivers) {
  return {std::move(drivers),
          [](std::string_view source, std::string_view key) -> std::string {
            if (key == "Driver")
              return source == "till"    ? ""
                     : source == "other" ? "x"
                     : source == "named" ? "TDS"
                                         : "/usr/lib/libtdsodbc.so";
            if (key == "Encrypt") return source == "secret" ? "strict" : source == "named" ? "yes" : "";
            if (source == "shop" && key == "PWD") return "of the source";
            return source == "dumping" && key == "querylog_on" ? "Y"
                   : source == "shop" && key == "trace"        ? "No"
                                                               : "";
          },
          [](std::string_view driver) {
            const bool isFreeTds = driver == "TDS" || driver == "SQL Server";
            return isFreeTds ? "/usr/lib/libtdsodbc.so" : driver == "Till" ? "/opt/libmsodbcsql-18.so" : "";
          }};
}

const OdbcMachine kFreeTds = machineWith({"SQLite3", "ODBC Driver 18 for SQL Server", "FreeTDS"});
const OdbcMachine kMaker = machineWith({"ODBC Driver 17 for SQL Server", "ODBC Driver 18 for SQL Server"});

std::string textOf(const std::string& given, const OdbcMachine& machine = kFreeTds) {
  return odbcTarget({given, "", "", nullptr}, machine).text;
}

using Cases = std::pair<const char*, const char*>[];

// clang-format off
TEST(OdbcTarget, WithFreeTds) {
  const Cases cases = {
      // strings of OLE DB, with the forms of a server
      {"Provider=SQLOLEDB.1;Data Source=till;Initial Catalog=Shop;User ID=sa;Password=x y;Persist Security Info=True",
       "Driver=FreeTDS;ClientCharset=UTF-8;Server=till;Port=1433;Database=Shop;UID=sa;PWD=x y;"},
      {"provider=sqlncli11;DATA SOURCE=tcp:till , 1500;integrated security=SSPI",
       "Driver=FreeTDS;ClientCharset=UTF-8;Server=till;Port=1500;Trusted_Connection=yes;"},
      {"Provider=SQLOLEDB;Data Source=.\\SHOPS;Use Encryption for Data=True;Application Name=counter",
       "Driver=FreeTDS;ClientCharset=UTF-8;Server=localhost\\SHOPS;Encryption=require;APP=counter;"},
      // quotes enclose and the last of two counts
      {"Provider=SQLOLEDB;Data Source=a;Data Source=b;Password=\"a;\"\"b'\"",
       "Driver=FreeTDS;ClientCharset=UTF-8;Server=b;Port=1433;PWD={a;\"b'};"},
      // strings of ODBC: braces enclose and the first counts
      {"Driver={FreeTDS};Server=till;Port=1500;Server=b;UID={s;a};PWD='q';TDS_Version=7.4;Encrypt=yes",
       "Driver=FreeTDS;ClientCharset=UTF-8;Server=till;Port=1500;UID={s;a};PWD='q';Encryption=require;TDS_Version=7.4;"},
      {"DRIVER={SQL Server};SERVER=till,1500;PWD={a}}b};Trusted_Connection=no;ClientCharset=CP1252;",
       "Driver=FreeTDS;ClientCharset=UTF-8;Server=till;Port=1500;PWD={a}b};"},
      {"Driver=/opt/libtdsodbc.so;Server=till;PWD=\xC3\xA4",
       "Driver=/opt/libtdsodbc.so;ClientCharset=UTF-8;Server=till;Port=1433;PWD=\xE4;"},
      // data sources
      {"Data Source=shop;User ID=sa", "DSN=shop;ClientCharset=UTF-8;UID=sa;"},
      {"Data Source=till;User ID=sa", "Driver=FreeTDS;ClientCharset=UTF-8;Server=till;Port=1433;UID=sa;"},
      {"Driver=FreeTDS;Server=till;Trace=No;QueryLog_On=off;DumpFile=", "Driver=FreeTDS;ClientCharset=UTF-8;Server=till;Port=1433;"},
      {"named", "DSN=named;ClientCharset=UTF-8;Encryption=require;"},
      {"DSN=named;Encrypt=no", "DSN=named;ClientCharset=UTF-8;"},
      // drivers under names of the shop's own
      {"Driver={TDS};Server=till;Encrypt=yes", "Driver=TDS;ClientCharset=UTF-8;Server=till;Port=1433;Encryption=require;"},
      {"Driver={Till};Server=till,1500;Encrypt=yes", "Driver=Till;Server=till,1500;Encrypt=yes;"},
      {"Provider=MSDASQL;Extended Properties=\"DSN=shop;Database=S;UID=sa\"", "DSN=shop;ClientCharset=UTF-8;Database=S;UID=sa;"},
      // of another store: as they stand, but for what is ours
      {"Driver=SQLite3;Database=/a b.db;Timeout=5;Pooling=no;Max Pool Size=3;PWD={;};", "Driver=SQLite3;Database=/a b.db;Timeout=5;PWD={;};"},
      {"DSN=other;Server=tcp:a,1", "DSN=other;Server=tcp:a,1;"},
  };
  for (const auto& [given, text] : cases) EXPECT_EQ(textOf(given), text) << given;
  // under the name of the maker's
  EXPECT_EQ(textOf("Driver={SQL Server};Server=till;Encrypt=yes", machineWith({"SQL Server"})),
            "Driver=SQL Server;ClientCharset=UTF-8;Server=till;Port=1433;Encryption=require;");
}

TEST(OdbcTarget, WithTheMakersDriver) {
  const Cases cases = {
      {"Provider=SQLOLEDB;Data Source=till;Initial Catalog=Shop;User ID=sa;Password=a}b",
       "Driver=ODBC Driver 18 for SQL Server;Server=till;Database=Shop;UID=sa;PWD={a}}b};"},
      {"Driver={ODBC Driver 17 for SQL Server};Server=tcp:till\\S,1500;Encrypt=yes;TrustServerCertificate=yes",
       "Driver=ODBC Driver 17 for SQL Server;Server=till,1500;Encrypt=yes;TrustServerCertificate=yes;"},
      {"Driver={SQL Server Native Client 11.0};Server=till\\S;Trusted_Connection=Yes;MARS_Connection=yes",
       "Driver=ODBC Driver 18 for SQL Server;Server=till\\S;Trusted_Connection=yes;"},
  };
  for (const auto& [given, text] : cases) EXPECT_EQ(textOf(given, kMaker), text) << given;
}
// clang-format on

TEST(OdbcTarget, TellsErrorsWithoutValues) {
  struct Refusal {
    const char* given;
    ErrorNumber number;
    const char* reason;
  };
  // clang-format off
  const Refusal cases[] = {
      {"", ErrorNumber::ProviderFailure, "DBConnectionString is not set"},
      {"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=secret", ErrorNumber::ProviderFailure, "Provider cannot be found"},
      {"Provider=SQLOLEDB;Data Source=np:secret", ErrorNumber::ProviderFailure, "by TCP only"},
      {"Driver=FreeTDS;Server=x;Encrypt=yess", ErrorNumber::InvalidArgument, "neither yes nor no"},
      {"Provider=SQLOLEDB;Data Source=x;Encrypt={yes}", ErrorNumber::InvalidArgument, "neither yes nor no"},
      {"Driver=FreeTDS;Server=x;Encrypt=strict", ErrorNumber::ProviderFailure, "no strict"},
      {"DSN=secret", ErrorNumber::ProviderFailure, "no strict"},
      {"UID=secret;PWD=secret", ErrorNumber::ProviderFailure, "neither a driver"},
      {"Driver={FreeTDS;PWD=secret", ErrorNumber::InvalidArgument, "value of Driver"},
      {"Provider=SQLOLEDB;Data Source=x;Password='secret", ErrorNumber::InvalidArgument, "value of Password"},
      {"Driver=FreeTDS;Server=x;PWD={secret}};}", ErrorNumber::InvalidArgument, "value of PWD"},
      {"Driver=FreeTDS;Server=x;PWD=secret\xE2\x82\xAC", ErrorNumber::InvalidArgument, "a character"},
      {"Driver=FreeTDS;Server=x;Max Pool Size=secret", ErrorNumber::InvalidArgument, "Max Pool Size"},
      {"Driver=FreeTDS;Server=x;DumpFile=/secret", ErrorNumber::ConnectionFailed, "DumpFile is refused"},
      {"FILEDSN=/secret", ErrorNumber::ConnectionFailed, "FILEDSN is refused"},
      {"DSN=shop;SaveFile=/secret", ErrorNumber::ConnectionFailed, "SaveFile is refused"},
      {"DSN=dumping;PWD=secret", ErrorNumber::ConnectionFailed, "querylog_on of the data source dumping"},
  };
  // clang-format on
  for (const Refusal& each : cases) {
    const auto action = [&] { textOf(each.given); };
    EXPECT_EQ(errorOf(action), static_cast<int>(each.number)) << each.given;
    EXPECT_THAT(descriptionOf(action), AllOf(HasSubstr(each.reason), Not(HasSubstr("secret"))));
  }
  EXPECT_THROW(textOf("Provider=SQLOLEDB;Data Source=x", machineWith({"SQLite3"})), Error);
}

TEST(OdbcTarget, KnowsThePasswordAndThePool) {
  const OdbcTarget plain = odbcTarget({"Driver=FreeTDS;Server=x;UID=a;PWD=b", "sa", "s3", nullptr}, kFreeTds);
  EXPECT_EQ(plain.text, "Driver=FreeTDS;ClientCharset=UTF-8;Server=x;Port=1433;UID=sa;PWD=s3;");
  EXPECT_EQ(plain.password, "s3");
  EXPECT_EQ(plain.pool, PoolSettings());
  EXPECT_EQ(odbcTarget({"DSN=shop", "", "", nullptr}, kFreeTds).password, "of the source");
  const OdbcTarget tuned = odbcTarget(
      {"DSN=shop;Pooling=false;Max Pool Size=7;Pool Idle Time=0;Connect Timeout=4", "", "", nullptr},
      kFreeTds);
  EXPECT_EQ(tuned.pool, (PoolSettings{false, 7, 0, 4}));
  EXPECT_EQ(tuned.loginSeconds, 4);
}

}  // namespace
}  // namespace ondrel
