#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include "platform/qt/qt_dialogs.h"

namespace tavrel {
namespace {

// Boxes while somebody outside wants the end of the program. One that comes all the same is
// counted and left.
class EndingBoxes : public testing::Test {
 protected:
  EndingBoxes() {
    events.WatchEnd([this] { return is_ending; });
    poll.callOnTimeout([this] {
      if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
        ++boxes;
        box->button(QMessageBox::Ok) != nullptr ? box->accept() : box->reject();
      }
    });
    poll.start(1);
    testing::internal::CaptureStderr();
  }

  const Notice notice{"Cannot write file.", "TAVREL.USR", BoxIcon::kWarning};
  bool is_ending = true;
  int boxes = 0;
  QEventLoop loop;
  QTimer poll;
  QtEvents events;
  QtDialogs dialogs{events};
};

TEST_F(EndingBoxes, SayOnTheErrorOutputWhatNobodyWouldAnswer) {
  dialogs.Message(notice);
  EXPECT_EQ(boxes, 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "tavrel: TAVREL.USR: Cannot write file.\n");
}

TEST_F(EndingBoxes, AreAnsweredByWhatDoesNoHarm) {
  EXPECT_FALSE(dialogs.AskOk(notice));
  EXPECT_FALSE(dialogs.AskYes(notice));
  EXPECT_FALSE(dialogs.AskRetry(notice));
  EXPECT_FALSE(dialogs.AskRetryOrExit(notice));
  EXPECT_EQ(dialogs.AskSave(notice), SaveAnswer::kStay);
  EXPECT_FALSE(dialogs.Offer(notice, "Show"));
  EXPECT_EQ(boxes, 0);
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 6);
}

TEST_F(EndingBoxes, ComeAsUsualBeforeThat) {
  is_ending = false;
  dialogs.Message(notice);
  EXPECT_EQ(boxes, 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace tavrel
