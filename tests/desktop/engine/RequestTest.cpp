// What the window asks a report of is what the command line asks for the same.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "hosts/device/calls/CallRecords.h"
#include "hosts/device/calls/CallReport.h"
#include "hosts/device/conversations/ConversationList.h"
#include "hosts/device/report/ReportJob.h"
#include "hosts/device/report/ShownRows.h"
#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "tests/desktop/engine/EngineFixture.h"
#include "tests/desktop/engine/RowsFixture.h"

namespace chatsum::desktop {
namespace {

namespace fs = std::filesystem;

std::string bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

constexpr device::ReportFormat kFormats[] = {device::ReportFormat::kText, device::ReportFormat::kCsv};

class RequestTest : public testing::EngineTest {
 protected:
  /// Has the library write the report that is selected and answers its bytes.
  [[nodiscard]] std::string written(device::ReportFormat format) {
    std::string path;
    CSReportsGenerator::sharedInstance().generateReport(
        engine->selection().request(format).request, [&](const std::string& made) { path = made; },
        [](const Error& error) { ADD_FAILURE() << error.localizedDescription(); });
    std::string bytes = bytesOf(path);
    fs::remove(path);
    return bytes;
  }

  /// A session as the command line has it; the engine's is closed before.
  [[nodiscard]] std::unique_ptr<device::DeviceSession> commandLine() {
    engine.reset();
    device::DeviceSession::Options session;
    session.source = folder.path() + "/sample";
    session.home = folder.path() + "/home-of-command-line";
    auto opened = device::DeviceSession::open(session);
    EXPECT_TRUE(opened);
    return std::move(opened.value());
  }

  [[nodiscard]] static device::Conversation conversationOf(const device::DeviceSession& session, const char* name) {
    const auto store = session.connect();
    const auto list = device::ConversationList::read(store.value(), session.findPerson());
    const auto found = list.value().find(name);
    EXPECT_EQ(found.size(), 1U);
    return list.value().conversations()[found.front()];
  }

