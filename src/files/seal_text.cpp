#include "files/seal_text.h"

#include <algorithm>

#include "files/journal_text.h"

namespace tavrel {
namespace {

constexpr std::size_t kHashDigits = 16;

constexpr BothLanguages kSeal{"seal: ", "Siegel: "};
constexpr BothLanguages kRows{" rows, ", " Zeilen, "};

// "2026-03-14 10:00:00 +01:00" of "2026-03-14T10:00:00+01:00".
std::string MomentText(std::string time) {
  constexpr std::size_t kDate = 10;
  constexpr std::size_t kSeconds = 19;
  if (time.size() > kSeconds) {
    time.insert(kSeconds, " ");
    time[kDate] = ' ';
  }
  return time;
}

std::string TextOf(const JournalEntry& seal, Language language) {
  return std::string(kSeal.In(language)) + std::to_string(seal.Number("rows")) +
         std::string(kRows.In(language)) + seal.Text("data").substr(0, kHashDigits) + ", " +
         MomentText(seal.Text("time"));
}

}  // namespace

std::string LastSealText(std::string_view journal, Language language) {
  constexpr std::string_view kMark = R"("kind":"seal")";
  std::size_t mark = journal.rfind(kMark);
  while (mark != std::string_view::npos) {
    const std::size_t before = journal.rfind('\n', mark);
    const std::size_t first = before == std::string_view::npos ? 0 : before + 1;
    const std::size_t end = std::min(journal.find('\n', mark), journal.size());
    auto fields = ReadJson(journal.substr(first, end - first));
    if (fields) {
      const JournalEntry line{"", std::move(*fields)};
      if (line.Text("kind") == journal::kSeal) {
        return TextOf(line, language);
      }
    }
    mark = first == 0 ? std::string_view::npos : journal.rfind(kMark, first - 1);
  }
  return "";
}

}  // namespace tavrel
