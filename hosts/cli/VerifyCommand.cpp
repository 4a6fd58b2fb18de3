#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>

#include "hosts/cli/Invocation.h"
#include "hosts/cli/Progress.h"
#include "hosts/device/evidence/EvidenceCheck.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/report/TimeRange.h"

namespace chatsum::cli {
namespace {

struct Options {
  std::string manifest;
  std::optional<std::string> expected;
  bool reportOnly = false;
};

/// The sentence that all is well.
std::string allIsWell(const device::EvidenceFindings& findings, bool reportOnly) {
  const std::string then = device::isoTime(findings.evidence.created);
  if (reportOnly) return say("The report is as it was when the report was made ({0}).", then);
  return say("The report, {0} and {1} are as they were when the report was made ({2}).",
             sayCounted(findings.checkedStores, "{0} file of the stores", "{0} files of the stores"),
             sayCounted(findings.checkedAttachments, "{0} attachment", "{0} attachments"), then);
}

/// A SHA-256 in lower-case digits; none when it is none.
std::optional<std::string> digestIn(std::string text) {
  constexpr std::size_t kDigits = 64;
  for (char& digit : text) {
    if (digit >= 'A' && digit <= 'F') digit = static_cast<char>(digit - 'A' + 'a');
  }
  if (text.size() != kDigits || text.find_first_not_of("0123456789abcdef") != std::string::npos) return std::nullopt;
  return text;
}

int verify(const Invocation& invocation, const Options& options) {
  const Console& console = invocation.console;
  device::EvidenceCheckOptions check;
  if (options.expected) {
    check.expected = digestIn(*options.expected);
    if (!check.expected) {
      return console.refuse(
          device::say("'{0}' is no SHA-256: give the 64 hexadecimal digits that 'report --evidence' printed.",
                      *options.expected),
          "verify");
    }
  }
  check.reportOnly = options.reportOnly;
  if (!invocation.source.empty()) check.source = invocation.source;
  Progress progress(console);
  if (progress.isShown()) {
    check.progress = [&](std::uint64_t done, std::uint64_t total) { progress.show(say("Checking"), done, total); };
  }
  const auto findings = device::checkEvidence(options.manifest, check);
  progress.clear();
  if (!findings) return console.fail(findings.problem().sentence);
  const device::EvidenceFindings& found = findings.value();
  console.out << device::say("SHA-256 of the manifest: {0}", found.sha256) << "\n";
  for (const std::string& difference : found.differences) console.tell(difference);
  if (!found.holds()) {
    return console.fail(sayCounted(found.differences.size(),
                                   "{0} file is not as when the report was made; this evidence does not hold.",
                                   "{0} files are not as when the report was made; this evidence does not hold."));
  }
  console.out << allIsWell(found, options.reportOnly) << "\n";
  if (options.reportOnly) console.remark(say("The source was not looked at."));
  if (found.evidence.version == 1) {
    console.remark(
        device::say("This evidence was written by an older chatsum: it does not state which files "
                    "were not there, so what was added to the source since then goes unnoticed."));
  }
  if (const std::size_t unread = found.evidence.unreadAttachments.size(); unread > 0 && !options.reportOnly) {
    console.remark(device::sayCounted(unread,
                                      "{0} attachment could not be read when the report was made, so it is not "
                                      "compared.",
                                      "{0} attachments could not be read when the report was made, so they are "
                                      "not compared."));
  }
  if (!found.evidence.missingAttachments.empty()) {
    console.remark(sayCounted(found.evidence.missingAttachments.size(),
                              "{0} attachment was missing in the source already then.",
                              "{0} attachments were missing in the source already then."));
  }
  return kDone;
}

}  // namespace

void addVerifyCommand(CLI::App& program, Invocation& invocation) {
  CLI::App* command =
      program.add_subcommand("verify", say("Check a report and its source against the evidence written with it"));
  const auto options = std::make_shared<Options>();
  command->add_option("MANIFEST", options->manifest, say("The file that 'report --evidence' put beside the report"))
      ->required()
      ->type_name("");
  command
      ->add_option("--expect", options->expected, say("The manifest's own SHA-256, as 'report --evidence' printed it"))
      ->type_name("DIGEST");
  command->add_flag("--report-only", options->reportOnly, say("Check the report alone, without its source"));
  command->callback(
      [&invocation, options] { invocation.command = [&invocation, options] { return verify(invocation, *options); }; });
}

}  // namespace chatsum::cli
