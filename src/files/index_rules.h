#ifndef TAVREL_FILES_INDEX_RULES_H_
#define TAVREL_FILES_INDEX_RULES_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel {

// Which files belong into an index and what is read of them. The families of instruments share
// the directory's form, so the rule follows the link variant TypeSel.
struct IndexRule {
  char Letter;          // first letter of a recording; six digits, the date, follow
  bool TakesSubfiles;   // names with S are listed; foreign extensions and active files are not
  std::size_t Read;     // bytes that are read of each file, from its beginning
  std::size_t Offset;   // where the text of contents begins in them
  std::size_t Bytes;    // and how long it is
  std::size_t Skipped;  // characters in front of the name of the apparatus
};

// The rule for `type_sel`. Any value without a rule of its own gets that of this system, 4.
[[nodiscard]] const IndexRule& IndexRuleOf(int type_sel);

// True if a file may be listed by its name alone, without a directory and in any case.
// `active_capitals` are the names, in capitals, that slots record to; they cannot be opened for
// viewing.
[[nodiscard]] bool IsIndexed(const IndexRule& rule, std::string_view name,
                             const std::vector<std::string>& active_capitals);

// What a row tells beside name and contents; 0, or -1 for the duration: the file does not tell.
struct IndexDetails {
  std::int64_t Date = 0;      // of the beginning as a number, yyyymmddhhmm
  std::int64_t Seconds = -1;  // from the first row to the last
  int Instrument = 0;
};

// From the `piece` that was read of a file of `length` bytes: a header that makes no sense tells
// nothing.
[[nodiscard]] IndexDetails DetailsOf(const IndexRule& rule, std::string_view piece,
                                     std::int64_t length);

// The text of a row from what was read of the file, in UTF-8. Bytes that no text has, such as
// line ends, become blanks.
[[nodiscard]] std::string ContentsOf(const IndexRule& rule, std::string_view piece);

}  // namespace tavrel

#endif  // TAVREL_FILES_INDEX_RULES_H_
