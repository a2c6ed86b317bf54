#include "tests/accessibility/text_room.h"

#include <gtest/gtest.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "docs/manual/form_tour.h"

namespace tavrel {
namespace {

void ExpectRoom(bool is_german) {
  int stops = 0;
  FormTour tour(LabWordsOf(is_german), [&stops](QWidget& form, const QString& name) {
    ++stops;
    for (const QString& text : CutTexts(form)) {
      ADD_FAILURE() << name.toStdString() << ": " << text.toStdString();
    }
    for (const QString& text : CutTextsOfLongNumbers(form)) {
      ADD_FAILURE() << name.toStdString() << ", long numbers: " << text.toStdString();
    }
    return true;
  });
  EXPECT_TRUE(tour.Make());
  EXPECT_GT(stops, 25);
}

// Each form, at the scale of the run.
TEST(TextRoom, IsEnoughForEveryTextInEnglish) {
  ExpectRoom(false);
}

TEST(TextRoom, IsEnoughForEveryTextInGerman) {
  ExpectRoom(true);
}

class NarrowForm : public testing::Test {
 protected:
  QWidget form;
  QLabel label{"unexpected", &form};
  QPushButton button{"Calculation", &form};
};

TEST_F(NarrowForm, NamesALabelThatIsTooNarrow) {
  label.setFixedWidth(label.sizeHint().width() - 1);
  form.show();
  EXPECT_EQ(CutTexts(form).filter("QLabel").size(), 1);
  label.setFixedWidth(label.sizeHint().width());
  EXPECT_EQ(CutTexts(form).filter("QLabel").size(), 0);
}

TEST_F(NarrowForm, NamesAButtonThatIsTooNarrow) {
  button.move(0, 60);
  button.setFixedWidth(button.fontMetrics().horizontalAdvance("Calculation"));
  form.show();
  EXPECT_EQ(CutTexts(form).filter("QPushButton").size(), 1);
}

TEST_F(NarrowForm, NamesALabelThatStandsOverTheEdge) {
  label.adjustSize();
  form.show();
  label.move(form.width() - 5, 0);
  EXPECT_EQ(CutTexts(form).filter("QLabel").size(), 1);
}

TEST_F(NarrowForm, NamesAValueThatIsTooNarrowForItsLongestNumber) {
  label.setText("21.5");
  label.setFixedWidth(label.sizeHint().width());
  form.show();
  EXPECT_EQ(CutTexts(form).size(), 0);
  EXPECT_EQ(CutTextsOfLongNumbers(form).size(), 1);
  EXPECT_EQ(label.text(), "21.5");
}

}  // namespace
}  // namespace tavrel
