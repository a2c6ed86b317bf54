#include "widgets/legible_colours.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPushButton>
#include <vector>

#include "tests/support/dark_colours.h"
#include "widgets/glyph_button.h"

namespace tavrel {
namespace {

// The desktop's colours before and after each test.
class Colours : public testing::Test {
 protected:
  ~Colours() override { QApplication::setPalette(desktop); }

  static void ExpectLegible(const QPalette& palette) {
    const std::vector<std::pair<QPalette::ColorRole, QPalette::ColorRole>> pairs = {
        {QPalette::WindowText, QPalette::Window},
        {QPalette::Text, QPalette::Base},
        {QPalette::ButtonText, QPalette::Button},
        {QPalette::ButtonText, QPalette::Window}};
    for (const auto& [text, ground] : pairs) {
      const double dim = ContrastOf(palette.color(QPalette::Disabled, text),
                                    palette.color(QPalette::Disabled, ground));
      EXPECT_GE(dim, kDisabledContrast) << text << " on " << ground;
      EXPECT_LT(dim, 0.6 * ContrastOf(palette.color(QPalette::Active, text),
                                      palette.color(QPalette::Active, ground)));
    }
  }

  const QPalette desktop = QApplication::palette();
};

// The strongest contrast with the middle of the upper part, where nothing is drawn.
double ContrastOnButton(QAbstractButton& button) {
  QFont large = button.font();
  large.setPointSize(40);
  large.setBold(true);
  button.setFont(large);
  button.resize(300, 100);
  const QImage picture = button.grab().toImage();
  const QColor ground = picture.pixelColor(20, 50);
  double strongest = 1;
  for (int x = 30; x < 270; ++x) {
    for (int y = 20; y < 80; ++y) {
      strongest = std::max(strongest, ContrastOf(picture.pixelColor(x, y), ground));
    }
  }
  return strongest;
}

TEST(Contrast, IsThatOfTheirLuminances) {
  EXPECT_NEAR(ContrastOf(Qt::black, Qt::white), 21, 0.01);
  EXPECT_NEAR(ContrastOf(Qt::white, Qt::white), 1, 0.001);
  EXPECT_NEAR(ContrastOf(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
  EXPECT_EQ(ContrastOf(Qt::red, Qt::blue), ContrastOf(Qt::blue, Qt::red));
}

TEST_F(Colours, OfWhatIsDisabledAreLegibleOnDark) {
  ExpectLegible(WithLegibleDisabled(DarkColours()));
}

TEST_F(Colours, OfWhatIsDisabledAreLegibleOnLight) {
  ExpectLegible(WithLegibleDisabled(QPalette(QColor(0xef, 0xef, 0xef))));
}

TEST_F(Colours, OfTheProgramFollowTheDesktop) {
  const LegibleColours colours;
  ExpectLegible(QApplication::palette());
  QApplication::setPalette(DarkColours());
  ExpectLegible(QApplication::palette());
  EXPECT_EQ(QApplication::palette().color(QPalette::Window), QColor(0x2a, 0x2e, 0x32));
  QApplication::setPalette(QPalette(QColor(0xef, 0xef, 0xef)));
  ExpectLegible(QApplication::palette());
}

TEST_F(Colours, OfDisabledButtonsAreSeen) {
  const LegibleColours colours;
  QApplication::setPalette(DarkColours());
  QPushButton plain("HHH");
  GlyphButton drawn(nullptr, nullptr);
  drawn.setText("HHH");
  for (QAbstractButton* button : std::vector<QAbstractButton*>{&plain, &drawn}) {
    button->setEnabled(false);
    EXPECT_GE(ContrastOnButton(*button), 3) << button->metaObject()->className();
    button->setEnabled(true);
    EXPECT_GE(ContrastOnButton(*button), 7) << button->metaObject()->className();
  }
}

}  // namespace
}  // namespace tavrel
