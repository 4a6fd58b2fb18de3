#include "tests/unit/CSReportGenerationViewController/ReportScreenTest.h"

namespace chatsum::test {
namespace {

using Texts = std::vector<std::string>;

class SortOrder : public BothGenerations {};

TEST_P(SortOrder, IsAskedForWithThreeButtons) {
  open();
  tap(kSortRow);
  ASSERT_EQ(questions(), 1U);
  EXPECT_EQ(lastQuestion().title, std::nullopt);
  EXPECT_EQ(lastQuestion().buttons, (Texts{"Ascending", "Descending", "Cancel"}));
  EXPECT_EQ(table().indexPathForSelectedRow(), std::nullopt);
}

TEST_P(SortOrder, FollowsTheAnswer) {
  open();
  tap(kSortRow);
  answer("Descending");
  EXPECT_TRUE(screen->sortDesc());
  EXPECT_EQ(detail(kSortRow), "Date, Desc");
  tap(kSortRow);
  answer("Cancel");
  EXPECT_TRUE(screen->sortDesc());
  tap(kSortRow);
  answer("Ascending");
  EXPECT_FALSE(screen->sortDesc());
  EXPECT_EQ(detail(kSortRow), "Date, Asc");
}
INSTANTIATE_TEST_SUITE_P(Screens, SortOrder, kGenerations, generationName);

class FormatChoice : public BothGenerations {};

TEST_P(FormatChoice, IsAskedForByTheFormatsNames) {
  open();
  tap(kFormatRow);
  ASSERT_EQ(questions(), 1U);
  EXPECT_EQ(lastQuestion().title, std::nullopt);
  const Texts newer{"CSV", "PDF", "Text", "Cancel"}, older{"Cancel", "CSV", "PDF", "Text"};
  EXPECT_EQ(lastQuestion().buttons, GetParam() ? newer : older);
}

TEST_P(FormatChoice, FollowsTheAnswer) {
  open(request("Anna", kText));
  const Texts names = {"CSV", "PDF", "Text"};
  for (std::size_t code = 0; code < names.size(); ++code) {
    tap(kFormatRow);
    answer(names[code]);
    EXPECT_EQ(screen->fileFormat(), code);
    EXPECT_EQ(screen->selectedRecords()->value("FILE_FORMAT"), Value(code));
    EXPECT_EQ(detail(kFormatRow), names[code]);
    EXPECT_EQ(fileName(), "Anna");
  }
  tap(kFormatRow);
  answer("Cancel");
  EXPECT_EQ(screen->fileFormat(), 2U);
}

TEST_P(FormatChoice, ProposesANameThatIsFreeInThatFormat) {
  putReport("Anna.pdf", 10);
  putReport("Anna - 1.pdf", 10);
  open(request("Anna", kText));
  tap(kFormatRow);
  answer("PDF");
  EXPECT_EQ(fileName(), "Anna - 2") << "without extension";
  EXPECT_EQ(screen->nameTextField()->text(), "Anna - 2");
  tap(kFormatRow);
  answer("CSV");
  EXPECT_EQ(fileName(), "Anna - 2");
}

TEST_P(FormatChoice, BeginsWithWhatStandsInTheField) {
  putReport("Ben.csv", 10);
  open(request("Anna", kText));
  type("Ben");
  tap(kFormatRow);
  answer("CSV");
  EXPECT_EQ(fileName(), "Ben - 1");
}
INSTANTIATE_TEST_SUITE_P(Screens, FormatChoice, kGenerations, generationName);

const char* const kPicturesToo =
    "Your selection may contains image/audio/video files, which cannot be imported to '%@' file format. Do you want to "
    "continue?";
const char* const kSoundsOnly =
    "Your selection may contains audio/video files, which cannot be imported to '%@' file format. Do you want to "
    "continue?";

std::string with(std::string text, const std::string& format) { return text.replace(text.find("%@"), 2, format); }

class AttachmentWarning : public BothGenerations {
 protected:
  /// The warning for a selection; none when the flow goes on at once.
  std::optional<std::string> warning(bool attachments, bool multiMedia, std::int64_t format) {
    screen->setHasAttachments(attachments);
    screen->setHasMultiMediaAttachments(multiMedia);
    screen->setFileFormat(static_cast<std::uint64_t>(format));
    const auto before = questions();
    pressGenerate();
    return questions() == before ? std::nullopt : lastQuestion().title;
  }
};

TEST_P(AttachmentWarning, NamesWhatTheFormatCannotCarry) {
  open(request("Anna", kText));
  EXPECT_EQ(warning(true, false, kPDF), std::nullopt);
  EXPECT_EQ(warning(true, true, kPDF), with(kSoundsOnly, "PDF"));
  EXPECT_EQ(warning(true, false, kCSV), with(kPicturesToo, "CSV"));
  EXPECT_EQ(warning(true, false, kText), with(kPicturesToo, "TXT"));
  EXPECT_EQ(warning(true, true, kText), with(kPicturesToo, "TXT"));
  EXPECT_EQ(warning(false, true, kText), std::nullopt);
}

TEST_P(AttachmentWarning, IsTranslatedBeforeItIsFilled) {
  fake.mainBundle.strings[kPicturesToo] = "'%@' kann das nicht.";
  open(request("Anna", kText));
  EXPECT_EQ(warning(true, false, kText), "'TXT' kann das nicht.");
}

TEST_P(AttachmentWarning, LetsTheUserGoOn) {
  open(request("Anna", kText));
  ASSERT_TRUE(warning(true, false, kText));
  const Texts newerAndOlder{"Continue", "Cancel"};
  EXPECT_EQ(lastQuestion().buttons, newerAndOlder);
  EXPECT_EQ(fake.dispatch.globalWaiting(), 0U);
  answer("Continue");
  settle();
  EXPECT_TRUE(hasReport("Anna.txt"));
}

TEST_P(AttachmentWarning, LetsTheUserStop) {
  open(request("Anna", kText));
  ASSERT_TRUE(warning(true, false, kText));
  answer("Cancel");
  settle();
  EXPECT_FALSE(hasReport("Anna.txt"));
  EXPECT_EQ(fileName(), "Anna");
  EXPECT_FALSE(fake.log.contains("Checking file"));
}
INSTANTIATE_TEST_SUITE_P(Screens, AttachmentWarning, kGenerations, generationName);

class Replacing : public BothGenerations {};

TEST_P(Replacing, IsAskedForWhenTheNameIsTaken) {
  putReport("Anna.txt", 10, "the old one");
  open(request("Anna", kText));
  pressGenerate();
  ASSERT_EQ(questions(), 1U);
  EXPECT_EQ(lastQuestion().title, "'Anna.txt' already exists. Do you want to replace it?");
  EXPECT_EQ(lastQuestion().buttons, (Texts{"Replace", "Cancel"}));
  EXPECT_TRUE(logged(information("-[CSReportGenerationViewController checkFileAndGenerateReport]", 446,
                                 "Checking file 'Anna.txt' exists or not.")));
}

TEST_P(Replacing, DeletesTheOldFileAndWritesTheNewOne) {
  putReport("Anna.csv", 10, "the old one\n");
  open(request("Anna", kCSV));
  pressGenerate();
  fake.files.forgetCalls();
  answer("Replace");
  settle();
  EXPECT_EQ(fake.files.calls().at(0), "remove " + reports + "/Anna.csv");
  EXPECT_THAT(report("Anna.csv"), ::testing::StartsWith("Name,Text,Date\nAnna,first,"));
}

TEST_P(Replacing, LeavesEverythingWhenItIsCancelled) {
  putReport("Anna.txt", 10, "the old one");
  open(request("Anna", kText));
  pressGenerate();
  fake.files.forgetCalls();
  answer("Cancel");
  settle();
  EXPECT_EQ(report("Anna.txt"), "the old one");
  EXPECT_TRUE(fake.files.calls().empty());
  EXPECT_EQ(fileName(), "Anna");
}

TEST_P(Replacing, GoesOnWhenTheOldFileCannotBeDeleted) {
  putReport("Anna.txt", 10, "the old one");
  open(request("Anna", kText));
  pressGenerate();
  fake.files.fail(platform::fake::FileOperation::kRemove, EACCES);
  answer("Replace");
  settle();
  EXPECT_THAT(report("Anna.txt"), ::testing::StartsWith("Anna: first"));
  const std::string path = reports + "/Anna.txt";
  const std::string reason = Error::posix(EACCES, "“" + path + "” was made to fail").localizedDescription();
  EXPECT_TRUE(logged(error("-[CSReportGenerationViewController removeFile:completion:]", 587,
                           "Error while deleting file " + path + ". Error: " + reason)));
  EXPECT_TRUE(GetParam()
                  ? logged(error("-[CSReportGenerationViewController checkFileAndGenerateReport]_block_invoke", 458,
                                 "Error while deleting file Anna.txt. Error: " + reason))
                  : logged(error("-[CSReportGenerationViewController actionSheet:clickedButtonAtIndex:]_block_invoke",
                                 412, "Error while deleting file Anna.txt. Error: " + reason)));
  EXPECT_TRUE(fake.screen.alertViews.empty()) << "nothing is said to the user";
}

TEST_P(Replacing, RemovesNothingForAFormatThatDoesNotExist) {
  putReport("Anna", 10, "the old one");
  putReport("b.txt", 20);
  for (const char* name : {"Anna", ""}) {
    for (const std::int64_t format : {std::int64_t{3}, std::int64_t{-1}}) {
      screen = CSReportGenerationViewController::create();
      open(request(name, format));
      pressGenerate();
      fake.files.forgetCalls();
      answer("Replace");
      settle();
      EXPECT_EQ(fake.files.calls(), Texts{}) << name;
    }
  }
  EXPECT_EQ(report("Anna"), "the old one");
  EXPECT_TRUE(hasReport("b.txt"));
  EXPECT_TRUE(fake.log.contains("Error while deleting file Anna. Error: “Anna” couldn’t be removed: Invalid argument"));
}

TEST_P(Replacing, ComesAfterTheWarningOfAttachments) {
  putReport("Anna.txt", 10, "the old one");
  screen->setHasAttachments(true);
  open(request("Anna", kText));
  pressGenerate();
  answer("Continue");
  EXPECT_EQ(questions(), 2U);
  EXPECT_EQ(lastQuestion().title, "'Anna.txt' already exists. Do you want to replace it?");
  answer("Replace");
  settle();
  EXPECT_THAT(report("Anna.txt"), ::testing::StartsWith("Anna: first"));
}
INSTANTIATE_TEST_SUITE_P(Screens, Replacing, kGenerations, generationName);

class QuestionLooks : public ReportScreenTest {};

TEST_F(QuestionLooks, AreChoosersWithStyledActionsInTheNewerGeneration) {
  using platform::UIAlertActionStyle;
  putReport("Anna.txt", 10);
  open(request("Anna", kText));
  tap(kSortRow);
  tap(kFormatRow);
  pressGenerate();
  screen->setHasAttachments(true);
  pressGenerate();
  ASSERT_EQ(fake.screen.alerts.size(), 4U);
  EXPECT_TRUE(fake.screen.sheets.empty());
  for (const auto& shown : fake.screen.alerts) {
    EXPECT_EQ(shown.alert->preferredStyle(), platform::UIAlertControllerStyle::kActionSheet);
    EXPECT_EQ(shown.alert->message(), std::nullopt);
    EXPECT_EQ(shown.presenter, screen.get());
    EXPECT_TRUE(shown.animated);
    EXPECT_EQ(shown.alert->actions().back().style, UIAlertActionStyle::kCancel);
    EXPECT_FALSE(shown.alert->actions().back().handler);
  }
  EXPECT_EQ(fake.screen.alerts[0].alert->actions()[0].style, UIAlertActionStyle::kDefault);
  EXPECT_EQ(fake.screen.alerts[1].alert->actions()[2].style, UIAlertActionStyle::kDefault);
  EXPECT_EQ(fake.screen.alerts[2].alert->actions()[0].style, UIAlertActionStyle::kDestructive);
  EXPECT_EQ(fake.screen.alerts[3].alert->actions()[0].style, UIAlertActionStyle::kDestructive);
}

TEST_F(QuestionLooks, AreTaggedSheetsInTheScreensViewInTheOlderGeneration) {
  useOldScreens();
  putReport("Anna.txt", 10);
  open(request("Anna", kText));
  tap(kSortRow);
  tap(kFormatRow);
  pressGenerate();
  screen->setHasAttachments(true);
  pressGenerate();
  ASSERT_EQ(fake.screen.sheets.size(), 4U);
  EXPECT_TRUE(fake.screen.alerts.empty());
  std::vector<std::int64_t> tags, cancels, destructive;
  for (const auto& shown : fake.screen.sheets) {
    EXPECT_EQ(shown.inView, &table());
    tags.push_back(shown.sheet->tag());
    cancels.push_back(shown.sheet->cancelButtonIndex());
    destructive.push_back(shown.sheet->destructiveButtonIndex());
  }
  EXPECT_EQ(tags, (std::vector<std::int64_t>{1322, 1323, 1324, 1325}));
  EXPECT_EQ(cancels, (std::vector<std::int64_t>{2, 0, 1, 1}));
  EXPECT_EQ(destructive, (std::vector<std::int64_t>{-1, -1, 0, 0}));
}

TEST_F(QuestionLooks, TranslateTheirButtonsButForTheFormats) {
  for (const char* key : {"Ascending", "Descending", "Cancel", "CSV", "PDF", "Text", "Replace", "Continue",
                          "already exists. Do you want to replace it?"}) {
    fake.mainBundle.strings[key] = "<" + std::string(key) + ">";
  }
  putReport("Anna.txt", 10);
  for (const bool older : {false, true}) {
    if (older) useOldScreens();
    open(request("Anna", kText));
    tap(kSortRow);
    EXPECT_EQ(lastQuestion().buttons, (Texts{"<Ascending>", "<Descending>", "<Cancel>"}));
    tap(kFormatRow);
    EXPECT_EQ(lastQuestion().buttons.at(1), older ? "CSV" : "PDF");
    EXPECT_EQ(lastQuestion().buttons.at(older ? 0 : 3), "<Cancel>");
    screen->setHasAttachments(true);
    pressGenerate();
    EXPECT_EQ(lastQuestion().buttons, (Texts{"<Continue>", "<Cancel>"}));
    screen->setHasAttachments(false);
    pressGenerate();
    EXPECT_EQ(lastQuestion().buttons, (Texts{"<Replace>", "<Cancel>"}));
    EXPECT_EQ(lastQuestion().title, "'Anna.txt' <already exists. Do you want to replace it?>");
  }
}

TEST_F(QuestionLooks, IgnoreSheetsOfOthers) {
  open(request("Anna", kText));
  platform::UIActionSheet sheet(std::nullopt, screen, "Cancel", std::nullopt, {"A", "B"});
  for (const std::int64_t tag : {0, 1321, 1326}) {
    sheet.setTag(tag);
    sheet.clickButton(1);
  }
  EXPECT_FALSE(screen->sortDesc());
  EXPECT_EQ(screen->fileFormat(), 2U);
  settle();
  EXPECT_FALSE(hasReport("Anna.txt"));
}

}  // namespace
}  // namespace chatsum::test
