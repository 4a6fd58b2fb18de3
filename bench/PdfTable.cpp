#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>

#include "bench/Devices.h"
#include "bench/RowsFile.h"
#include "bench/Tables.h"

namespace chatsum::bench {
namespace {

namespace fs = std::filesystem;

// Beyond these many rows the others take minutes for each round, so that the program runs alone.
constexpr long kMostRowsOfRivals = 100'000;

bool isInstalled(const std::string& program) {
  return runChild({"sh", "-c", "command -v " + program}, "/dev/null").exitCode == 0;
}

void tellSkipped(const std::string& name, const std::string& why) { fmt::print("{}: skipped, {}\n", name, why); }

// What the program sets cells in, here and where Verdana is installed.
const std::string kCellFont = "Verdana,DejaVu Sans";

/// The file of that font; empty when nothing can tell.
std::string cellFontFile() { return runChild({"fc-match", "-f", "%{file}", kCellFont}, "").output; }

/// Adds the programs of rivals/, as far as they were built.
void addBuiltRivals(const fs::path& work, std::vector<Contender>& contenders) {
  const fs::path rows = work / "rows";
  const std::string pango = CHATSUM_PANGO_REPORT, haru = CHATSUM_HARU_REPORT, font = cellFontFile();
  const char* const kNotBuilt = "its library was not there when the bench was built (tools/setup --bench installs it)";
  const fs::path pangoReport = work / "pango.pdf", haruReport = work / "haru.pdf";
  if (pango.empty()) {
    tellSkipped("pango + cairo", kNotBuilt);
  } else {
    contenders.push_back(
        {.name = "pango + cairo", .command = {pango, rows, pangoReport, kCellFont}, .made = pangoReport});
  }
  if (haru.empty()) {
    tellSkipped("libharu", kNotBuilt);
  } else if (font.empty()) {
    tellSkipped("libharu", "fc-match named no font for it");
  } else {
    contenders.push_back({.name = "libharu", .command = {haru, rows, haruReport, font}, .made = haruReport});
  }
}

void addInstalledRivals(const fs::path& work, std::vector<Contender>& contenders) {
  const fs::path groffReport = work / "groff.pdf", enscriptReport = work / "enscript.pdf";
  if (!isInstalled("groff") || !isInstalled("gropdf")) {
    tellSkipped("groff + tbl", "groff is not installed");
  } else {
    contenders.push_back({.name = "groff + tbl",
                          .command = {"groff", "-k", "-t", "-Tpdf", "-P-p792p,762p", work / "rows.tbl"},
                          .outputFile = groffReport,
                          .made = groffReport});
  }
  if (!isInstalled("enscript") || !isInstalled("ps2pdf")) {
    tellSkipped("enscript + ps2pdf", "enscript or ghostscript is not installed");
  } else {
    // Lines instead of columns, and Latin-1 only.
    const std::string command = "enscript -q -B --word-wrap -f Helvetica14 -X 88591 -p - '" +
                                (work / "rows.latin1").string() + "' | ps2pdf - '" + enscriptReport.string() + "'";
    contenders.push_back({.name = "enscript + ps2pdf", .command = {"sh", "-c", command}, .made = enscriptReport});
  }
}

/// Writes the rows of the program's own CSV report for the others.
bool writeRows(const Bench& bench, const std::string& guid, const fs::path& work) {
  const Contender csv = report("csv", bench, guid);
  if (runChild(csv.command, csv.outputFile).exitCode != 0) return false;
  const std::vector<Row> rows = readCsv(csv.made);
  writeSeparated(rows, work / "rows");
  writeGroff(rows, work / "rows.tbl");
  writeLatin1Lines(rows, work / "rows.latin1");
  return true;
}

double pagesOf(const fs::path& file) {
  const std::string text = runChild({"pdfinfo", file}, "").output, label = "Pages:";
  const std::size_t at = text.find(label);
  return at == std::string::npos ? 0 : std::strtod(text.c_str() + at + label.size(), nullptr);
}

void printTable(const std::vector<Contender>& contenders, double rows) {
  constexpr double kColumns = 3;
  fmt::print("\n{:.0f} rows\n", rows);
  fmt::print("{:<18} {:>9} {:>9} {:>8} {:>9} {:>11} {:>9} {:>10} {:>9} {:>10}\n", "", "wall s", "cpu s", "pages",
             "pages/s", "cells/s", "file MB", "bytes/row", "peak MB", "to chatsum");
  for (const Contender& contender : contenders) {
    if (contender.failed) continue;
    const double seconds = wallSeconds(contender), pages = pagesOf(contender.made), size = madeBytes(contender);
    fmt::print("{:<18} {:>9.4f} {:>9.4f} {:>8.0f} {:>9.0f} {:>11.0f} {:>9.2f} {:>10.1f} {:>9.1f}", contender.name,
               seconds, cpuSeconds(contender), pages, pages / seconds, rows * kColumns / seconds, size / 1e6,
               size / rows, peakBytes(contender) / 1e6);
    if (contenders[0].failed) {
      fmt::print("\n");
    } else {
      fmt::print(" {:>10.2f}\n", seconds / wallSeconds(contenders[0]));
    }
  }
  std::fflush(stdout);
}

bool benchSize(const fs::path& work, long rows, int rounds) {
  const Bench bench =
      makeBench(work, "device",
                {"--messages", std::to_string(rows), "--seed", "1", "--conversations", "1", "--attachments", "0"});
  const std::string guid = largestConversation(bench)["guids"][0];
  std::vector<Contender> contenders = {report("pdf", bench, guid)};
  if (rows > kMostRowsOfRivals) {
    fmt::print("\n{} rows: the others are left out beyond {}\n", rows, kMostRowsOfRivals);
  } else if (writeRows(bench, guid, work)) {
    fmt::print("\n");
    addBuiltRivals(work, contenders);
    addInstalledRivals(work, contenders);
  } else {
    fmt::print(stderr, "the rows could not be written for the others\n");
    return false;
  }
  runInTurn(contenders, rounds);
  printTable(contenders, static_cast<double>(rows));
  fs::remove_all(bench.device);
  return std::none_of(contenders.begin(), contenders.end(), [](const Contender& one) { return one.failed; });
}

}  // namespace

bool pdfTables(const fs::path& work, const std::vector<long>& sizes, int rounds) {
  bool allWorked = true;
  for (const long size : sizes) allWorked &= benchSize(work, size, rounds);
  return allWorked;
}

}  // namespace chatsum::bench
