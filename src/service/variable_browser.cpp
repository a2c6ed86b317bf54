#include "service/variable_browser.h"

#include "base/number.h"
#include "link/registers.h"
#include "service/instrument_use.h"
#include "service/service_texts.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr int kOwnType = 4;  // the variant of which this system knows the registers
constexpr std::chrono::seconds kLongestWait{5};
constexpr BothLanguages kInHand{"   held for ", "   gehalten für "};
constexpr BothLanguages kNotRead{"   being checked for ", "   in Prüfung für "};
constexpr int kWordHexColumn = 1;
constexpr int kWordDecColumn = 2;
constexpr RegisterSheet::Heads kVariableHeads = {{"addr", "hex", "dec", "designation"}};

std::string RowName(int slot, Language language) {
  return service_text::kRow.Text(language, {std::to_string(slot)});
}

std::string FourHexDigits(std::int16_t word) {
  const std::string digits = Hex(word);
  return std::string(4 - digits.size(), '0') + digits;
}

// What becomes of the recordings of an input.
const BothLanguages& ConsequenceOf(const Register& to) {
  if (to.letter == reg::kBuffered) {
    return service_text::kClearsSeries;
  }
  return to.letter == reg::kSampling ? service_text::kSampling : service_text::kHandsOver;
}

}  // namespace

void VariableBrowser::Open() {
  type_sel_ = Parts().link.Mode().TypeSel;
  layout_ = LayoutOfType(type_sel_);
  RegisterSheet::Open();
}

std::string VariableBrowser::Caption() const {
  const std::string name =
      layout_.Name.empty() ? InstrumentName() : " " + std::string(layout_.Name);
  return name + "   (" + std::to_string(Rows()) + ")";
}

const RegisterSheet::Heads& VariableBrowser::ColumnHeads() const {
  return kVariableHeads;
}

bool VariableBrowser::IsEditable(int column) const {
  return column == kWordHexColumn || column == kWordDecColumn;
}

std::string VariableBrowser::TextOf(int row, int column) const {
  const SheetValue& value = ValueOf(row);
  switch (column) {
    case 0:
      return layout_.Key(row);
    case kWordHexColumn:
      return value.Digits;
    case kWordDecColumn:
      return value.Digits.empty() ? "" : std::to_string(value.Word);
    default:
      return std::string(DesignationOf(type_sel_, layout_.At(Inet(), row))) + value.Remark;
  }
}

LinkResult VariableBrowser::BeginReading() {
  waited_ = {};
  waits_since_.reset();
  Parts().link.LinkAbort();
  return LinkResult::kGood;
}

// ---- Reading.

RowReading VariableBrowser::ReadRow(int row) {
  const Register which = layout_.At(Inet(), row);
  const std::vector<int> takers = SlotsOf(which);
  return which.letter == reg::kOldestValue && !takers.empty()
             ? ReadSample(which, takers)
             : RowOf(ReadAlone(Parts().link, which));
}

RowReading VariableBrowser::RowOf(const Reading& reading) const {
  return {reading.status, reading.IsGood()
                              ? std::optional(SheetValue{Parts().link.ReplyText, reading.word, ""})
                              : std::nullopt};
}

// The recordings that use the series of the register; none in simulation, where nothing is handed
// over.
std::vector<int> VariableBrowser::SlotsOf(const Register& which) const {
  const bool is_of_series = which.letter == reg::kOldestValue || which.letter == reg::kBuffered ||
                            which.letter == reg::kSampling;
  return is_of_series && type_sel_ == kOwnType && !Parts().link.Simulated
             ? SlotsThatRecord(Parts().state, which.inet, which.index)
             : std::vector<int>();
}

RowReading VariableBrowser::ReadSample(const Register& which, const std::vector<int>& takers) {
  const auto reading = Parts().engine.ReadSample(takers, which.index);
  if (!reading && MayWaitLonger()) {
    return {};
  }
  if (waits_since_) {
    waited_ += Parts().clock.Elapsed() - *waits_since_;
    waits_since_.reset();
  }
  return reading ? RowOf(*reading)
                 : RowReading{LinkResult::kNone, ValueInHand(takers, which.index)};
}

bool VariableBrowser::MayWaitLonger() {
  const auto now = Parts().clock.Elapsed();
  waits_since_ = waits_since_.value_or(now);
  return waited_ + (now - *waits_since_) < kLongestWait;
}

SheetValue VariableBrowser::ValueInHand(const std::vector<int>& takers, int input) const {
  const RunState& state = Parts().state;
  for (const int slot : takers) {
    if (state.SampleSeen[slot][input]) {
      const std::int16_t word = state.SampleValue[slot][input];
      return {FourHexDigits(word), word,
              std::string(kInHand.In(TipLanguage())) + RowName(slot, TipLanguage())};
    }
  }
  return {"", 0, std::string(kNotRead.In(TipLanguage())) + RowName(takers.front(), TipLanguage())};
}

// ---- Writing.

bool VariableBrowser::MayWrite(int row) {
  const Register to = layout_.At(Inet(), row);
  const std::vector<int> takers = SlotsOf(to);
  if (takers.empty()) {
    return true;
  }
  std::string tests;
  for (const int slot : takers) {
    tests += "\n" + NameOfTest(Parts().state, slot);
  }
  const Language language = UserLanguage(Parts().state);
  return Parts().dialogs.AskOk(
      {service_text::kWriteSeries.Text(
           language, {layout_.Key(row), InstrumentName(), ConsequenceOf(to).In(language), tests}),
       service_text::kSeriesTitle.Text(language), BoxIcon::kWarning, true});
}

LinkResult VariableBrowser::WriteRow(int row, std::int16_t word) {
  const Register to = layout_.At(Inet(), row);
  const std::vector<int> takers = SlotsOf(to);
  if (!takers.empty()) {
    return WriteSeries(to, word, takers);
  }
  const LinkResult written = tavrel::Write(Parts().link, to, word);
  if (IsGood(written) && to.letter == reg::kControllerState && type_sel_ == kOwnType) {
    Parts().engine.Orders().Drop(to.inet, to.index);
  }
  return written;
}

// What waits is counted first, so that it can be made up for.
LinkResult VariableBrowser::WriteSeries(const Register& to, std::int16_t word,
                                        const std::vector<int>& takers) {
  int stored = 0;
  if (to.letter == reg::kBuffered) {
    const Reading count = ReadAlone(Parts().link, to);
    if (!count.IsGood()) {
      return count.status;
    }
    stored = count.word;
  }
  if (stored > RecordingEngine::kMostToClear || !Parts().engine.MayWriteSeries(takers, to.index)) {
    const Language language = UserLanguage(Parts().state);
    Parts().dialogs.Message({service_text::kReadFirst.Text(language),
                             service_text::kSeriesTitle.Text(language), BoxIcon::kInformation});
    return LinkResult::kNone;
  }
  return Parts().engine.WriteSeries({takers, to, word, stored});
}

std::optional<std::int16_t> VariableBrowser::WordOf(const std::string& text, int column) const {
  return column == kWordHexColumn ? WordOfHex(text) : WordOfDecimal(text);
}

}  // namespace tavrel
