#include "files/file_index.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "base/text.h"
#include "files/index_rules.h"
#include "files/reasons.h"
#include "files/recording_format.h"
#include "files/stored_recording.h"
#include "platform/directory_scan.h"
#include "platform/progress_meter.h"
#include "state/settings_store.h"

namespace tavrel {
namespace {

constexpr const char* kDefaultSort = "FD";

// A row while the index is being built, with the spelling that the disk has.
struct Found {
  IndexRow Row;
  std::string Spelling;
};

// Of names that differ in case only, the one stays that opening by this name would find: that in
// capitals, else the least spelling.
void DropSpellings(std::vector<Found>& found) {
  std::sort(found.begin(), found.end(), [](const Found& left, const Found& right) {
    const auto rank = [](const Found& file) {
      return std::tuple(std::string_view(file.Row.Name), file.Spelling != file.Row.Name,
                        std::string_view(file.Spelling));
    };
    return rank(left) < rank(right);
  });
  const auto same_name = [](const Found& left, const Found& right) {
    return left.Row.Name == right.Row.Name;
  };
  found.erase(std::unique(found.begin(), found.end(), same_name), found.end());
}

std::vector<IndexRow> RowsOf(std::vector<Found>& found) {
  const bool all_in_capitals = std::all_of(
      found.begin(), found.end(), [](const Found& file) { return file.Spelling == file.Row.Name; });
  if (!all_in_capitals) {
    DropSpellings(found);
  }
  std::vector<IndexRow> rows;
  rows.reserve(found.size());
  for (Found& file : found) {
    rows.push_back(std::move(file.Row));
  }
  return rows;
}

char LetterOf(IndexColumn column) {
  constexpr std::string_view kLetters = "DLI";
  return kLetters[static_cast<std::size_t>(column)];
}

std::int64_t NumberIn(IndexColumn column, const IndexRow& row) {
  switch (column) {
    case IndexColumn::kDate:
      return row.Details.Date;
    case IndexColumn::kDuration:
      return row.Details.Seconds;
    case IndexColumn::kInstrument:
      break;
  }
  return row.Details.Instrument;
}

bool ByName(const IndexRow& left, const IndexRow& right) {
  return left.Name < right.Name;
}

bool ByContents(const IndexRow& left, const IndexRow& right) {
  return std::tie(left.ContentsKey, left.Name) < std::tie(right.ContentsKey, right.Name);
}

IndexVerdict VerdictOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::kIntact:
      return IndexVerdict::kIntact;
    case Verdict::kNotCovered:
      return IndexVerdict::kNotCovered;
    case Verdict::kDamaged:
      break;
  }
  return IndexVerdict::kDamaged;
}

}  // namespace

IndexProof ProofOf(const std::string& path, Language language, FileFinder& finder) {
  const StoredRecording recording = ReadRecording(path, finder);
  if (!recording.Problem.empty()) {
    return {IndexVerdict::kUnreadable, ReasonIn(language, recording.Problem)};
  }
  if (!MayBeRecording(recording)) {
    return {IndexVerdict::kNoRecording, ""};
  }
  const RecordingCheck check = CheckRecording(recording.File(), recording.Journal);
  std::string findings;
  for (const std::string& finding : check.Findings) {
    findings += (findings.empty() ? "" : "\n") + ReasonIn(language, finding);
  }
  return {VerdictOf(check.Verdict), findings};
}

std::string FileIndex::ListedDirectory() const {
  const std::string& open_path = parts_.state.Settings.OpenPath;
  return open_path.empty() ? DataDirectory(parts_.state) : open_path;
}

bool FileIndex::IsValid() const {
  return parts_.state.IndexValid && directory_ == ListedDirectory();
}

