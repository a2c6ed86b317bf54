#include <array>
#include <filesystem>
#include <map>
#include <vector>

#include "base/text.h"
#include "tests/files/pump_fixture.h"
#include "tests/fuzz/fuzz_input.h"

namespace tavrel {
namespace {

constexpr std::size_t kScript = 24;  // bytes of the input that say what is done with the file
constexpr int kDeeds = 12;
constexpr const char* kName = "M260314A.OVE";
constexpr const char* kForeign = "M260314B.OVE";  // beside it, and none of the slot's

using Files = std::map<std::string, std::uintmax_t>;  // lengths by name

Files FilesIn(const TemporaryDirectory& directory) {
  Files files;
  for (const auto& entry : std::filesystem::directory_iterator(directory.Path())) {
    if (entry.is_regular_file()) {
      files[entry.path().filename().string()] = entry.file_size();
    }
  }
  return files;
}

// A recording file with any bytes, opened in a slot, and actions on it in any order.
class FileUnderFire {
 public:
  FileUnderFire(const std::string& file, FuzzInput& script) : file_(file), script_(script) {
    room_.port.answer = [this](const std::string& command) { return Answer(command); };
    room_.directory.Write(kForeign, "none of yours");
    slot_ = script_.Choice(kSlots + 1);
    room_.Name(slot_, kName, file_);
  }

  void Run() {
    Open();
    for (int action = 0; action < kDeeds && IsOpen(); ++action) {
      const Files before = FilesIn(room_.directory);
      DoOne();
      CheckNothingLost(before);
      if (IsOpen()) {
        CheckDerived();
      }
    }
    Require(room_.directory.Read(kForeign) == "none of yours", "foreign files stay untouched");
  }

 private:
  std::string& SlotFile() { return room_.state.SlotFile[Index()]; }
  UnitRecord& Unit() { return room_.state.Unit[Index()]; }
  [[nodiscard]] std::size_t Index() const { return static_cast<std::size_t>(slot_); }
  [[nodiscard]] std::int32_t Rows() const { return room_.state.SampleCount[Index()]; }
  bool IsOpen() { return !SlotFile().empty(); }
  std::string PathOfSlot() { return room_.directory.File(SlotFile()); }

  // Most replies are good; some are missing, refused, without data or nonsense.
  std::string Answer(const std::string& command) {
    switch (script_.Choice(8)) {
      case 1:
        return "";
      case 2:
        return "?";
      case 3:
        return script_.Text(4);
      case 4:
        return "8000\r";
      default:
        return command.ends_with('?') ? "01F4\r" : ".";
    }
  }

  void Open() {
    room_.files.OpenRecordingFile(slot_);
    const bool is_stump = file_.size() <= kHeaderBytes / 2;
    Require(room_.directory.Exists(kName) != is_stump, "only a partial file is deleted");
    if (is_stump) {
      Require(!IsOpen(), "a partial file is refused");
      return;
    }
    const std::string now = room_.directory.Read(kName);
    Require(now.starts_with(file_), "opening changes no byte");
    if (!IsOpen()) {
      Require(now == file_, "a refused file stays as it is");
      Require(!room_.dialogs.boxes.empty(), "a refusal is told");
      return;
    }
    // Only the header of a running recording is made whole.
    Require(now.size() == file_.size() || now.size() == kHeaderBytes, "nothing is appended");
    CheckDerived();
  }

  void CheckDerived() {
    const RunState& state = room_.state;
    const UnitRecord& unit = state.Unit[Index()];
    Require(IsTavrelHeader(unit), "an open file has a header of this system");
    Require(Rows() >= 0 && Rows() <= kMaxSampleCount, "rows are counted in 15 bits");
    Require(state.RecInterval[Index()] >= 1, "no division by an interval fails");
    const std::int32_t limit = state.SampleLimit[Index()];
    Require(limit >= 0 && limit * unit.UnitChannels <= kMaxSampleWords, "at most 32000 words");
    const auto bytes = static_cast<std::int64_t>(std::filesystem::file_size(PathOfSlot()));
    Require(Rows() == 0 || SampleByte(unit.UnitChannels, Rows(), 1) <= bytes,
            "every counted row stands in the file");
    const bool reads = state.ReadState[Index()] != ReadState::kIdle;
    Require(!reads || (slot_ != kViewedFile && unit.CanBeRecorded()),
            "rows are written only where inputs and columns agree");
  }

  // Deleting an empty file is the user's own action and not among these.
  void CheckNothingLost(const Files& before) {
    const Files now = FilesIn(room_.directory);
    for (const auto& [name, length] : before) {
      // What is held of a set goes with the recording, an order to switch off with its answer.
      if (name.ends_with(".set") || name == kStopOrdersFile) {
        continue;
      }
      const auto found = now.find(name);
      Require(found != now.end(), "no file vanishes");
      Require(found->second >= length || !IsRecording(name), "no file is cut");
    }
    for (const auto& entry : now) {
      Require(!entry.first.starts_with(".tavrel"), "no temporary file is left");
    }
  }
  static bool IsRecording(const std::string& name) { return name.starts_with("M26"); }

