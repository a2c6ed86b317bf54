#ifndef TAVREL_PLATFORM_FILE_CHOICE_H_
#define TAVREL_PLATFORM_FILE_CHOICE_H_

#include <string>
#include <vector>

namespace tavrel {

enum class FileMode { kOpen, kSave };

// What a file dialog is asked for, and what came of it. All texts are UTF-8.
struct FileChoice {
  FileMode Mode = FileMode::kOpen;
  std::string Directory;         // where it begins; after a choice all that stands before the name
  std::string FileName;          // the name offered; after a choice the name, after Cancel empty
  std::string DefaultExtension;  // put behind a name without one, without its point: "prg"
  std::string Filter;            // texts and patterns in turn: "program  (*.prg)|*.prg"
  std::string FullName;          // after a choice Directory and FileName, after Cancel empty
  std::string Title;             // of the dialog; empty: the usual one of its mode

  // The user chose the file of that full path.
  void Take(const std::string& full_name);

  // The user left without a choice. Directory stays.
  void Cancel();
};

// One kind of files that a dialog offers.
struct FileKind {
  std::string Text;                   // without the patterns in brackets at its end
  std::vector<std::string> Patterns;  // "*.prg"
};

// The kinds of a `filter`; a text without patterns behind it is passed over.
[[nodiscard]] std::vector<FileKind> FileKinds(const std::string& filter);

// A font: its family and its size in points.
struct FontChoice {
  std::string Name;
  float Size = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_FILE_CHOICE_H_
