#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/uikit/UITextField.h"

namespace chatsum::platform::test {
namespace {

struct Delegate final : UITextFieldDelegate {
  std::vector<std::string> asked;
  bool mayEnd = true;
  bool textFieldShouldEndEditing(UITextField& /*field*/) override {
    asked.push_back("should end");
    return mayEnd;
  }
  void textFieldDidEndEditing(UITextField& field) override { asked.push_back("did end with " + field.text()); }
  bool textFieldShouldReturn(UITextField& /*field*/) override {
    asked.push_back("should return");
    return true;
  }
};

struct Listener final : ChangeListener {
  int changes = 0;
  void changed() override { ++changes; }
};

class TextField : public ::testing::Test {
 protected:
  std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
  Listener listener;
  UITextField field;
  std::vector<std::string> changes;

  void SetUp() override {
    field.setDelegate(delegate);
    field.setListener(&listener);
    field.addTargetForEditingChanged(this, [this](UITextField& changed) { changes.push_back(changed.text()); });
  }
};

TEST_F(TextField, TellsItsTargetsWhatTheUserTypesAndNothingElse) {
  field.setText("Anna");
  EXPECT_TRUE(changes.empty());
  field.edit("Anna B");
  field.edit("");
  EXPECT_EQ(changes, (std::vector<std::string>{"Anna B", ""}));
}

TEST_F(TextField, TellsATargetOnceHoweverOftenItIsAdded) {
  for (int i = 0; i < 3; ++i) {
    field.addTargetForEditingChanged(this, [this](UITextField&) { changes.push_back("again"); });
  }
  field.edit("x");
  EXPECT_EQ(changes, std::vector<std::string>{"again"});
}

TEST_F(TextField, AsksItsDelegateBeforeEditingEnds) {
  field.edit("Anna");
  EXPECT_TRUE(field.isFirstResponder());
  delegate->mayEnd = false;
  EXPECT_FALSE(field.resignFirstResponder());
  EXPECT_TRUE(field.isFirstResponder());
  delegate->mayEnd = true;
  EXPECT_TRUE(field.resignFirstResponder());
  EXPECT_FALSE(field.isFirstResponder());
  EXPECT_EQ(delegate->asked, (std::vector<std::string>{"should end", "should end", "did end with Anna"}));
}

TEST_F(TextField, AsksNobodyWhenItIsNotEdited) {
  EXPECT_TRUE(field.resignFirstResponder());
  EXPECT_TRUE(delegate->asked.empty());
}

TEST_F(TextField, LeavesTheReturnKeyToItsDelegate) {
  field.becomeFirstResponder();
  field.pressReturn();
  EXPECT_EQ(delegate->asked, std::vector<std::string>{"should return"});
  EXPECT_TRUE(field.isFirstResponder());
}

TEST_F(TextField, WorksWithoutADelegate) {
  delegate.reset();
  field.edit("Anna");
  field.pressReturn();
  EXPECT_TRUE(field.resignFirstResponder());
  EXPECT_EQ(field.text(), "Anna");
}

TEST_F(TextField, TellsItsListenerOfTextAndFocus) {
  field.setText("Anna");
  field.setText("Anna");
  EXPECT_EQ(listener.changes, 1);
  field.becomeFirstResponder();
  EXPECT_EQ(listener.changes, 2);
  field.resignFirstResponder();
  EXPECT_EQ(listener.changes, 3);
}

}  // namespace
}  // namespace chatsum::platform::test
