// Stands in for the card program: watches a folder, takes requests and leaves answers.
//
//   card_simulator FOLDER [DELAY_MS]
//
// The cents of the amount say what happens, whatever the dollars are:
//
// | cents | outcome                                                            |
// |-------|--------------------------------------------------------------------|
// | .01   | refused: "NDECLINED", or RESULT_SUCCESS F                          |
// | .02   | never answered; the request stays as .hld                          |
// | .03   | approved, ten delays late; the request stays as .xch until then    |
// | .04   | approved; half of the answer, a delay, the rest                     |
// | .05   | an answer that is neither approval nor document                    |
// | other | approved with the code "A" and six digits                          |
//
// A request goes from .req (or .xcr) through .tmp and .xch; its answer is .ans (or .xca).
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "platform/delimited_text.h"
#include "platform/xml.h"

namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

constexpr size_t kAmountField = 5;  // of a credit request; the sum of a debit request
constexpr milliseconds kLookEvery{1};

enum class CardOutcome { Approved, Refused, Silent, Late, Halved, Nonsense };

struct Request {
  fs::path base;
  bool isXml = false;
  std::string type, amount;
};

struct Simulator {
  fs::path folder;
  milliseconds delay;
  int codes = 0;

  void run();
  void take(const fs::path& file, bool isXml);
  std::string answerText(const Request& request, CardOutcome outcome);
};

std::string contentOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

fs::path withSuffix(const fs::path& base, const char* suffix) {
  return base.string() + suffix;
}

void append(const fs::path& file, const std::string& text) {
  std::ofstream(file, std::ios::binary | std::ios::app) << text;
}

CardOutcome cardOutcomeOf(const std::string& amount) {
  const size_t point = amount.find('.');
  const std::string cents = point == std::string::npos ? "00" : amount.substr(point + 1);
  if (cents == "01") return CardOutcome::Refused;
  if (cents == "02") return CardOutcome::Silent;
  if (cents == "03") return CardOutcome::Late;
  if (cents == "04") return CardOutcome::Halved;
  if (cents == "05") return CardOutcome::Nonsense;
  return CardOutcome::Approved;
}

Request requestIn(const fs::path& base, const std::string& text, bool isXml) {
  Request request{base, isXml, "", ""};
  if (isXml) {
    ondrel::XmlDocument document;
    document.loadXML(text);
    request.type = document.textOf("//XCTRANSACTION/TRANSACTION/TRANSACTIONTYPE").value_or("");
    request.amount = document.textOf("//XCTRANSACTION/TRANSACTION/AMOUNT").value_or("0.00");
    return request;
  }
  std::vector<std::string> fields;
  for (ondrel::DelimitedText values(text); !values.atEnd();) fields.push_back(values.next());
  request.type = fields.empty() ? "" : fields[0];
  request.amount = fields.size() > kAmountField ? fields[kAmountField] : "0.01";
  return request;
}

std::string Simulator::answerText(const Request& request, CardOutcome outcome) {
  const bool approves = outcome != CardOutcome::Refused;
  if (outcome == CardOutcome::Nonsense) return request.isXml ? "no document, at all" : "\"?\"\r\n";
  if (approves) ++codes;
  const std::string code = "A" + std::to_string(100000 + codes);
  if (!request.isXml) {
    return approves ? "\"Y" + code + "\"\r\n" : "\"NDECLINED\"\r\n";
  }
  std::string results =
      approves ? "<RESULT_SUCCESS>T</RESULT_SUCCESS>" : "<RESULT_SUCCESS>F</RESULT_SUCCESS>";
  results += approves ? "<RESULT_DESCRIPTION>APPROVED</RESULT_DESCRIPTION>"
                      : "<RESULT_DESCRIPTION>DECLINED</RESULT_DESCRIPTION>";
  if (request.type == "XC_SALE") results += "<RESULT_APPROVALCODE>" + code + "</RESULT_APPROVALCODE>";
  if (request.type == "XC_CCARCHIVE_ADD")
    results += "<RESULT_XCACCOUNTID>XA" + code +
               "</RESULT_XCACCOUNTID><RESULT_XACCOUNT>XXXXXXXXXXXX1111</RESULT_XACCOUNT>"
               "<RESULT_ACCOUNTTYPE>VISA</RESULT_ACCOUNTTYPE>";
  return "<?xml version=\"1.0\"?>\r\n<XCTRANSACTION><TRANSACTION>" + results +
         "</TRANSACTION></XCTRANSACTION>";
}

void Simulator::take(const fs::path& file, bool isXml) {
  fs::path base = file;
  base.replace_extension();
  const fs::path taken = withSuffix(base, ".tmp"), sent = withSuffix(base, ".xch");
  fs::rename(file, taken);
  const Request request = requestIn(base, contentOf(taken), isXml);
  const CardOutcome outcome = cardOutcomeOf(request.amount);
  if (outcome == CardOutcome::Silent) {
    fs::rename(taken, withSuffix(base, ".hld"));
    return;
  }
  fs::rename(taken, sent);
  if (outcome == CardOutcome::Late) std::this_thread::sleep_for(10 * delay);
  const std::string text = answerText(request, outcome);
  const fs::path answer = withSuffix(base, isXml ? ".xca" : ".ans");
  if (outcome == CardOutcome::Halved) {
    append(answer, text.substr(0, text.size() / 2));
    std::this_thread::sleep_for(delay);
    append(answer, text.substr(text.size() / 2));
  } else {
    append(withSuffix(base, ".new"), text);
    fs::rename(withSuffix(base, ".new"), answer);
  }
  fs::remove(sent);
}

void Simulator::run() {
  for (;; std::this_thread::sleep_for(kLookEvery)) {
    std::vector<fs::path> found;
    for (const auto& entry : fs::directory_iterator(folder)) {
      const fs::path suffix = entry.path().extension();
      if (suffix == ".req" || suffix == ".xcr") found.push_back(entry.path());
    }
    for (const fs::path& file : found) try {
        take(file, file.extension() == ".xcr");
      } catch (const fs::filesystem_error&) {
        // Withdrawn while it was being taken.
      }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: card_simulator FOLDER [DELAY_MS]\n");
    return 2;
  }
  Simulator{argv[1], milliseconds(argc > 2 ? std::atoi(argv[2]) : 300)}.run();
}
