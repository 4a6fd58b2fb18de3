#include "hosts/device/calls/CallReport.h"

#include <utility>

#include "hosts/device/calls/CallRecords.h"
#include "hosts/device/language/Say.h"

namespace chatsum::device {

std::optional<StoreProblem> checkCallReportOptions(const CallReportOptions& options) {
  if (auto problem = checkWritingOptions(options, callsContent(options.app))) return problem;
  return checkTimes(options.calls.range);
}

StoreResult<MadeCallReport> makeCallReport(DeviceSession& session, const CallReportOptions& options) {
  session.startLibrary();
  const ReportContent& content = callsContent(options.app);
  const auto place = findReportPlace(session, options, content,
                                     options.app == CallApp::kPhone ? say("Phone calls") : say("FaceTime calls"));
  if (!place) return place.problem();

  CallListOptions wanted = options.calls;
  wanted.app = options.app;
  const StoreResult<CallList> read = readCalls(session, wanted);
  if (!read) return read.problem();
  const CallList& list = read.value();
  MadeCallReport made{place.value(), list.balance, notesOnLayout(options.layout)};
  made.notes.insert(made.notes.end(), list.notes.begin(), list.notes.end());
  const StoreResult<std::uint64_t> written =
      writeReport(session, options, content, made.path, recordsOf(list.calls), made.notes);
  if (!written) return written.problem();
  made.balance.continued = written.value();
  made.balance.written += written.value();
  return made;
}

}  // namespace chatsum::device
