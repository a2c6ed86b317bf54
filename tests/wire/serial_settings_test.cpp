#include "platform/qt/serial_settings.h"

#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>
#include <vector>

#include "platform/qt/serial_advice.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(SettingsText, TellsSpeedParityDataAndStopBits) {
  const auto settings = ReadSerialSettings("9600,E,7,1");
  ASSERT_TRUE(settings);
  EXPECT_EQ(settings->Speed, 9600);
  EXPECT_EQ(settings->Parity, QSerialPort::EvenParity);
  EXPECT_EQ(settings->DataBits, QSerialPort::Data7);
  EXPECT_EQ(settings->StopBits, QSerialPort::OneStop);
}

class BrokenSettings : public testing::TestWithParam<const char*> {};

TEST_P(BrokenSettings, AreRefused) {
  EXPECT_FALSE(ReadSerialSettings(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Text, BrokenSettings,
                         testing::Values("", ",,,", "4800", "4800,n,8", "4800,n,8,2,1", "0,n,8,2",
                                         "-4800,n,8,2", "fast,n,8,2", "4800,x,8,2", "4800,,8,2",
                                         "4800,n,9,2", "4800,n,4,2", "4800,n,8,0", "4800,n,8,3",
                                         "99999999999,n,8,2"));

TEST(Advice, NamesTheGroupAndTheCommand) {
  const std::string text = NoRightsAdvice(5, "/dev/ttyUSB0", "dialout", Language::kEnglish);
  EXPECT_NE(text.find("COM5 (/dev/ttyUSB0)"), std::string::npos);
  EXPECT_NE(text.find("sudo usermod -aG dialout $USER"), std::string::npos);
}

TEST(Advice, NeverNamesTheGroupOfTheAdministrators) {
  for (const char* group : {"root", ""}) {
    for (const Language language : {Language::kEnglish, Language::kGerman}) {
      const std::string text = NoRightsAdvice(6, "/dev/ttyUSB12", group, language);
      EXPECT_EQ(text.find("root"), std::string::npos) << text;
      EXPECT_NE(text.find("COM6 (/dev/ttyUSB12)"), std::string::npos);
      EXPECT_NE(text.find("\n\nSUBSYSTEM==\"tty\", KERNEL==\"ttyUSB[0-9]*\", GROUP=\"dialout\", "
                          "MODE=\"0660\"\n\n"),
                std::string::npos)
          << text;
      EXPECT_NE(text.find("sudo usermod -aG dialout $USER"), std::string::npos);
    }
  }
  EXPECT_NE(NoRightsAdvice(1, "/dev/sensor", "", Language::kEnglish).find("KERNEL==\"sensor\""),
            std::string::npos);
}

TEST(Advice, SpeaksGermanToo) {
  const std::string text = NoRightsAdvice(5, "/dev/ttyUSB0", "dialout", Language::kGerman);
  EXPECT_TRUE(text.starts_with("Sie haben kein Recht, COM5 (/dev/ttyUSB0) zu öffnen.\n\n"));
  EXPECT_NE(text.find("\n\nsudo usermod -aG dialout $USER\n\n"), std::string::npos);
}

// The tests may run for the administrator, whose files belong to the group that never helps.
TEST(Advice, NamesAGroupOnlyIfItsMembersMayOpenTheDevice) {
  const TemporaryDirectory home;
  home.Write("device", "");
  const std::string device = home.File("device");
  struct stat status {};
  ASSERT_EQ(stat(device.c_str(), &status), 0);
  for (const mode_t mode : {0600U, 0640U, 0620U, 0606U}) {
    ASSERT_EQ(chmod(device.c_str(), mode), 0);
    EXPECT_EQ(GroupThatHelps(device), "") << mode;
  }
  ASSERT_EQ(chmod(device.c_str(), 0660), 0);
  const group* owner = getgrgid(status.st_gid);
  const bool helps = status.st_gid != 0 && owner != nullptr;
  EXPECT_EQ(GroupThatHelps(device), helps ? owner->gr_name : "");
  EXPECT_EQ(GroupThatHelps(home.File("nothing")), "");
}

TEST(Advice, SaysWhichDeviceIsMissing) {
  const std::string text = AdviceFor(5, "/dev/ttyUSB0", QSerialPort::DeviceNotFoundError,
                                     "No such file", Language::kEnglish);
  EXPECT_NE(text.find("COM5 does not exist: there is no device /dev/ttyUSB0"), std::string::npos);
}

TEST(Advice, NamesTheProgramThatHasThePort) {
  EXPECT_EQ(LockAdvice(1, "/dev/ttyS0", "/var/lock/LCK..ttyS0", {LockState::kHeld, 1234, "minicom"},
                       Language::kEnglish),
            "COM1 (/dev/ttyS0) is in use.\n\n"
            "minicom (process 1234) has it open. Close that program, or choose another port.");
  EXPECT_NE(LockAdvice(1, "/dev/ttyS0", "", {LockState::kHeld, 1234, ""}, Language::kEnglish)
                .find("The process 1234 has it open."),
            std::string::npos);
  EXPECT_NE(LockAdvice(1, "/dev/ttyS0", "", {LockState::kHeld, 0, ""}, Language::kEnglish)
                .find("Another program has it open."),
            std::string::npos);
}

TEST(Advice, NamesALockThatOnlyTheUserCanDelete) {
  EXPECT_EQ(LockAdvice(12, "/dev/ttyS11", "/var/lock/LCK..ttyS11", {LockState::kLeft, 77, ""},
                       Language::kEnglish),
            "COM12 (/dev/ttyS11) is locked: the lock file /var/lock/LCK..ttyS11 was left there by "
            "a program that does not run any more.\n\n"
            "If no program has the port open, delete this file.");
}

// Of each text a part that is the language's own, and one that both have.
TEST(Advice, IsInTheLanguageOfTheUserThroughout) {
  const KnownDevice gone{.Path = "/dev/ttyUSB3",
                         .IsLink = false,
                         .Plugged = Adapter{"0403:6001", "A50285", "/sys/devices/1-1", "1.0/0"},
                         .HasItsOwnSerial = true};
  const auto lock = [](LockState state, const std::string& program) {
    return [state, program](Language language) {
      return LockAdvice(7, "/dev/ttyUSB2", "/var/lock/L", {state, 1234, program}, language);
    };
  };
  struct Case {
    std::function<std::string(Language)> Text;
    std::string Same;
    std::string English;
    std::string German;
  };
  const std::vector<Case> cases = {
      {lock(LockState::kHeld, "minicom"), "COM7 (/dev/ttyUSB2)", "minicom (process 1234) has it",
       "minicom (Prozess 1234) hat sie"},
      {lock(LockState::kHeld, ""), "COM7 (/dev/ttyUSB2)", "The process 1234", "Der Prozess 1234"},
      {lock(LockState::kLeft, ""), "/var/lock/L", "does not run any more", "nicht mehr läuft"},
      {lock(LockState::kUnclear, ""), "/var/lock/L", "does not say which", "sagt nicht, welches"},
      {[](Language language) { return NoLockAdvice(9, "/dev/x", "/L", "EROFS", language); },
       "EROFS", "cannot be made", "kann nicht angelegt werden"},
      {[](Language language) { return NoPortAdvice(31, language); }, "COM31", "There is no port",
       "Es gibt keine Schnittstelle"},
      {[](Language language) { return BadSettingsAdvice("1,2,3", language); }, "\"1,2,3\"",
       "cannot be set", "lässt sich nicht einstellen"},
      {[&gone](Language language) { return GoneAdvice(8, gone, language); }, "A50285",
       "as soon as it is back", "sobald es wieder da ist"},
      {[&gone](Language language) { return StillGoneAdvice(8, gone, language); }, "/dev/ttyUSB3",
       "Is the adapter plugged in?", "Ist der Adapter eingesteckt?"},
      {[](Language language) {
         return AdviceFor(5, "/dev/y", QSerialPort::DeviceNotFoundError, "none", language);
       },
       "/dev/y", "does not exist", "ist nicht da"},
      {[](Language language) {
         return AdviceFor(5, "/dev/y", QSerialPort::UnknownError, "EIO", language);
       },
       ": EIO", "does not open", "lässt sich nicht öffnen"},
  };
  for (const Case& each : cases) {
    const std::string english = each.Text(Language::kEnglish);
    const std::string german = each.Text(Language::kGerman);
    EXPECT_THAT(english, AllOf(HasSubstr(each.Same), HasSubstr(each.English)));
    EXPECT_THAT(german, AllOf(HasSubstr(each.Same), HasSubstr(each.German)));
    for (const char* word : {" the ", " is ", " has ", "port ", "device", "program "}) {
      EXPECT_THAT(german, Not(HasSubstr(word)));
    }
  }
}

TEST(Advice, PassesOnWhatTheSystemSaysOtherwise) {
  const std::string text = AdviceFor(1, "/dev/ttyS0", QSerialPort::UnknownError,
                                     "Input/output error", Language::kEnglish);
  EXPECT_EQ(text, "COM1 (/dev/ttyS0) does not open: Input/output error");
}

}  // namespace
}  // namespace tavrel