  void DoOne() {
    switch (script_.Choice(11)) {
      case 0:
        Append();
        break;
      case 1:
        Save();
        break;
      case 2:
        ReadAnywhere();
        break;
      case 3:
        room_.Pump(1 + script_.Choice(40));
        break;
      case 4:
        room_.engine.TenSecondTick();
        break;
      case 5:
        room_.engine.FlushFiles();
        break;
      case 6:
        room_.engine.StartRecording(slot_);
        break;
      case 7:
        room_.engine.StopRecording(slot_);
        break;
      case 8:
        room_.engine.EndOfRecording(slot_);
        break;
      case 9:
        MakeNew();
        break;
      default:
        static_cast<void>(room_.files.ReopenRecordingFile(slot_));
    }
  }

  // Rows are numbered so that each can be told from the others.
  void Append() {
    std::array<std::int16_t, kInputs + 1> words{};
    for (std::int16_t& word : words) {
      word = static_cast<std::int16_t>(++next_word_);
    }
    const int channels = Unit().UnitChannels;
    const int given = script_.Choice(4) == 3 ? script_.Choice(kInputs + 2) : channels;
    const int copies = script_.Choice(4);
    const std::int32_t rows = Rows();
    const std::string before = room_.directory.Read(SlotFile());
    const bool done = room_.files.AppendRow(
        slot_, std::span(words.data(), static_cast<std::size_t>(given)), copies);
    Require(!done || (given == channels && copies >= 1 && copies <= 2),
            "a set that does not fit the file is refused");
    Require(Rows() == rows + (done ? copies : 0), "rows move only with a write");
    const std::string now = room_.directory.Read(SlotFile());
    const auto kept = static_cast<std::size_t>(SampleByte(channels, rows, 1));
    Require(now.substr(0, kept) == before.substr(0, kept), "older rows stay");
    Require(done || now == before, "what is refused changes nothing");
    for (int column = 1; done && column <= channels; ++column) {
      Require(room_.files.ReadSample(slot_, Rows() - 1, column) == words.at(column - 1U),
              "what was appended is read");
    }
  }

  // What a save must not touch: the samples.
  void Save() {
    const std::string name = SlotFile();
    const std::string before = room_.directory.Read(name);
    Unit().SetApparatusName(script_.Text(6));
    room_.files.WriteHeader(slot_);
    const std::string now = room_.directory.Read(name);
    if (!IsOpen()) {
      Require(now == before, "a refused save changes nothing");
      return;
    }
    Require(now.substr(0, kHeaderBytes) == BytesOf(Unit()), "the header is what memory holds");
    const std::string samples =
        before.size() > kHeaderBytes ? before.substr(kHeaderBytes) : std::string();
    Require(now.substr(kHeaderBytes) == samples, "samples stay where they are");
    Require(!room_.state.SlotDirty[Index()], "a saved header is not dirty");
  }

  void ReadAnywhere() {
    const std::int32_t row = script_.Flag() ? script_.Word() : script_.Bits<std::int32_t>();
    const int column = script_.Choice(kInputs + 3) - 1;
    const auto word = room_.files.ReadSample(slot_, row, column);
    const bool is_inside = row >= 0 && row < Rows() && column >= 1 && column <= Unit().UnitChannels;
    Require(word.has_value() == is_inside, "samples are read inside the file only");
  }

  void MakeNew() {
    const std::string old_name = SlotFile();
    const std::int16_t interval = static_cast<std::int16_t>(1 + script_.Choice(250));
    const bool made = room_.files.CreateRecordingFile(slot_, interval);
    Require(!made || slot_ != kViewedFile, "the viewed file begins no recording");
    if (!made) {
      return;
    }
    Require(SlotFile() != old_name && IsNameForNewFile(SlotFile()), "a new file has a new name");
    Require(room_.directory.Read(SlotFile()).size() == kHeaderBytes, "a new file is a header");
    Require(Unit().UnitInterval == interval && Rows() == 0, "a new file begins at its start");
  }

  std::string file_;
  FuzzInput& script_;
  PumpFixture room_;
  int slot_ = 0;
  int next_word_ = 0;
};

}  // namespace
}  // namespace tavrel

// The last bytes say what is done, those before them are the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  const std::string bytes = TextOf(data, size);
  const std::size_t file_bytes = bytes.size() - std::min(bytes.size(), kScript);
  FuzzInput script(std::string_view(bytes).substr(file_bytes));
  FileUnderFire(bytes.substr(0, file_bytes), script).Run();
  return 0;
}
