#include "state/messages.h"

#include <gtest/gtest.h>

#include "tests/support/fake_screen.h"

namespace tavrel {
namespace {

class MessagesTest : public testing::Test {
 protected:
  FakeDialogs dialogs_;
  Messages messages_{dialogs_};

  [[nodiscard]] std::vector<std::string> Announced() const {
    std::vector<std::string> texts;
    for (const Notice& notice : dialogs_.announced) {
      texts.push_back(notice.Text);
    }
    return texts;
  }
};

TEST_F(MessagesTest, ShowsAReportAtOnceInAUsersOwnAction) {
  messages_.Report(3, {"Cannot open file.", "M260314A.OVE"});
  ASSERT_EQ(dialogs_.boxes.size(), 1U);
  EXPECT_EQ(dialogs_.boxes[0].Title, "M260314A.OVE");
}

TEST_F(MessagesTest, KeepsReportsOfTheCycleAndAnnouncesThemInTheirOrder) {
  {
    const Messages::Deferral outer(messages_);
    const Messages::Deferral inner(messages_);
    messages_.Report(1, {"one", ""});
    messages_.Report(2, {"two", ""});
  }
  EXPECT_TRUE(dialogs_.boxes.empty());
  messages_.ShowKept();
  EXPECT_EQ(Announced(), (std::vector<std::string>{"one", "two"}));
  messages_.ShowKept();
  EXPECT_EQ(Announced().size(), 2U);
}

TEST_F(MessagesTest, TellsTheSameTextForASlotOnlyOnceUntilItRecovered) {
  const Messages::Deferral deferral(messages_);
  messages_.Report(1, {"disk full", ""});
  messages_.Report(1, {"disk full", ""});
  messages_.Report(2, {"disk full", ""});
  messages_.ShowKept();
  EXPECT_EQ(Announced().size(), 2U);

  messages_.Recovered(1);
  messages_.Report(1, {"disk full", ""});
  messages_.Report(2, {"disk full", ""});
  messages_.ShowKept();
  EXPECT_EQ(Announced().size(), 3U);
}

TEST_F(MessagesTest, TellsReportsWithoutASlotEachTime) {
  const Messages::Deferral deferral(messages_);
  messages_.Report(0, {"same", ""});
  messages_.Report(0, {"same", ""});
  messages_.ShowKept();
  EXPECT_EQ(Announced().size(), 2U);
}

}  // namespace
}  // namespace tavrel
