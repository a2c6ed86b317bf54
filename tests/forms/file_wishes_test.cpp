#include "platform/qt/file_wishes.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QLocalSocket>
#include <QSignalSpy>
#include <filesystem>
#include <future>
#include <memory>
#include <vector>

#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

constexpr char kLock[] = "/var/lock/tavrel.lock";

// A copy of the program that listens, in a runtime directory of its own.
class FileWish : public testing::Test {
 protected:
  FileWish() {
    qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(runtime_.Path()));
    wishes_.Listen(kLock);
  }
  ~FileWish() override {
    if (former_.isNull()) {
      qunsetenv("XDG_RUNTIME_DIR");
    } else {
      qputenv("XDG_RUNTIME_DIR", former_);
    }
  }
  FileWish(const FileWish&) = delete;
  FileWish& operator=(const FileWish&) = delete;

  [[nodiscard]] QString SocketPath() const {
    const QDir directory(QString::fromStdString(runtime_.Path()));
    const auto found = directory.entryList({"tavrel-*.socket"}, QDir::System);
    return found.size() == 1 ? directory.filePath(found.front()) : QString();
  }

  // A program that connects by itself.
  [[nodiscard]] std::unique_ptr<QLocalSocket> Guest() const {
    auto guest = std::make_unique<QLocalSocket>();
    guest->connectToServer(SocketPath());
    EXPECT_TRUE(guest->waitForConnected(1000));
    return guest;
  }
  static bool IsCutOff(const QLocalSocket& guest) {
    return guest.state() == QLocalSocket::UnconnectedState;
  }

  // What a second start does, with the event loop of the first one running meanwhile.
  bool SendFromOther(const std::string& lock, const std::string& path) {
    auto sent = std::async(std::launch::async, [&] { return FileWishes::Send(lock, path); });
    EXPECT_TRUE(WaitUntil(
        [&] { return sent.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    return sent.get();
  }

  [[nodiscard]] std::vector<std::string> Wished() const {
    std::vector<std::string> paths;
    for (const auto& call : wished_) {
      paths.push_back(call.at(0).value<std::string>());
    }
    return paths;
  }

  QByteArray former_ = qgetenv("XDG_RUNTIME_DIR");
  TemporaryDirectory runtime_;
  FileWishes wishes_;
  QSignalSpy wished_{&wishes_, &FileWishes::Wished};
};

TEST_F(FileWish, IsTakenByTheCopyThatRuns) {
  EXPECT_TRUE(SendFromOther(kLock, "/data/M260314A.AUT"));
  EXPECT_TRUE(SendFromOther(kLock, "/data/Ofen \xC3\xA4 1.TUB"));
  EXPECT_EQ(Wished(),
            (std::vector<std::string>{"/data/M260314A.AUT", "/data/Ofen \xC3\xA4 1.TUB"}));
}

TEST_F(FileWish, IsNotTakenByTheCopyOfAnotherLock) {
  EXPECT_FALSE(SendFromOther("/home/other/tavrel.lock", "/data/M260314A.AUT"));
  EXPECT_TRUE(Wished().empty());
}

TEST_F(FileWish, IsNotSentIfItIsLongerThanAPathCanBe) {
  EXPECT_TRUE(SendFromOther(kLock, "/" + std::string(4094, 'a')));
  EXPECT_FALSE(SendFromOther(kLock, "/" + std::string(4095, 'a')));
  EXPECT_EQ(Wished().size(), 1U);
}

TEST_F(FileWish, MayComeInPieces) {
  const auto guest = Guest();
  guest->write("/data/M2603");
  guest->flush();
  // The first piece has been looked at by itself when a later wish was taken.
  EXPECT_TRUE(SendFromOther(kLock, "/data/M260314B.AUT"));
  QCoreApplication::processEvents();
  EXPECT_FALSE(IsCutOff(*guest));
  guest->write("14A.AUT\0", 8);
  guest->flush();
  EXPECT_TRUE(WaitUntil([&] { return Wished().size() == 2 && guest->bytesAvailable() > 0; }));
  EXPECT_EQ(Wished(), (std::vector<std::string>{"/data/M260314B.AUT", "/data/M260314A.AUT"}));
  EXPECT_EQ(guest->readAll(), ".");
}

TEST_F(FileWish, ThatIsNoPathIsCutOffWithoutAnAnswer) {
  const std::vector<QByteArray> no_paths = {QByteArray("data/M260314A.AUT\0", 18),
                                            QByteArray("/a\0/b\0", 6), QByteArray("\0", 1),
                                            "/" + QByteArray(5000, 'a')};
  for (const QByteArray& bytes : no_paths) {
    const auto guest = Guest();
    guest->write(bytes);
    guest->flush();
    EXPECT_TRUE(WaitUntil([&] { return IsCutOff(*guest); })) << bytes.left(20).toStdString();
    EXPECT_EQ(guest->bytesAvailable(), 0);
  }
  EXPECT_TRUE(Wished().empty());
}

// Eight who say nothing keep a ninth out until they are cut off.
TEST_F(FileWish, IsTakenAgainWhenThoseWhoSayNothingAreCutOff) {
  std::vector<std::unique_ptr<QLocalSocket>> silent;
  for (int guest = 0; guest < 8; ++guest) {
    silent.push_back(Guest());
    QCoreApplication::processEvents();
  }
  EXPECT_FALSE(SendFromOther(kLock, "/data/M260314A.AUT"));
  for (const auto& guest : silent) {
    EXPECT_TRUE(WaitUntil([&] { return IsCutOff(*guest); }));
  }
  EXPECT_TRUE(SendFromOther(kLock, "/data/M260314B.AUT"));
  EXPECT_EQ(Wished(), std::vector<std::string>{"/data/M260314B.AUT"});
}

TEST_F(FileWish, SocketIsOpenToThisUserAlone) {
  using std::filesystem::perms;
  const perms all = std::filesystem::status(SocketPath().toStdString()).permissions();
  EXPECT_EQ(all & (perms::group_all | perms::others_all), perms::none);
}

// A killed copy takes its socket with it no more than its name.
TEST_F(FileWish, SocketThatAKilledCopyLeftIsReplaced) {
  const QString path = SocketPath();
  ASSERT_FALSE(path.isEmpty());
  const std::string kept = path.toStdString() + ".kept";
  std::filesystem::rename(path.toStdString(), kept);
  {
    FileWishes killed;
    killed.Listen(kLock);
    std::filesystem::create_hard_link(path.toStdString(), kept + "2");
  }
  std::filesystem::rename(kept + "2", path.toStdString());
  FileWishes next;
  QSignalSpy wished(&next, &FileWishes::Wished);
  next.Listen(kLock);
  EXPECT_TRUE(SendFromOther(kLock, "/data/M260314A.AUT"));
  EXPECT_EQ(wished.count(), 1);
  EXPECT_TRUE(Wished().empty());
}

}  // namespace
}  // namespace tavrel
