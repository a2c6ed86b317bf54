#ifndef TAVREL_TESTS_SUPPORT_FILE_BENCH_H_
#define TAVREL_TESTS_SUPPORT_FILE_BENCH_H_

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/bench_program.h"

namespace tavrel {

// The dialogs of files on the bench's program, over real directories.
class FileBench {
 public:
  FileBench() {
    program.places = {{"computer", "/"}, {"home", program.home.Path()}};
    program.state.Settings.DefPath = Data();
    program.state.Settings.OpenPath = Data();
    program.state.Settings.SortKey = "FA";
    program.screens.built = {View::kAllOpen, View::kAllCopy};
  }

  [[nodiscard]] std::string Data() const { return program.home.File("tavdat"); }

  // A directory beside the data directory.
  std::string MakeDirectory(const std::string& name) const {
    std::filesystem::create_directories(program.home.File(name));
    return program.home.File(name);
  }

  // A recording of that apparatus in a directory below the bench's home.
  void WriteFile(const std::string& directory, const std::string& name,
                 const std::string& apparatus = "Oven") const {
    UnitRecord unit = BenchProgram::Header(1, 1, 2, false);
    unit.UnitDesignation.Set("OVN:" + apparatus);
    std::string bytes(sizeof unit, '\0');
    std::memcpy(bytes.data(), &unit, sizeof unit);
    program.home.Write(directory + "/" + name, bytes);
  }

  [[nodiscard]] std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const IndexRow& row : open_file.Rows()) {
      names.push_back(row.Name);
    }
    return names;
  }

  BenchProgram program;
  FileIndex& index = program.index;
  OpenFile& open_file = program.open_file;
  CopyFiles& copy_files = program.copy_files;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_FILE_BENCH_H_
