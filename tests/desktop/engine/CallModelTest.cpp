#include "hosts/desktop/engine/CallModel.h"

#include <QAbstractItemModelTester>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/device/calls/CallRecords.h"
#include "tests/desktop/engine/EngineFixture.h"

namespace chatsum::desktop {
namespace {

using CallModelTest = testing::EngineTest;

TEST_F(CallModelTest, ShowsTheCallsOfTheAppInFront) {
  const QAbstractItemModelTester tester(&engine->calls(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  ASSERT_TRUE(openSample());
  CallModel& calls = engine->calls();
  Selection& selection = engine->selection();
  EXPECT_EQ(calls.app(), "phone");
  const int phone = calls.count();
  ASSERT_GT(phone, 3);
  selection.setApp("phone");
  EXPECT_EQ(selection.count(), phone);
  EXPECT_EQ(phone, static_cast<int>(library().opened().calls->phone.list.calls.size()));
  EXPECT_TRUE(calls.index(0).data(CallModel::WhatRole).toString().contains("phone"));
  EXPECT_NE(calls.balance().indexOf("shown"), -1);
  EXPECT_FALSE(calls.notes().isEmpty());
  EXPECT_EQ(calls.roleNames().value(CallModel::WhoRole), "who");

  selection.setApp("facetime");
  EXPECT_EQ(calls.app(), "facetime");
  ASSERT_GT(calls.count(), 0);
  EXPECT_EQ(selection.count(), calls.count());
  EXPECT_TRUE(calls.index(0).data(CallModel::WhatRole).toString().contains("FaceTime"));
  library().close();
  EXPECT_EQ(calls.count(), 0);
}

TEST_F(CallModelTest, TellsOfEachCallWhatListsOfCallsTell) {
  ASSERT_TRUE(openSample());
  const CallModel& calls = engine->calls();
  const auto& list = library().opened().calls->phone.list.calls;
  ASSERT_EQ(calls.rowCount(), static_cast<int>(list.size()));
  for (int row = 0; row < calls.rowCount(); ++row) {
    const device::Call& call = list[static_cast<std::size_t>(row)];
    const auto at = [&](int role) { return calls.index(row).data(role).toString().toStdString(); };
    EXPECT_EQ(at(CallModel::WhoRole), device::peopleInWords(call));
    EXPECT_EQ(at(CallModel::WhatRole), device::kindInWords(call));
    EXPECT_EQ(at(CallModel::StatusRole), device::wordOf(call.status));
    EXPECT_EQ(at(CallModel::TimeTextRole).empty(), !call.date.has_value());
  }
}

TEST_F(CallModelTest, TellsHowLongCallsTookThatSomebodyTook) {
  using device::CallStatus;
  const auto book = std::make_shared<CallBook>();
  const auto add = [&](CallStatus status, std::optional<double> duration) {
    device::Call call;
    call.service = device::kPhoneService;
    call.status = status;
    call.duration = duration;
    book->phone.list.calls.push_back(call);
  };
  add(CallStatus::kAnswered, 192);
  add(CallStatus::kAnswered, 0);
  add(CallStatus::kConnected, 0);
  add(CallStatus::kMissed, 31);  // how long it rang, or somebody spoke to a machine: the store says so
  for (const auto status : {CallStatus::kMissed, CallStatus::kDeclined, CallStatus::kBlocked, CallStatus::kNoAnswer}) {
    add(status, 0.4);
  }
  CallModel& calls = engine->calls();
  calls.setBook(book);
  std::vector<std::string> shown;
  for (int row = 0; row < calls.rowCount(); ++row) {
    shown.push_back(calls.index(row).data(CallModel::DurationRole).toString().toStdString());
  }
  EXPECT_EQ(shown, (std::vector<std::string>{"0:03:12", "0:00:00", "0:00:00", "0:00:31", "", "", "", ""}));
  calls.setBook(nullptr);
}

TEST_F(CallModelTest, TicksBelongToOneApp) {
  ASSERT_TRUE(openSample());
  CallModel& calls = engine->calls();
  Selection& selection = engine->selection();
  const auto isTicked = [&](int row) { return calls.index(row).data(CallModel::IsTickedRole).toBool(); };
  selection.setApp("phone");
  selection.tick(1, true);
  EXPECT_TRUE(isTicked(1));
  EXPECT_FALSE(isTicked(0));
  selection.setApp("facetime");
  EXPECT_FALSE(isTicked(1));
  selection.tick(0, true);
  EXPECT_TRUE(isTicked(0));
  selection.setApp("phone");
  EXPECT_TRUE(isTicked(1));
  EXPECT_FALSE(isTicked(0));
}

}  // namespace
}  // namespace chatsum::desktop
