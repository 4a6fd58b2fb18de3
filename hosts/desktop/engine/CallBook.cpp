#include "hosts/desktop/engine/CallBook.h"

#include <utility>

#include "hosts/device/calls/CallRecords.h"
#include "hosts/device/report/ReportName.h"

namespace chatsum::desktop {
namespace {

device::StoreResult<CallPart> readPart(const device::DeviceSession& session, device::CallApp app,
                                       const std::string& region) {
  device::CallListOptions options;
  options.app = app;
  options.region = region;
  auto list = device::readCalls(session, options);
  if (!list) return list.problem();
  CallPart part;
  part.list = std::move(list.value());
  const char* const name = app == device::CallApp::kPhone ? "Phone calls" : "FaceTime calls";
  part.rows = ReportRows(device::recordsOf(part.list.calls), device::callsContent(app), device::reportNameFor(name));
  return part;
}

}  // namespace

device::StoreResult<std::shared_ptr<const CallBook>> readCallBook(const device::DeviceSession& session,
                                                                  const std::string& region) {
  auto phone = readPart(session, device::CallApp::kPhone, region);
  if (!phone) return phone.problem();
  auto facetime = readPart(session, device::CallApp::kFaceTime, region);
  if (!facetime) return facetime.problem();
  auto book = std::make_shared<CallBook>();
  book->phone = std::move(phone.value());
  book->facetime = std::move(facetime.value());
  return std::shared_ptr<const CallBook>(std::move(book));
}

}  // namespace chatsum::desktop