  [[nodiscard]] static std::string reportOf(device::DeviceSession& session, const char* conversation,
                                            device::ReportFormat format, const device::TimeRange& range) {
    device::ReportOptions options;
    options.layout.format = format;
    options.reading.range = range;
    const auto made = device::makeReport(session, conversationOf(session, conversation), options);
    EXPECT_TRUE(made);
    return made ? bytesOf(made.value().path) : "";
  }
};

// A conversation without pictures: whoever writes a text names these in it once the format is chosen.
TEST_F(RequestTest, AllMessagesMakeTheReportOfTheCommandLine) {
  constexpr const char* kConversation = "Priya Raman, Jonas Weber";
  ASSERT_TRUE(openSample());
  ASSERT_TRUE(select(kConversation));
  std::vector<std::string> made;
  for (const auto format : kFormats) made.push_back(written(format));
  const auto session = commandLine();
  for (std::size_t i = 0; i < std::size(kFormats); ++i) {
    EXPECT_EQ(made[i], reportOf(*session, kConversation, kFormats[i], {}));
  }
}

TEST_F(RequestTest, MessagesBetweenTwoTimesMakeTheReportOfTheCommandLine) {
  ASSERT_TRUE(openSample());
  ASSERT_TRUE(select("Sunday Hikers"));
  const Array& all = engine->messages().list()->rows.records;
  const auto dayOf = [&](std::size_t row) {
    return device::isoTime(*(*all[row].asRecord())["Date"].asDate()).substr(0, 10);
  };
  const std::string since = dayOf(all.size() / 3), until = dayOf(all.size() / 2);
  Selection& selection = engine->selection();
  selection.setMode(Selection::Mode::Range);
  selection.setSince(shownText(since));
  selection.setUntil(shownText(until));
  ASSERT_GT(selection.count(), 0);
  ASSERT_LT(selection.count(), selection.total());
  std::vector<std::string> made;
  for (const auto format : kFormats) made.push_back(written(format));
  const auto session = commandLine();
  device::TimeRange range;
  ASSERT_TRUE(device::setSince(range, since) && device::setUntil(range, until));
  for (std::size_t i = 0; i < std::size(kFormats); ++i)
    EXPECT_EQ(made[i], reportOf(*session, "Sunday Hikers", kFormats[i], range));
}

TEST_F(RequestTest, TheRequestOfMessagesIsThatOfTheCommandLineButForNameAndLineFormat) {
  ASSERT_TRUE(openSample());
  ASSERT_TRUE(select("Sunday Hikers"));
  const SelectedReport report = engine->selection().request();
  EXPECT_EQ(report.appType, kAppTypeMessages);
  EXPECT_TRUE(report.hasAttachments);
  EXPECT_FALSE(report.hasMultiMediaAttachments);
  const auto session = commandLine();
  device::ReadingOptions options;
  options.origins = true;
  const auto read = device::readConversation(*session, conversationOf(*session, "Sunday Hikers"), options);
  ASSERT_TRUE(read);
  device::ReportLayout pages;
  pages.format = device::ReportFormat::kPdf;
  Array shown = device::showWhole(read.value().records, pages, device::beginsLikeAPicture).records;
  Record expected = device::makeRequest({}, "Sunday Hikers", std::move(shown));
  expected.remove(request::kReportFormat);
  EXPECT_EQ(report.request, expected);
}

TEST_F(RequestTest, CallsMakeTheReportOfTheCommandLine) {
  ASSERT_TRUE(openSample());
  for (const auto app : {device::CallApp::kPhone, device::CallApp::kFaceTime}) {
    engine->selection().setApp(shownText(device::serviceOf(app)));
    const SelectedReport report = engine->selection().request(device::ReportFormat::kCsv);
    EXPECT_EQ(report.appType, device::callsContent(app).appType);
    const std::string made = written(device::ReportFormat::kCsv);
    auto session = commandLine();
    device::CallReportOptions options;
    options.app = app;
    options.layout.format = device::ReportFormat::kCsv;
    options.calls.newestFirst = true;
    const auto expected = device::makeCallReport(*session, options);
    ASSERT_TRUE(expected);
    EXPECT_EQ(made, bytesOf(expected.value().path));
    session.reset();  // before the engine has one of its own again
    begin();
    ASSERT_TRUE(openSample());
  }
}

TEST_F(RequestTest, FirstToLastHitAreTheMessagesBetween) {
  ASSERT_TRUE(openSample());
  ASSERT_TRUE(select("Sunday Hikers"));
  MessageModel& messages = engine->messages();
  messages.search("hut");
  ASSERT_TRUE(testing::happens([&] { return !messages.isSearching(); }));
  ASSERT_GT(messages.hits(), 1);
  Selection& selection = engine->selection();
  selection.setMode(Selection::Mode::Hits);
  const int first = static_cast<int>(messages.hitRows().front()), last = static_cast<int>(messages.hitRows().back());
  EXPECT_EQ(selection.count(), last - first + 1);
  const Array records = selection.rows().records();
  EXPECT_EQ(records[0], messages.list()->rows.records[static_cast<std::size_t>(first)]);
  messages.search("");  // the search is closed, its stretch stays
  EXPECT_EQ(selection.count(), last - first + 1);
  messages.search("no such word");
  ASSERT_TRUE(testing::happens([&] { return !messages.isSearching(); }));
  EXPECT_EQ(selection.count(), 0);
}

TEST_F(RequestTest, TicksShowInTheMessages) {
  ASSERT_TRUE(openSample());
  ASSERT_TRUE(select("Sunday Hikers"));
  const auto isTicked = [&](int row) {
    return engine->messages().index(row).data(MessageModel::IsTickedRole).toBool();
  };
  engine->selection().tick(2, true);
  EXPECT_TRUE(isTicked(2));
  EXPECT_FALSE(isTicked(1));
  ASSERT_TRUE(select("Maya Lindqvist"));
  EXPECT_FALSE(isTicked(2));
}

TEST_F(RequestTest, TheWindowTellsEveryRowOfTheStore) {
  ASSERT_TRUE(openSample());
  ASSERT_TRUE(select("Sunday Hikers"));
  const MessageModel& messages = engine->messages();
  EXPECT_NE(messages.balance().indexOf("in the store"), -1) << messages.balance().toStdString();
  int events = 0;
  for (int row = 0; row < messages.rowCount(); ++row) {
    const QModelIndex index = messages.index(row);
    if (!index.data(MessageModel::IsSystemRole).toBool()) continue;
    ++events;
    EXPECT_TRUE(index.data(MessageModel::TextRole).toString().startsWith(u'['));
  }
  EXPECT_GT(events, 0);
}

}  // namespace
}  // namespace chatsum::desktop
