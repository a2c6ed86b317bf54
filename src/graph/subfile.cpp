#include "graph/subfile.h"

#include <cstring>
#include <vector>

#include "base/number.h"
#include "base/text.h"
#include "files/recording_format.h"
#include "graph/view_frame.h"

namespace tavrel {
namespace {

constexpr char kSubfileLetter = 'S';

// Columns of the source that are kept, from 1.
std::vector<int> KeptColumns(const UnitRecord& source) {
  std::vector<int> columns;
  int column = 0;
  for (int input = 1; input <= kInputs; ++input) {
    if (!source.IsRecorded(input)) {
      continue;
    }
    ++column;
    if (IsKept(source, input)) {
      columns.push_back(column);
    }
  }
  return columns;
}

void AppendWord(std::string& bytes, std::int16_t word) {
  std::array<char, kWordBytes> raw{};
  std::memcpy(raw.data(), &word, raw.size());
  bytes.append(raw.data(), raw.size());
}

}  // namespace

bool IsKept(const UnitRecord& source, int input) {
  const bool is_curve = source.UnitColour[input] >= 1;
  return source.IsRecorded(input) && (is_curve || input == source.UnitRef);
}

UnitRecord SubfileHeader(const UnitRecord& source, const SubfileCut& cut) {
  UnitRecord header = source;
  for (int input = 1; input <= kInputs; ++input) {
    if (source.IsRecorded(input) && !IsKept(source, input)) {
      header.UnitInputName[input].Set("");
      header.UnitRole[input] = 0;
    }
  }
  header.UnitChannels = static_cast<std::int16_t>(header.RecordedInputs());
  header.UnitXmax = ToWord(cut.Minutes);
  header.UnitView[0] = static_cast<std::int16_t>(kCodeLeft);
  header.UnitView[2] = static_cast<std::int16_t>(kCodeRight);
  header.UnitOrigin.Set(cut.SourceName);
  return header;
}

std::optional<std::string> SubfileBytes(const UnitRecord& source, const UnitRecord& header,
                                        const SubfileCut& cut, SampleReader& reader) {
  std::string bytes(kHeaderBytes, '\0');
  std::memcpy(bytes.data(), &header, sizeof header);
  const std::vector<int> columns = KeptColumns(source);
  for (int record = cut.FirstRecord; record <= cut.LastRecord; record += source.UnitChannels) {
    for (const int column : columns) {
      const std::optional<std::int16_t> word = reader.Word(record + column);
      if (!word) {
        return std::nullopt;
      }
      AppendWord(bytes, *word);
    }
  }
  return bytes;
}

std::string SubfileName(std::string name) {
  if (!name.empty()) {
    name = kSubfileLetter + AfterCharacters(name, 1);
  }
  return name;
}

bool IsSubfileName(const std::string& name) {
  return UpperCase(FirstCharacters(name, 1)) == std::string(1, kSubfileLetter);
}

}  // namespace tavrel
