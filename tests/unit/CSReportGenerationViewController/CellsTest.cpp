#include <gtest/gtest.h>

#include "libchatsum/CSReportGenerationViewController/CSLoadingTableViewCell.h"
#include "libchatsum/CSReportGenerationViewController/CSUITableViewCellStyleSubtitle.h"
#include "libchatsum/CSReportGenerationViewController/CSUITableViewCellStyleValue1.h"
#include "platform/fake/FakePlatform.h"
#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UITableView.h"

namespace chatsum::test {
namespace {

using platform::UITableViewCellStyle;

class ReportCells : public ::testing::Test {
 protected:
  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};

  static platform::UILabel& label(CSLoadingTableViewCell& cell) {
    return dynamic_cast<platform::UILabel&>(*cell.viewWithTag(4545));
  }
  static platform::UIActivityIndicatorView& spinner(CSLoadingTableViewCell& cell) {
    return dynamic_cast<platform::UIActivityIndicatorView&>(*cell.viewWithTag(4546));
  }
};

TEST_F(ReportCells, KeepTheirOwnStyleWhateverIsAskedFor) {
  for (const auto style : {UITableViewCellStyle::kDefault, UITableViewCellStyle::kValue2}) {
    EXPECT_EQ(static_cast<int>(CSUITableViewCellStyleValue1(style, "A").style()), 1);
    EXPECT_EQ(static_cast<int>(CSUITableViewCellStyleSubtitle(style, "A").style()), 3);
  }
  EXPECT_EQ(CSUITableViewCellStyleValue1(UITableViewCellStyle::kDefault, "One").reuseIdentifier(), "One");
  EXPECT_EQ(CSUITableViewCellStyleSubtitle(UITableViewCellStyle::kDefault, "Two").reuseIdentifier(), "Two");
}

TEST_F(ReportCells, KeepTheirOwnStyleWhenATableMakesThem) {
  platform::UITableView table(platform::UITableViewStyle::kPlain);
  table.registerClass<CSUITableViewCellStyleValue1>("One");
  table.registerClass<CSUITableViewCellStyleSubtitle>("Two");
  EXPECT_EQ(table.dequeueReusableCellWithIdentifier("One", {0, 0})->style(), UITableViewCellStyle::kValue1);
  EXPECT_EQ(table.dequeueReusableCellWithIdentifier("Two", {0, 0})->style(), UITableViewCellStyle::kSubtitle);
}

TEST_F(ReportCells, HaveALabelAndASpinnerWhileTheyLoad) {
  CSLoadingTableViewCell cell(UITableViewCellStyle::kDefault, "Loading");
  EXPECT_EQ(cell.style(), UITableViewCellStyle::kDefault);
  EXPECT_EQ(cell.reuseIdentifier(), "Loading");
  ASSERT_EQ(cell.subviews().size(), 2U);
  EXPECT_EQ(label(cell).superview(), &cell);
  EXPECT_EQ(label(cell).textAlignment(), platform::TextAlignment::kCenter);
  EXPECT_EQ(label(cell).textColor(), platform::kLightGrayColor);
  EXPECT_EQ(label(cell).font(), (platform::UIFont{"", 15}));
  EXPECT_EQ(label(cell).text(), "");
  EXPECT_EQ(static_cast<int>(spinner(cell).style()), 2);
  EXPECT_FALSE(spinner(cell).isAnimating());
}

TEST_F(ReportCells, CentreTheLabelWithTheSpinnerAtItsLeft) {
  CSLoadingTableViewCell cell(UITableViewCellStyle::kDefault, "Loading");
  cell.setFrame({{0, 88}, {320, 44}});
  for (int pass = 0; pass < 3; ++pass) {
    cell.layoutSubviews();
    EXPECT_EQ(label(cell).frame(), (Rect{{110, 9.5}, {100, 25}}));
    EXPECT_EQ(spinner(cell).frame(), (Rect{{80, 9.5}, {25, 25}}));
    EXPECT_TRUE(spinner(cell).isAnimating());
    EXPECT_EQ(cell.subviews().size(), 2U);
  }
}

TEST_F(ReportCells, StartTheSpinnerAgainOnTheNextLayoutPass) {
  CSLoadingTableViewCell cell(UITableViewCellStyle::kDefault, "Loading");
  cell.layoutSubviews();
  spinner(cell).stopAnimating();
  cell.layoutSubviews();
  EXPECT_TRUE(spinner(cell).isAnimating());
}

TEST_F(ReportCells, ShowTheKeyWhenTheHostHasNoWordForIt) {
  CSLoadingTableViewCell cell(UITableViewCellStyle::kDefault, "Loading");
  cell.layoutSubviews();
  EXPECT_EQ(label(cell).text(), "Loading");
  fake.mainBundle.strings["Loading"] = "Wird geladen";
  cell.layoutSubviews();
  EXPECT_EQ(label(cell).text(), "Wird geladen");
}

}  // namespace
}  // namespace chatsum::test
