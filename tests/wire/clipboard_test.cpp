// The clipboard of the desktop, read by another program on a screen of the test's own.
#include "platform/qt/qt_clipboard.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QEventLoop>
#include <QImage>
#include <QProcess>
#include <QTimer>

#include "tests/e2e/process.h"

namespace tavrel {
namespace {

constexpr std::chrono::seconds kLimit{20};

// What another program gets in a format, while this one answers it.
QByteArray Pasted(const QString& format) {
  QProcess reader;
  QEventLoop loop;
  QObject::connect(&reader, &QProcess::finished, &loop, &QEventLoop::quit);
  QTimer::singleShot(kLimit, &loop, &QEventLoop::quit);
  reader.start("xclip", {"-selection", "clipboard", "-out", "-target", format});
  loop.exec();
  EXPECT_EQ(reader.state(), QProcess::NotRunning) << "no answer within the limit";
  EXPECT_EQ(reader.exitCode(), 0);
  return reader.readAllStandardOutput();
}

// A red bar and a word.
void Draw(Surface& to) {
  to.SetScale({0, 0, 16, 9});
  to.FillBox({0, 0, 16, 1, {0xFF, 0, 0}});
  to.Print(1, 4, "Röhrenofen");
}

TEST(TheDesktopsClipboard, GivesTheTextWithItsLineEnds) {
  QtClipboard clipboard;
  clipboard.SetText("\"column 02  Tür\"\r\n60\t1,00\r\n");
  EXPECT_EQ(Pasted("UTF8_STRING").toStdString(), "\"column 02  Tür\"\r\n60\t1,00\r\n");
}

TEST(TheDesktopsClipboard, GivesALongTextWhole) {
  const std::string text = std::string(63998, 'x') + "\r\n";
  QtClipboard clipboard;
  clipboard.SetText(text);
  EXPECT_EQ(Pasted("UTF8_STRING").toStdString(), text);
}

TEST(TheDesktopsClipboard, GivesThePictureAsDotsAndAsStrokes) {
  QtClipboard clipboard;
  clipboard.SetText("old");
  clipboard.SetPicture(Draw);
  const QImage image = QImage::fromData(Pasted("image/png"), "PNG");
  EXPECT_EQ(image.size(), QSize(1600, 900));
  EXPECT_EQ(image.pixelColor(800, 50), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(800, 200), QColor(Qt::white));
  const std::string svg = Pasted("image/svg+xml").toStdString();
  EXPECT_NE(svg.find("Röhrenofen"), std::string::npos);
  EXPECT_NE(svg.find("viewBox=\"0 0 1600 900\""), std::string::npos);
  EXPECT_EQ(Pasted("TARGETS").indexOf("UTF8_STRING"), -1);
}

}  // namespace
}  // namespace tavrel

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (testing::GTEST_FLAG(list_tests)) {
    return RUN_ALL_TESTS();
  }
  tavrel::Process screen(
      {"Xvfb", "-displayfd", "1", "-screen", "0", "640x480x24", "-nolisten", "tcp", "-noreset"});
  qputenv("DISPLAY", QByteArray::fromStdString(":" + screen.ReadLine(tavrel::kLimit)));
  qputenv("QT_QPA_PLATFORM", "xcb");
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
