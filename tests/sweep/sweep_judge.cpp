#include "tests/sweep/sweep_judge.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "files/journal_check.h"
#include "state/unit_record.h"
#include "tests/sweep/sweep_bench.h"
#include "tests/truth/comparison.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSettings = "TAVREL.USR";
// What the program may make beside what was there.
const std::set<std::string>& OwnFiles() {
  static const std::set<std::string> names = {kSettings, "TAVREL.BAK", "TAVREL.BA2"};
  return names;
}

std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> NamesIn(const std::string& directory) {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : fs::recursive_directory_iterator(directory, error)) {
    // The journals bear the names of the recordings.
    if (!entry.is_directory() && entry.path().parent_path().filename() != "journal") {
      names.push_back(fs::relative(entry.path(), directory).string());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

// The recordings of a slot, one after another.
std::vector<std::string> FilesOf(const SweptPlaces& places, const SweptSlot& slot) {
  std::vector<std::string> files;
  for (const std::string& name : NamesIn(places.home + "/tavdat")) {
    if (name.ends_with("." + slot.ext) && !name.starts_with('.')) {
      files.push_back(name);
    }
  }
  return files;
}

std::vector<std::string> Rows(const std::string& path) {
  std::vector<std::string> rows;
  std::ifstream file(path);
  for (std::string row; std::getline(file, row);) {
    rows.push_back(row);
  }
  return rows;
}

class Judgement {
 public:
  explicit Judgement(const SweptPlaces& places)
      : places_(places), texts_(Rows(places.told)), told_(ReadTold(texts_)) {
    std::ifstream file(places.truth);
    truth_ = ReadLineTruth(file, {});
  }

  SweepVerdict Run() {
    Object(places_.status != 0, "the job ended with status " + std::to_string(places_.status));
    for (const SweptSlot& slot : SweptSlots()) {
      JudgeSlot(slot);
    }
    JudgeOtherFiles();
    verdict_.was_told = WasTold();
    return verdict_;
  }

 private:
  void Object(bool is_fault, const std::string& text) {
    if (is_fault) {
      verdict_.faults.push_back(text);
    }
  }

  // Texts before the last start; names of stages stand in brackets.
  [[nodiscard]] bool WasTold() const {
    int starts = 0;
    for (const std::string& text : texts_) {
      const bool is_start = text == "[start]" || text == "[no start]";
      starts += is_start ? 1 : 0;
      if (starts < 3 && (!text.starts_with('[') || text == "[row shows trouble]")) {
        return true;
      }
    }
    return false;
  }

  void JudgeSlot(const SweptSlot& slot) {
    const auto files = FilesOf(places_, slot);
    Object(files.empty(), slot.ext + ": no recording");
    if (files.empty()) {
      return;
    }
    JudgeSamples(slot, files);
    for (const std::string& name : files) {
      JudgeJournal(name);
    }
    const std::string last = Content(places_.home + "/tavdat/" + files.back());
    UnitRecord header;
    Object(last.size() < sizeof header, files.back() + " has no header");
    if (last.size() >= sizeof header) {
      std::memcpy(&header, last.data(), sizeof header);
      Object(header.UnitRecOn != 1, files.back() + ": the recording has ended");
      Object(header.UnitInet != 1, files.back() + ": the header is spoilt");
    }
    const std::string settings = Content(places_.home + "/" + kSettings);
    Object(settings.find(files.back()) == std::string::npos,
           files.back() + " is not in the settings");
  }

  // All files one behind the other; each begins with its first set twice.
  void JudgeSamples(const SweptSlot& slot, const std::vector<std::string>& files) {
    const std::size_t row_bytes = 2 * slot.inputs.size();
    std::string all;
    Told told;
    for (const std::string& name : files) {
      const std::string bytes = Content(places_.home + "/tavdat/" + name);
      std::string samples = bytes.substr(std::min(bytes.size(), sizeof(UnitRecord)));
      const bool is_first = all.empty();
      if (!is_first && samples.size() >= row_bytes) {
        Object(samples.size() < 2 * row_bytes ||
                   samples.compare(0, row_bytes, samples, row_bytes, row_bytes) != 0,
               name + " does not begin with its first set twice");
        samples.erase(0, row_bytes);
      }
      AddTold(name, files.front(), static_cast<int>(all.size() / row_bytes) - (is_first ? 0 : 1),
              told);
      all += samples;
    }
    const Findings found = Compare(truth_, {files.front(), 1, slot.inputs}, all, told);
    Object(!found.Agrees(),
           slot.ext + ": " + std::to_string(found.rows) + " rows, wrong " +
               std::to_string(found.wrong) + ", torn " + std::to_string(found.torn) + ", twice " +
               std::to_string(found.doubled) + ", lost " + std::to_string(found.lost) +
               " of which told " + std::to_string(found.told_lost) + ", invented " +
               std::to_string(found.invented));
    for (const std::string& detail : found.details) {
      Object(!found.Agrees(), "  " + detail);
    }
  }

  // A journal may stay behind its recording, but never speaks against it.
  void JudgeJournal(const std::string& name) {
    const std::string directory = places_.home + "/tavdat";
    const std::string recording = Content(directory + "/" + name);
    const std::string journal = Content(JournalPath(directory, name));
    const RecordingCheck check = CheckRecording(std::as_bytes(std::span(recording)), journal);
    const std::string finding = check.Findings.empty() ? "" : check.Findings.front();
    Object(check.Verdict == Verdict::kDamaged, name + " is called damaged: " + finding);
  }

  // Rows of `name` lie `offset` rows behind those of the first file.
  void AddTold(const std::string& name, const std::string& first, int offset, Told& told) const {
    for (ToldDoubt doubt : told_.doubts) {
      if (doubt.file == name) {
        doubt.file = first;
        doubt.first_row += offset;
        doubt.last_row += doubt.last_row == ToldDoubt::kOpen ? 0 : offset;
        told.doubts.push_back(doubt);
      }
    }
    for (ToldLoss loss : told_.losses) {
      if (loss.file == name) {
        loss.file = first;
        told.losses.push_back(loss);
      }
    }
  }

  void JudgeOtherFiles() {
    const auto before = NamesIn(places_.base);
    for (const std::string& name : before) {
      const bool is_own = OwnFiles().contains(name) || IsRecording(name);
      Object(!is_own && Content(places_.base + "/" + name) != Content(places_.home + "/" + name),
             name + " was touched");
    }
    for (const std::string& name : NamesIn(places_.home)) {
      const bool was_there = std::find(before.begin(), before.end(), name) != before.end();
      // What cannot be removed stays.
      const bool has_to_stay = places_.failed_call == "unlink" && name.starts_with(".tavrel-");
      Object(!was_there && !OwnFiles().contains(name) && !IsRecording(name) && !has_to_stay,
             name + " was left behind");
    }
    Object(!NamesIn(places_.user).empty(), "the program has moved to the user's own directory");
  }

  // A recording of the job, or the set that is held beside it.
  static bool IsRecording(const std::string& name) {
    const std::string file = fs::path(name).filename().string();
    const std::string base = file.ends_with(".set") ? file.substr(0, file.size() - 4) : file;
    return std::any_of(SweptSlots().begin(), SweptSlots().end(),
                       [&](const SweptSlot& slot) { return base.ends_with("." + slot.ext); });
  }

  const SweptPlaces& places_;
  std::vector<std::string> texts_;
  Told told_;
  LineTruth truth_;
  SweepVerdict verdict_;
};

}  // namespace

void LayBystanders(const std::string& home) {
  std::ofstream(home + "/tavdat/M250102A.OVN", std::ios::binary) << std::string(1020, 'r');
  std::ofstream(home + "/tavdat/notes.txt") << "notes\n";
  std::ofstream(home + "/other.txt") << "other\n";
}

SweepVerdict Judge(const SweptPlaces& places) {
  return Judgement(places).Run();
}

}  // namespace tavrel
