#ifndef TAVREL_SERVICE_QUALITY_DATA_H_
#define TAVREL_SERVICE_QUALITY_DATA_H_

#include <array>
#include <cstdint>
#include <string>

#include "base/numbered.h"
#include "platform/regional.h"
#include "service/service_screen.h"

namespace tavrel {

// Who did something to the instrument, and when, as the form shows it.
struct QualitySignature {
  std::string Text_Date;
  std::string Text_Name;
};

// What the form shows.
struct QualityValues {
  std::string Text_Serial;
  std::string Text_Unit;
  QualitySignature setup;     // index 1 of the boxes
  QualitySignature check;     // index 2
  bool IsCheckShown = false;  // the row of the check
  bool IsEditable = false;    // what the instrument holds is there
  bool Cmd_Update = false;    // enabled: something has changed
  bool IsUpdateNext = false;  // the button has the keyboard when the boxes become editable
  std::string lbl_State;      // what goes on; empty: nothing
};

// ALL_QS: the data that the maker keeps about an instrument, stored in the instrument itself.
// Nothing is written before all has been read; after each writing all is read again, so that the
// form shows what the instrument holds.
class QualityData : public ServiceScreen {
 public:
  static constexpr std::size_t kSerialLength = 6;
  static constexpr std::size_t kUnitLength = 4;
  static constexpr std::size_t kNameLength = 2;

  // `regional` outlives the screen.
  QualityData(const ServiceParts& parts, const Regional& regional)
      : ServiceScreen(parts, View::kAllQs), regional_(regional) {}

  void Open() override;
  [[nodiscard]] std::string Caption() const override { return InstrumentName() + ":  QS"; }
  [[nodiscard]] const QualityValues& Values() const { return values_; }

  // The user types. A text that is too long for its place loses its end.
  void Text_Serial_Change(const std::string& text);
  void Text_Unit_Change(const std::string& text);
  void Text_Date_Change(int index, const std::string& text);
  void Text_Name_Change(int index, const std::string& text);

  // The check was today.
  void Cmd_Today_Click();

  // Looks at the texts and writes them if all are good. The name of the box at fault, which a box
  // has told about; empty: none is.
  std::string Cmd_Update_Click();

  // Says so if the instrument holds only a part of the new values.
  void Quit() override;

 protected:
  void TakeStep() override;

 private:
  static constexpr int kRegisters = 10;
  using Words = Numbered<std::int16_t, 0, kRegisters - 1>;

  // The step counts on from the first to the last register.
  enum QsStep {
    kClear = 0,
    kFirstRead = 1,
    kTake = kFirstRead + kRegisters,
    kFirstWrite = 20,
    kWritten = kFirstWrite + kRegisters,
  };

  // The texts as the instrument knows them.
  struct Texts {
    int serial = 0;
    int unit = 0;
    std::string setup_date;  // "ddmmyy"
    std::string setup_name;
    std::string check_date;
    std::string check_name;
  };

  [[nodiscard]] bool IsWriting() const { return qs_step_ >= kFirstWrite && qs_step_ < kWritten; }
  [[nodiscard]] QualitySignature& SignatureOf(int index);
  void Changed();
  void BeginAt(int step);
  void Clear();
  void ReadNext();
  void WriteNext();
  void GoOnIfGood(LinkResult result);
  void TakeWords();
  void TakeFirstSetup();
  void TakeCheck();
  void ShowState();
  [[nodiscard]] std::string Refuse(const char* control, const std::string& words);
  [[nodiscard]] std::string TakeTexts(Texts& texts);
  [[nodiscard]] std::string TakeSignature(int index, std::string& date, std::string& name);
  [[nodiscard]] bool TakeDate(const std::string& text, std::string& date) const;
  [[nodiscard]] static Words WordsOf(const Texts& texts);

  const Regional& regional_;
  QualityValues values_;
  int qs_step_ = kClear;
  bool qs_loaded_ = false;  // the form shows what was read
  Words qs_value_{};
  Texts texts_;           // the working texts: what was read, or is to be written
  bool is_sent_ = false;  // the instrument may hold the first of the new values
};

inline constexpr std::array kQualityTips = {
    ToolTip{"Cmd_Today", {" actual date ", " heutiges Datum "}},
    ToolTip{"Cmd_Update", {" update the EEPROM ", " Werte in der Apparatur speichern "}},
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_QUALITY_DATA_H_
