#include "hosts/cli/ReportEvidence.h"

#include "hosts/cli/Progress.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/report/TimeZone.h"
#include "platform/interfaces/Platform.h"

namespace chatsum::cli {

device::EvidenceJson countsOf(const device::Balance& balance) {
  return {{"inStore", balance.inStore},
          {"wordsBesideFiles", balance.wordsBesideFiles},
          {"continued", balance.continued},
          {"written", balance.written},
          {"leftOut",
           {{"reactionsShown", balance.reactionsShown},
            {"reactionsTakenBack", balance.reactionsTakenBack},
            {"previewFiles", balance.previewFiles},
            {"stickers", balance.stickers},
            {"missingFiles", balance.missingFiles},
            {"withoutText", balance.withoutText},
            {"unreadableBody", balance.unreadableBody},
            {"excluded", balance.excluded},
            {"outsideTimes", balance.outsideTimes},
            {"undatedOutside", balance.undatedOutside}}}};
}

device::EvidenceJson countsOf(const device::CallBalance& balance) {
  return {{"inLists", balance.inLists},
          {"continued", balance.continued},
          {"written", balance.written},
          {"leftOut",
           {{"duplicates", balance.duplicates},
            {"otherApps", balance.otherApps},
            {"otherPeople", balance.otherPeople},
            {"outsideTimes", balance.outsideTimes},
            {"undatedOutside", balance.undatedOutside}}}};
}

int writeReportEvidence(const Invocation& invocation, const device::DeviceSession& session, const ReportFacts& facts) {
  const Console& console = invocation.console;
  device::EvidenceRequest request;
  request.programVersion = CHATSUM_VERSION;
  request.created = platform::current().clock.now();
  request.timeZone = device::timeZoneName();
  request.stores = facts.stores;
  request.attachments = facts.attachments;
  request.options = facts.options;
  request.counts = facts.counts;
  Progress progress(console);
  if (progress.isShown()) {
    request.progress = [&](std::uint64_t done, std::uint64_t total) { progress.show(say("Evidence"), done, total); };
  }
  std::vector<std::string> reports = {facts.path};
  if (facts.output) reports.push_back(*facts.output);
  const auto written = device::writeEvidence(session.source(), reports, request);
  progress.clear();
  if (!written) return console.fail(written.problem().sentence);
  if (const std::size_t missing = written.value().front().missingAttachments; missing > 0) {
    console.remark(
        sayCounted(missing, "{0} attachment is missing in the source.", "{0} attachments are missing in the source."));
  }
  if (const std::size_t unread = written.value().front().unreadAttachments; unread > 0) {
    console.remark(device::sayCounted(unread,
                                      "{0} attachment could not be digested: it is a folder, no ordinary file, "
                                      "or may not be read.",
                                      "{0} attachments could not be digested: they are folders, no ordinary "
                                      "files, or may not be read."));
  }
  for (const device::WrittenEvidence& evidence : written.value()) {
    console.note(say("Evidence: {0} (SHA-256 {1})", evidence.path, evidence.sha256));
  }
  return kDone;
}

}  // namespace chatsum::cli
