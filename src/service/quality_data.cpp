#include "service/quality_data.h"

#include <cmath>
#include <optional>

#include "base/number.h"
#include "base/text.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "service/quality_texts.h"
#include "service/service_texts.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr std::int16_t kNoCommand = 0;
constexpr int kFirstIndex = 6;  // of the registers
constexpr int kSerialFactor = 10000;
constexpr int kHighestSerial = 999999;  // six characters
constexpr int kHighestUnit = 9999;
constexpr int kFirstSerial = 14001;  // of an instrument that was never set up
constexpr int kSetup = 1;            // index of the boxes
constexpr int kCheck = 2;

// Places of the words.
enum Word : std::size_t {
  kSerialHigh,
  kSerialLow,
  kUnit,
  kSetupDay,
  kSetupYear,
  kSetupName,
  kCheckDay,
  kCheckYear,
  kCheckName,
  kCheckType,
};

constexpr BothLanguages kReading{"reading", "lesen"};
constexpr BothLanguages kWriting{"writing", "schreiben"};

struct Fault {
  const char* date_control;
  const char* date;
  const char* name_control;
  const char* name;
};
constexpr Fault kSetupFault{"Text_Date_1", "date of setup  ...  ?", "Text_Name_1",
                            "first setup by  ...  ?"};
constexpr Fault kCheckFault{"Text_Date_2", "date of calibration  ...  ?", "Text_Name_2",
                            "checked by  ...  ?"};

// The whole number that a text means; nothing if it is not from 1 to `highest`.
std::optional<int> Count(const std::string& text, int highest) {
  const double number = std::nearbyint(ReadNumber(text));
  return number >= 1 && number <= highest ? std::optional(static_cast<int>(number)) : std::nullopt;
}

std::string DigitsOf(std::int16_t day_and_month, std::int16_t year) {
  return FormatMask(day_and_month, "0000") + FormatMask(year, "00");
}

std::int16_t DayAndMonth(const std::string& digits) {
  return ToWord(ReadNumber(FirstCharacters(digits, 4)));
}

std::int16_t Year(const std::string& digits) {
  return ToWord(ReadNumber(AfterCharacters(digits, 4)));
}

}  // namespace

void QualityData::Open() {
  OpenScreen();
  values_ = QualityValues();
  texts_ = Texts();
  qs_loaded_ = false;
  BeginAt(kClear);
}

void QualityData::BeginAt(int step) {
  qs_step_ = step;
  is_sent_ = false;
  values_.IsEditable = false;
  values_.Cmd_Update = false;
  ShowState();
}

QualitySignature& QualityData::SignatureOf(int index) {
  return index == kCheck ? values_.check : values_.setup;
}

// What is typed before the values are there would be written over.
void QualityData::Changed() {
  values_.Cmd_Update = values_.IsEditable;
}

void QualityData::Text_Serial_Change(const std::string& text) {
  values_.Text_Serial = FirstCharacters(text, kSerialLength);
  Changed();
}

void QualityData::Text_Unit_Change(const std::string& text) {
  values_.Text_Unit = FirstCharacters(text, kUnitLength);
  Changed();
}

void QualityData::Text_Date_Change(int index, const std::string& text) {
  SignatureOf(index).Text_Date = text;
  Changed();
}

void QualityData::Text_Name_Change(int index, const std::string& text) {
  SignatureOf(index).Text_Name = FirstCharacters(text, kNameLength);
  Changed();
}

void QualityData::Cmd_Today_Click() {
  if (!values_.IsEditable || !values_.IsCheckShown) {
    return;
  }
  texts_.check_date = DateDigits(Parts().clock.Now());
  values_.check.Text_Date = ShownDate(texts_.check_date, regional_);
  Changed();
}

void QualityData::TakeStep() {
  if (qs_loaded_ && qs_step_ < kFirstWrite) {
    return;
  }
  if (qs_step_ == kClear) {
    Clear();
  } else if (qs_step_ < kTake) {
    ReadNext();
  } else if (qs_step_ == kTake) {
    TakeWords();
  } else if (qs_step_ < kWritten) {
    WriteNext();
  } else {
    BeginAt(kClear);
  }
  ShowState();
}

void QualityData::Clear() {
  Parts().link.LinkAbort();
  Parts().events.SetPointer(Pointer::kHourglass);
  GoOnIfGood(Write(Parts().link, Register{Inet(), reg::kMailbox, 0}, kNoCommand));
}

// A late reply of the register before would be taken for this one's.
void QualityData::ReadNext() {
  const int place = qs_step_ - kFirstRead;
  const Reading reading =
      ReadAlone(Parts().link, Register{Inet(), reg::kQuality, kFirstIndex + place});
  if (reading.IsGood()) {
    qs_value_[place] = reading.word;
  }
  GoOnIfGood(reading.status);
}

void QualityData::WriteNext() {
  const int place = qs_step_ - kFirstWrite;
  is_sent_ = true;
  GoOnIfGood(
      Write(Parts().link, Register{Inet(), reg::kQuality, kFirstIndex + place}, qs_value_[place]));
}

void QualityData::GoOnIfGood(LinkResult result) {
  qs_step_ += IsGood(result) ? 1 : 0;
  if (MissesAnswer(result)) {
    Parts().events.SetPointer(Pointer::kNormal);
  }
}

