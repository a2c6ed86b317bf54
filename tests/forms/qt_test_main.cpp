#include <gtest/gtest.h>

#include <QApplication>

namespace {

// What the toolkit complains about is a fault of ours, except that there is no screen.
void FailOnWarning(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  const bool lacks_screen = text.startsWith("This plugin does not support");
  if (type != QtDebugMsg && type != QtInfoMsg && !lacks_screen) {
    ADD_FAILURE() << "the toolkit warns: " << text.toStdString();
  }
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (testing::GTEST_FLAG(list_tests)) {
    return RUN_ALL_TESTS();
  }
  const QApplication application(argc, argv);
  qInstallMessageHandler(FailOnWarning);
  QApplication::setStyle("Fusion");
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