std::optional<Notice> FileIndex::Build(const std::function<void(int percent)>& progress) {
  rows_.clear();
  ++revision_;
  directory_ = ListedDirectory();
  parts_.state.IndexValid = false;
  parts_.events.SetPointer(Pointer::kHourglass);
  const std::string problem = Scan(progress);
  parts_.events.SetPointer(Pointer::kNormal);
  if (!problem.empty()) {
    rows_.clear();
    return Notice{problem, "Creation of Index", BoxIcon::kInformation};
  }
  Sort();
  parts_.state.IndexValid = true;
  if (rows_.empty()) {
    return Notice{"No data-files in  ...\n" + directory_, "Open", BoxIcon::kInformation};
  }
  return std::nullopt;
}

std::string FileIndex::Scan(const std::function<void(int percent)>& progress) {
  const SettingsValues& settings = parts_.state.Settings;
  const IndexRule& rule = IndexRuleOf(settings.TypeSel);
  std::vector<std::string> active;
  for (const std::string& file : settings.ActiveFiles) {
    active.push_back(UpperCase(file));
  }
  std::vector<Found> found;
  ProgressMeter meter(parts_.clock, progress);
  ScanRequest request;
  request.Directory = directory_;
  request.Wants = [&](std::string_view name) { return IsIndexed(rule, name, active); };
  request.LeastBytes = kHeaderBytes;
  request.Bytes = rule.Read;
  request.Found = [&](std::string_view name, std::string_view piece, std::int64_t length) {
    std::string contents = ContentsOf(rule, piece);
    std::string key = UpperCase(contents);
    found.push_back(
        {{UpperCase(name), std::move(contents), std::move(key), DetailsOf(rule, piece, length), {}},
         std::string(name)});
  };
  request.Progress = [&](std::size_t done, std::size_t of) { meter.Step(done, of); };
  std::string problem = ScanDirectory(request);
  rows_ = RowsOf(found);
  return problem;
}

std::optional<std::size_t> FileIndex::RowOf(std::string_view name) const {
  const std::string wanted = UpperCase(Trim(name));
  const auto row = std::find_if(rows_.begin(), rows_.end(),
                                [&](const IndexRow& other) { return other.Name == wanted; });
  return row == rows_.end() ? std::nullopt
                            : std::optional(static_cast<std::size_t>(row - rows_.begin()));
}

void FileIndex::SetProof(std::string_view name, const IndexProof& proof) {
  if (const auto row = RowOf(name)) {
    rows_[*row].Proof = proof;
    ++proof_revision_;
  }
}

void FileIndex::ForgetProofs() {
  bool any = false;
  for (IndexRow& row : rows_) {
    any = any || row.Proof.Verdict != IndexVerdict::kNotAsked;
    row.Proof = IndexProof();
  }
  proof_revision_ += any ? 1 : 0;
}

void FileIndex::Sort() {
  std::string key = UpperCase(Trim(parts_.state.Settings.SortKey));
  if (key != "FA" && key != "FD" && key != "PA" && key != "PD") {
    key = kDefaultSort;
  }
  SetSortKey(key);
  const auto less = key.front() == 'F' ? ByName : ByContents;
  std::sort(rows_.begin(), rows_.end(), less);
  if (key.back() == 'D') {
    std::reverse(rows_.begin(), rows_.end());
  }
  order_ = key;
  ++revision_;
}

void FileIndex::SortBy(IndexColumn column) {
  const std::string down = std::string(1, LetterOf(column)) + "D";
  order_ = order_ == down ? std::string(1, LetterOf(column)) + "A" : down;
  std::sort(rows_.begin(), rows_.end(), [column](const IndexRow& left, const IndexRow& right) {
    return std::pair(NumberIn(column, left), std::string_view(left.Name)) <
           std::pair(NumberIn(column, right), std::string_view(right.Name));
  });
  if (order_.back() == 'D') {
    std::reverse(rows_.begin(), rows_.end());
  }
  ++revision_;
}

void FileIndex::Toggle(const char* down, const char* up) {
  SetSortKey(parts_.state.Settings.SortKey == down ? up : down);
  Sort();
}

void FileIndex::SetSortKey(const std::string& key) {
  std::string& sort_key = parts_.state.Settings.SortKey;
  if (sort_key != key) {
    sort_key = key;
    parts_.state.SettingsChanged = true;
  }
}

}  // namespace tavrel