void QualityData::TakeWords() {
  texts_.serial = qs_value_[kSerialHigh] * kSerialFactor + qs_value_[kSerialLow];
  texts_.unit = qs_value_[kUnit];
  texts_.setup_date = DigitsOf(qs_value_[kSetupDay], qs_value_[kSetupYear]);
  texts_.setup_name = NameText(qs_value_[kSetupName]);
  texts_.check_date = DigitsOf(qs_value_[kCheckDay], qs_value_[kCheckYear]);
  texts_.check_name = NameText(qs_value_[kCheckName]);
  qs_loaded_ = true;
  values_ = QualityValues();
  values_.IsEditable = true;
  if (texts_.serial < 1) {
    TakeFirstSetup();
  } else {
    TakeCheck();
  }
  values_.Text_Serial = std::to_string(texts_.serial);
  values_.setup = {ShownDate(texts_.setup_date, regional_), texts_.setup_name};
  values_.check = {ShownDate(texts_.check_date, regional_), texts_.check_name};
  Parts().events.SetPointer(Pointer::kNormal);
}

void QualityData::TakeFirstSetup() {
  texts_ = Texts();
  texts_.serial = kFirstSerial;
  texts_.setup_date = DateDigits(Parts().clock.Now());
  values_.Cmd_Update = true;
  values_.IsUpdateNext = true;
}

// The person who has set the instrument up is likely to check it first.
void QualityData::TakeCheck() {
  values_.Text_Unit = std::to_string(texts_.unit);
  values_.IsCheckShown = true;
  if (ReadNumber(texts_.check_date) < 1) {
    texts_.check_date = DateDigits(Parts().clock.Now());
    texts_.check_name = texts_.setup_name;
  }
}

std::string QualityData::Cmd_Update_Click() {
  if (!values_.IsEditable || !values_.Cmd_Update) {
    return "";
  }
  Texts texts = texts_;
  std::string fault = TakeTexts(texts);
  if (!fault.empty() || !IsOpen()) {
    return fault;
  }
  texts_ = texts;
  qs_value_ = WordsOf(texts);
  qs_loaded_ = false;
  Parts().events.SetPointer(Pointer::kHourglass);
  BeginAt(kFirstWrite);
  return "";
}

std::string QualityData::Refuse(const char* control, const std::string& words) {
  Parts().dialogs.Message({words, "check", BoxIcon::kInformation});
  return control;
}

// In this order; the first fault is told.
std::string QualityData::TakeTexts(Texts& texts) {
  const std::optional<int> serial = Count(values_.Text_Serial, kHighestSerial);
  if (!serial) {
    return Refuse("Text_Serial", "serial no  ...  ?  ");
  }
  const std::optional<int> unit = Count(values_.Text_Unit, kHighestUnit);
  if (!unit) {
    return Refuse("Text_Unit", "unit  ...  ?       ");
  }
  texts.serial = *serial;
  texts.unit = *unit;
  const std::string fault = TakeSignature(kSetup, texts.setup_date, texts.setup_name);
  return fault.empty() && values_.IsCheckShown
             ? TakeSignature(kCheck, texts.check_date, texts.check_name)
             : fault;
}

std::string QualityData::TakeSignature(int index, std::string& date, std::string& name) {
  const Fault& fault = index == kCheck ? kCheckFault : kSetupFault;
  const QualitySignature& typed = SignatureOf(index);
  name = UpperCase(Trim(typed.Text_Name));
  if (name.empty()) {
    return Refuse(fault.name_control, fault.name);
  }
  if (!IsInitials(name)) {
    return Refuse(fault.name_control,
                  service_text::kLetters.Text(UserLanguage(Parts().state), {fault.name}));
  }
  return TakeDate(typed.Text_Date, date) ? "" : Refuse(fault.date_control, fault.date);
}

// A date that is still as it was shown keeps what it was, in whatever figures the region writes it.
bool QualityData::TakeDate(const std::string& text, std::string& date) const {
  const std::string shown = ShownDate(date, regional_);
  if (text == shown && shown != ShownDate("", regional_)) {
    return true;
  }
  const std::optional<std::string> digits = ReadDate(text, regional_);
  date = digits.value_or(date);
  return digits.has_value();
}

QualityData::Words QualityData::WordsOf(const Texts& texts) {
  Words words{};
  const int serial_high = texts.serial / kSerialFactor;
  words[kSerialHigh] = ToWord(serial_high);
  words[kSerialLow] = ToWord(texts.serial % kSerialFactor);
  words[kUnit] = ToWord(texts.unit);
  words[kSetupDay] = DayAndMonth(texts.setup_date);
  words[kSetupYear] = Year(texts.setup_date);
  words[kSetupName] = NameWord(texts.setup_name);
  words[kCheckDay] = DayAndMonth(texts.check_date);
  words[kCheckYear] = Year(texts.check_date);
  words[kCheckName] = NameWord(texts.check_name);
  return words;
}

void QualityData::ShowState() {
  const auto count = [this](const BothLanguages& words, int first) {
    return std::string(words.In(TipLanguage())) + " ...  " + std::to_string(qs_step_ - first) +
           " / " + std::to_string(kRegisters);
  };
  values_.lbl_State.clear();
  if (IsWriting()) {
    values_.lbl_State = count(kWriting, kFirstWrite);
  } else if (!qs_loaded_ && qs_step_ >= kFirstRead && qs_step_ < kTake) {
    values_.lbl_State = count(kReading, kFirstRead);
  }
}

void QualityData::Quit() {
  const bool is_half_written = IsOpen() && IsWriting() && is_sent_;
  const int written = qs_step_ - kFirstWrite;
  CloseNow();
  if (is_half_written) {
    Parts().dialogs.Message(
        {service_text::kHalfWritten.Text(
             UserLanguage(Parts().state),
             {InstrumentName().substr(1), std::to_string(written), std::to_string(kRegisters)}),
         "update"});
  }
}

}  // namespace tavrel
