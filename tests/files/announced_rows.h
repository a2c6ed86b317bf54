#ifndef TAVREL_TESTS_FILES_ANNOUNCED_ROWS_H_
#define TAVREL_TESTS_FILES_ANNOUNCED_ROWS_H_

#include <algorithm>
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include "tests/files/recording_bench.h"

namespace tavrel {

// What the user was told of some inputs in some rows.
struct AnnouncedRows {
  int first = 0;
  int last = 0;
  std::string inputs;  // ", inputs 1, 2,"

  [[nodiscard]] bool Covers(int row, int input) const {
    const bool is_input = inputs.find(" " + std::to_string(input) + ",") != std::string::npos;
    return is_input && row >= first && row <= last;
  }
};

inline std::vector<AnnouncedRows> RowsIn(const std::vector<std::string>& texts) {
  std::vector<AnnouncedRows> all;
  for (const std::string& text : texts) {
    const std::size_t rows = text.find(": row");
    const std::size_t inputs = text.find(", input");
    if (rows == std::string::npos || inputs == std::string::npos) {
      continue;
    }
    AnnouncedRows told;
    const char* const names = text.c_str() + rows;
    if (std::sscanf(names, ": rows %d to %d", &told.first, &told.last) != 2 &&
        std::sscanf(names, ": rows %d and %d", &told.first, &told.last) != 2) {
      std::sscanf(names, ": row %d", &told.first);
      told.last = text.find("from here on") != std::string::npos ? 100000 : told.first;
    }
    told.inputs = text.substr(inputs, text.find(": ", inputs) - inputs) + ",";
    all.push_back(told);
  }
  return all;
}

// The first row whose values are of several sets though the user was not told so; 0 for none.
inline int FirstMixedRow(RecordingBench& bench) {
  const auto told = RowsIn(bench.fixture.Announced());
  const auto rows = bench.Rows();
  for (std::size_t place = 0; place < rows.size(); ++place) {
    const int row = static_cast<int>(place) + 1;
    std::set<int> sets;
    for (std::size_t column = 0; column < bench.inputs.size(); ++column) {
      const bool is_told = std::any_of(told.begin(), told.end(), [&](const AnnouncedRows& each) {
        return each.Covers(row, bench.inputs[column]);
      });
      if (!is_told) {
        sets.insert(rows[place][column]);
      }
    }
    if (sets.size() > 1) {
      return row;
    }
  }
  return 0;
}

// Sets between the first and the last one of the file of which no value stands in any row.
inline int MissingSets(RecordingBench& bench) {
  std::set<int> found;
  for (const auto& row : bench.Rows()) {
    found.insert(row.begin(), row.end());
  }
  return found.empty() ? 0 : *found.rbegin() - *found.begin() + 1 - static_cast<int>(found.size());
}

// Sets that the user was told are lost, and by how many they may differ.
struct ToldSets {
  int sets = 0;
  int about = 0;
};

inline ToldSets ToldLost(RecordingBench& bench) {
  ToldSets told;
  const std::string start = "before this row ";
  for (const std::string& text : bench.fixture.Announced()) {
    const std::size_t place = text.find(start);
    if (place == std::string::npos) {
      continue;
    }
    int sets = 0;
    const std::string rest = text.substr(place + start.size());
    static_cast<void>(std::sscanf(rest.c_str(), "%*[a-z ]%d", &sets));
    told.sets += sets;
    told.about += std::max(2, sets / 10);
  }
  return told;
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_FILES_ANNOUNCED_ROWS_H_
