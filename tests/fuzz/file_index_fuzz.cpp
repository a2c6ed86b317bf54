#include "files/file_index.h"

#include <filesystem>
#include <set>

#include "base/text.h"
#include "files/index_rules.h"
#include "files/recording_format.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_screen.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

constexpr int kMostEntries = 12;
constexpr int kToggles = 6;

// A directory with entries of any names and kinds, and the index of it.
class DirectoryUnderFire {
 public:
  explicit DirectoryUnderFire(FuzzInput& input) : input_(input) {
    state_.Settings.OpenPath = directory_.Path();
    state_.Settings.TypeSel = input_.Choice(5);
    state_.Settings.SortKey = input_.Text(2);
  }

  void Run() {
    for (int entry = 0; entry < kMostEntries && !input_.IsEmpty(); ++entry) {
      MakeEntry();
    }
    const auto notice = index_.Build([](int percent) {
      Require(percent >= 0 && percent <= 100, "progress is told in percents");
    });
    Require(index_.IsValid(), "a directory that is there can be listed");
    Require(notice.has_value() == index_.Rows().empty(), "an empty index is told");
    CheckRows();
    CheckOrder();
    for (int toggle = 0; toggle < kToggles; ++toggle) {
      Toggle();
    }
  }

 private:
  // Most names look like those of recordings.
  std::string Name() {
    std::string name;
    switch (input_.Choice(4)) {
      case 0:
        name = "M260314" + input_.Text(1) + ".OVN";
        break;
      case 1:
        name = "s" + input_.Text(3) + "." + input_.Text(3);
        break;
      default:
        name = input_.Text(1U + static_cast<std::size_t>(input_.Choice(16)));
    }
    std::replace(name.begin(), name.end(), '/', '_');
    std::replace(name.begin(), name.end(), '\0', '_');
    return name;
  }

  void MakeEntry() {
    const std::string name = Name();
    const std::string path = directory_.File(name);
    std::error_code ignored;
    switch (input_.Choice(8)) {
      case 0:
        fs::create_directory(path, ignored);
        break;
      case 1:
        fs::create_symlink(input_.Flag() ? "nowhere" : directory_.File("M260314A.OVN"), path,
                           ignored);
        break;
      case 2:
        state_.Settings.ActiveFiles.at(static_cast<std::size_t>(input_.Choice(kSlots))) = name;
        break;
      default:
        MakeFile(name);
    }
  }

  void MakeFile(const std::string& name) {
    std::string bytes(static_cast<std::size_t>(input_.Choice(4) == 0 ? 999 : kHeaderBytes), ' ');
    const std::string piece = input_.Text(kTextLength);
    bytes.replace(static_cast<std::size_t>(IndexRuleOf(state_.Settings.TypeSel).Offset),
                  piece.size(), piece);
    directory_.Write(name, bytes);  // where no file can be made there is none
  }

  // The names that belong into the index, in capitals.
  [[nodiscard]] std::set<std::string> Expected() const {
    std::vector<std::string> active;
    for (const std::string& file : state_.Settings.ActiveFiles) {
      active.push_back(UpperCase(file));
    }
    std::set<std::string> names;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(directory_.Path())) {
      const std::string name = entry.path().filename().string();
      const bool is_long =
          entry.is_regular_file(ignored) && fs::file_size(entry.path(), ignored) >= kHeaderBytes;
      const IndexRule& rule = IndexRuleOf(state_.Settings.TypeSel);
      if (is_long && name.front() != '.' && IsIndexed(rule, name, active)) {
        names.insert(UpperCase(name));
      }
    }
    return names;
  }

  void CheckRows() {
    std::set<std::string> names;
    for (std::size_t place = 0; place < index_.Rows().size(); ++place) {
      const IndexRow& row = index_.Rows().at(place);
      names.insert(row.Name);
      // Blanks at the end of a name are not told apart from none.
      Require(Trim(row.Name) != row.Name || index_.RowOf(LowerCase(row.Name)) == place,
              "a row is found in any case");
      Require(row.ContentsKey == UpperCase(row.Contents), "contents are sorted in capitals");
      const bool is_text = std::all_of(row.Contents.begin(), row.Contents.end(), [](char byte) {
        return static_cast<unsigned char>(byte) >= ' ';
      });
      Require(is_text, "contents are one line");
      Require(row.Contents == Trim(row.Contents), "contents are trimmed");
    }
    Require(names.size() == index_.Rows().size(), "each name is listed once");
    Require(names == Expected(), "what belongs into the index is in it, and nothing else");
  }

  void CheckOrder() {
    const std::string& key = state_.Settings.SortKey;
    Require(key == "FA" || key == "FD" || key == "PA" || key == "PD", "the order is a known one");
    for (std::size_t place = 1; place < index_.Rows().size(); ++place) {
      const IndexRow& upper = index_.Rows().at(place - 1);
      const IndexRow& lower = index_.Rows().at(place);
      const int by_contents = key.front() == 'P' ? upper.ContentsKey.compare(lower.ContentsKey) : 0;
      const int by_all = by_contents != 0 ? by_contents : upper.Name.compare(lower.Name);
      Require(key.back() == 'A' ? by_all < 0 : by_all > 0, "rows stand in their order");
    }
  }

  void Toggle() {
    const std::size_t rows = index_.Rows().size();
    if (input_.Flag()) {
      index_.ToggleFileSort();
    } else {
      index_.ToggleProductSort();
    }
    Require(index_.Rows().size() == rows, "sorting loses no row");
    CheckOrder();
  }

  FuzzInput& input_;
  TemporaryDirectory directory_;
  RunState state_;
  FakeEvents events_;
  FakeClock clock_;
  FileIndex index_{{state_, events_, clock_}};
};

}  // namespace
}  // namespace tavrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  const std::string bytes = TextOf(data, size);
  FuzzInput input{std::string_view(bytes)};
  DirectoryUnderFire(input).Run();
  return 0;
}
