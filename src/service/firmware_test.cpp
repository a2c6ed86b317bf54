#include "service/firmware_test.h"

#include "link/registers.h"
#include "service/instrument_use.h"
#include "service/service_texts.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr int kCommandIndex = 0;

}  // namespace

void FirmwareTest::Open() {
  const int inet = SelectedInet();
  if (!MayTest(inet)) {
    return;
  }
  OpenScreen(inet);
  Clear();
}

bool FirmwareTest::MayTest(int inet) {
  const std::string tests = TestsAtWork(Parts().state, inet, Parts().is_controller_on);
  return tests.empty() || Parts().dialogs.AskYes(
                              {service_text::kAtWork.Text(UserLanguage(Parts().state),
                                                          {InstrumentName(inet).substr(1), tests}),
                               title_, BoxIcon::kWarning, true});
}

LinkResult FirmwareTest::Order(std::int16_t command) {
  const LinkResult result =
      Write(Parts().link, Register{Inet(), reg::kMailbox, kCommandIndex}, command);
  Parts().buffers.Begin(Inet());
  return result;
}

// A reply of an older exchange would be taken for the end.
FirmwareTest::Progress FirmwareTest::LookForEnd() {
  if (Parts().link.Simulated) {
    return {LinkResult::kGood, true};
  }
  const Reading command = ReadAlone(Parts().link, Register{Inet(), reg::kMailbox, kCommandIndex});
  return {command.status, command.IsGood() && command.word == 0};
}

Reading FirmwareTest::Result(int index, std::int16_t simulated) {
  const Reading result = ReadAlone(Parts().link, Register{Inet(), reg::kMailbox, index});
  return Parts().link.Simulated ? Reading{result.status, simulated} : result;
}

}  // namespace tavrel
