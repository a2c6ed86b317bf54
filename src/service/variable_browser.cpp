#include "service/variable_browser.h"

#include "base/number.h"
#include "link/registers.h"
#include "service/instrument_use.h"

namespace tavrel {
namespace {

constexpr int kOwnType = 4;  // the variant of which this system knows the registers
constexpr std::chrono::seconds kLongestWait{5};
constexpr const char* kSeriesTitle = "recorded input";
constexpr BothLanguages kInHand{"   held for ", "   gehalten für "};
constexpr BothLanguages kNotRead{"   being checked for ", "   in Prüfung für "};
constexpr int kHexColumn = 1;
constexpr int kDecColumn = 2;
constexpr RegisterSheet::Heads kHeads = {{"addr", "hex", "dec", "designation"}};

std::string RowName(int slot) {
  return "row " + std::to_string(slot);
}

std::string FourHexDigits(std::int16_t word) {
  const std::string digits = Hex(word);
  return std::string(4 - digits.size(), '0') + digits;
}

// What becomes of the recordings of an input.
std::string ConsequenceOf(const Register& to) {
  if (to.letter == reg::kBuffered) {
    return "R = 0 clears the buffer of this input. What it holds is lost for the recording: the "
           "value before stands in its place, so that no later value comes into a wrong row.";
  }
  if (to.letter == reg::kSampling) {
    return "S is the sampling time of this input. With another one its values no longer fit those "
           "of the other inputs: from then on they stand in wrong rows of the recording.";
  }
  return "X hands the stored values over. If the instrument drops one by this, the value before "
         "stands in its place in the recording.";
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
  return kHeads;
}

bool VariableBrowser::IsEditable(int column) const {
  return column == kHexColumn || column == kDecColumn;
}

std::string VariableBrowser::TextOf(int row, int column) const {
  const SheetValue& value = ValueOf(row);
  switch (column) {
    case 0:
      return layout_.Key(row);
    case kHexColumn:
      return value.Digits;
    case kDecColumn:
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
      return {FourHexDigits(word), word, std::string(kInHand.In(TipLanguage())) + RowName(slot)};
    }
  }
  return {"", 0, std::string(kNotRead.In(TipLanguage())) + RowName(takers.front())};
}

// ---- Writing.

bool VariableBrowser::MayWrite(int row) {
  const Register to = layout_.At(Inet(), row);
  const std::vector<int> takers = SlotsOf(to);
  if (takers.empty()) {
    return true;
  }
  std::string text = layout_.Key(row) + " of" + InstrumentName() + ":\n" + ConsequenceOf(to) +
                     "\n\nThis input is recorded by";
  for (const int slot : takers) {
    text += "\n" + NameOfTest(Parts().state, slot);
  }
  return Parts().dialogs.AskOk(
      {text + "\n\nWrite it all the same ?", kSeriesTitle, BoxIcon::kWarning, true});
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
    Parts().dialogs.Message(
        {"The recording has to read first what waits in the instrument, and "
         "what is in doubt.\nNothing was written. Try again later.",
         kSeriesTitle, BoxIcon::kInformation});
    return LinkResult::kNone;
  }
  return Parts().engine.WriteSeries({takers, to, word, stored});
}

std::optional<std::int16_t> VariableBrowser::WordOf(const std::string& text, int column) const {
  return column == kHexColumn ? WordOfHex(text) : WordOfDecimal(text);
}

}  // namespace tavrel
