#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "hosts/cli/DisplayText.h"
#include "hosts/cli/Invocation.h"
#include "hosts/cli/Json.h"
#include "hosts/device/report/TimeRange.h"
#include "hosts/device/reports/EarlierReports.h"
#include "hosts/device/reports/PdfText.h"
#include "platform/foundation/PathComponents.h"

namespace chatsum::cli {
namespace {

constexpr const char* kCommand = "reports";

using Reports = std::vector<device::EarlierReport>;

struct Options {
  bool asJson = false;
  std::string shown;
  std::vector<std::string> deleted;
  bool isSure = false;
};

/// "512 B", "3.4 kB", "1.2 MB".
std::string sizeText(const std::optional<std::uint64_t>& bytes) {
  if (!bytes) return "-";
  constexpr std::uint64_t kStep = 1000;
  if (*bytes < kStep) return std::to_string(*bytes) + " B";
  static constexpr std::array<const char*, 3> kUnits = {"kB", "MB", "GB"};
  double size = static_cast<double>(*bytes) / kStep;
  std::size_t unit = 0;
  for (; size >= 999.95 && unit + 1 < kUnits.size(); ++unit) size /= kStep;
  return fmt::format("{:.1f} {}", size, kUnits[unit]);
}

std::string timeText(const std::optional<Date>& date) {
  constexpr std::size_t kDayLength = 10, kMinuteLength = 16;
  if (!date) return "-";
  std::string text = device::isoTime(*date).substr(0, kMinuteLength);
  text[kDayLength] = ' ';
  return text;
}

void printJson(const Reports& reports, std::ostream& out) {
  JsonArrayWriter writer(out);
  for (const device::EarlierReport& report : reports) {
    const Json element = {{"name", report.name},
                          {"path", report.path},
                          {"size", report.size ? Json(*report.size) : Json(nullptr)},
                          {"created", jsonOf(report.created)}};
    if (!writer.append(element)) return;
  }
  writer.finish();
}

void printTable(const Reports& reports, std::ostream& out) {
  static constexpr std::array<const char*, 3> kApplications = {"Messages", "Phone",
                                                               "FaceTime"};  // texts of the library
  const bool hasSeveral = std::any_of(reports.begin(), reports.end(), [&](const device::EarlierReport& report) {
    return report.appType != reports.front().appType;
  });
  std::vector<std::string> titles = {say("CREATED"), " " + say("SIZE"), say("NAME")};
  if (hasSeveral) titles.insert(titles.begin() + 2, say("APPLICATION"));
  std::vector<std::vector<std::string>> rows;
  for (const device::EarlierReport& report : reports) {
    std::vector<std::string>& row = rows.emplace_back();
    row = {timeText(report.created), sizeText(report.size), report.name};
    if (hasSeveral)
      row.insert(row.begin() + 2, device::said(kApplications.at(static_cast<std::size_t>(report.appType))));
  }
  out << table(titles, rows);
}

int listReports(const Invocation& invocation, bool asJson) {
  const Console& console = invocation.console;
  const auto home = invocation.openHome();
  if (!home) return console.fail(home.problem().sentence);
  const auto reports = device::earlierReports(home.value()->options().containers);
  if (!reports) return console.fail(reports.problem().sentence);
  if (asJson) {
    printJson(reports.value(), console.out);
  } else if (!reports.value().empty()) {
    printTable(reports.value(), console.out);
  }
  if (reports.value().empty()) console.note(say("There are no reports yet; 'chatsum report' makes one."));
  return kDone;
}

/// The problem with a word that is no name of a file in the reports folder.
std::optional<std::string> refusalOf(const std::string& name) {
  if (name.find('/') == std::string::npos) return std::nullopt;
  return say("'{0}' is a path; give the name of a report as 'chatsum reports' lists it.", name);
}

int showDocument(const device::EarlierReport& report, const Console& console) {
  console.remark(say("This is only the text of the document; its pages are in '{0}'.", report.path));
  const auto show = [&](std::string_view piece) { return static_cast<bool>(console.out << piece); };
  switch (device::textOfPdf(report.path, show)) {
    case device::PdfTextResult::kDone:
      console.endLine();
      return kDone;
    case device::PdfTextResult::kNotInstalled:
      return console.fail(
          say("The text of a PDF document is read by pdftotext, which is not installed (Debian has it in "
              "poppler-utils); open '{0}' in a viewer.",
              report.path));
    case device::PdfTextResult::kFailed:
      break;
  }
  return console.fail(say("pdftotext cannot read '{0}'; open it in a viewer.", report.path));
}

int showFile(const device::EarlierReport& report, const Console& console) {
  std::ifstream file(report.path, std::ios::binary);
  std::array<char, 65536> block{};
  while (file.read(block.data(), block.size()) || file.gcount() > 0) {
    if (!console.out.write(block.data(), file.gcount())) return kFailed;
  }
  if (!file.eof()) return console.fail(say("The report '{0}' cannot be read.", report.path));
  console.endLine();
  return kDone;
}

int showReport(const Invocation& invocation, const std::string& name) {
  const Console& console = invocation.console;
  if (const auto refusal = refusalOf(name)) return console.refuse(*refusal, kCommand);
  const auto home = invocation.openHome();
  if (!home) return console.fail(home.problem().sentence);
  const auto reports = device::earlierReports(home.value()->options().containers);
  if (!reports) return console.fail(reports.problem().sentence);
  const auto report = device::findReport(reports.value(), name);
  if (!report) return console.fail(report.problem().sentence);
  std::string extension = path::extension(name);
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return extension == "pdf" ? showDocument(report.value(), console) : showFile(report.value(), console);
}

/// Asks a person whether these may go; no answer is none.
bool isAllowed(const Reports& reports, const Console& console) {
  console.tell(reports.size() == 1 ? say("Delete this report?") : say("Delete these reports?"));
  for (const device::EarlierReport& report : reports) console.tell("  " + report.name);
  console.err << say("[y/N]") << " " << std::flush;
  std::string answer;
  std::getline(*console.in, answer);
  if (answer.size() == 1 && answer[0] >= 'A' && answer[0] <= 'Z') answer[0] = static_cast<char>(answer[0] - 'A' + 'a');
  return answer == "y" || answer == "yes" || answer == say("y") || answer == say("yes");
}

int deleteReports(const Invocation& invocation, const Options& options) {
  const Console& console = invocation.console;
  for (const std::string& name : options.deleted) {
    if (const auto refusal = refusalOf(name)) return console.refuse(*refusal, kCommand);
  }
  if (!options.isSure && !console.in) {
    return console.refuse(say("There is nobody to ask; say --yes to delete reports without a question."), kCommand);
  }
  const auto home = invocation.openHome();
  if (!home) return console.fail(home.problem().sentence);
  const auto reports = device::earlierReports(home.value()->options().containers);
  if (!reports) return console.fail(reports.problem().sentence);
  // All or nothing: a misspelt name must not let the others go unnoticed.
  Reports doomed;
  for (const std::string& name : std::set<std::string>(options.deleted.begin(), options.deleted.end())) {
    const auto report = device::findReport(reports.value(), name);
    if (!report) return console.fail(report.problem().sentence);
    doomed.push_back(report.value());
  }
  if (!options.isSure && !isAllowed(doomed, console)) {
    console.note(say("Nothing was deleted."));
    return kDone;
  }
  for (const device::EarlierReport& report : doomed) {
    if (auto problem = device::removeReport(report)) return console.fail(problem->sentence);
    console.note(say("Deleted '{0}'.", report.name));
  }
  return kDone;
}

}  // namespace

void addReportsCommand(CLI::App& program, Invocation& invocation) {
  CLI::App* command =
      program.add_subcommand(kCommand, say("List the reports made so far, the newest first; show, delete"));
  const auto options = std::make_shared<Options>();
  command->require_subcommand(0, 1);
  command->add_flag("--json", options->asJson, say("Print a JSON array instead of a table"));

  CLI::App* show = command->add_subcommand("show", say("Print a report; of a pdf, its text"));
  show->add_option("NAME", options->shown, say("Name of the report, as the list has it"))->required()->type_name("");

  CLI::App* remove = command->add_subcommand("delete", say("Delete reports, after a question"));
  remove->add_option("NAME", options->deleted, say("Names of the reports, as the list has them"))
      ->required()
      ->type_name("");
  remove->add_flag("--yes", options->isSure, say("Do not ask"));

  command->callback([&invocation, options, command, show] {
    invocation.command = [&invocation, options, isShown = show->parsed(), isList = command->get_subcommands().empty()] {
      if (isList) return listReports(invocation, options->asJson);
      return isShown ? showReport(invocation, options->shown) : deleteReports(invocation, *options);
    };
  });
}

}  // namespace chatsum::cli
