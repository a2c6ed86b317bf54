#include "platform/qt/qt_shell.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QEvent>
#include <cerrno>

#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

// A desktop whose opener of documents is a script of the test.
class Desktop : public testing::Test {
 protected:
  Desktop() { qputenv("PATH", QByteArray::fromStdString(home.Path()) + ":" + path); }
  ~Desktop() override { qputenv("PATH", path); }
  void TearDown() override {
    EXPECT_TRUE(WaitUntil(HasNoOpener)) << "an opener stays";
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  static bool HasNoOpener() {
    siginfo_t child{};
    return waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) == -1 && errno == ECHILD;
  }
  void Opener(const std::string& script, const std::string& interpreter = "/bin/sh") {
    home.Write("xdg-open", "#!" + interpreter + "\n" + script + "\n");
    chmod(home.File("xdg-open").c_str(), 0700);
  }
  void Open(const std::string& document) {
    shell.OpenDocument(document, [this] { ++failures; });
  }
  bool HasFailed() {
    return WaitUntil([this] {
      QCoreApplication::processEvents();
      return failures > 0;
    });
  }

  QByteArray path = qgetenv("PATH");
  TemporaryDirectory home;
  QtShell shell;
  int failures = 0;
};

TEST_F(Desktop, IsGivenTheDocument) {
  Opener("printf %s \"$1\" > '" + home.File("shown") + "'; mv '" + home.File("shown") + "' '" +
         home.File("done") + "'");
  Open("/a b/H207_512.pdf");
  ASSERT_TRUE(WaitUntil([this] {
    QCoreApplication::processEvents();
    return home.Exists("done");
  }));
  EXPECT_EQ(home.Read("done"), "/a b/H207_512.pdf");
  EXPECT_EQ(failures, 0);
}

TEST_F(Desktop, SaysThatNoProgramTakesTheDocument) {
  for (const char* script : {"exit 3", "exit 4", "kill -9 $$"}) {
    failures = 0;
    Opener(script);
    Open("/H207_512.pdf");
    EXPECT_TRUE(HasFailed()) << script;
    EXPECT_EQ(failures, 1) << script;
  }
}

TEST_F(Desktop, SaysThatItsOpenerDoesNotStart) {
  Opener("", "/no/such/shell");
  Open("/H207_512.pdf");
  EXPECT_TRUE(HasFailed());
  EXPECT_EQ(failures, 1);
}

}  // namespace
}  // namespace tavrel
