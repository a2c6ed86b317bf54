#include "main/untold_notices.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string_view>

#include "main/main_texts.h"
#include "platform/file_system.h"
#include "platform/json.h"
#include "state/box_titles.h"

namespace tavrel {
namespace {

constexpr std::size_t kLargestFile = 1'000'000;  // bytes
constexpr std::size_t kMostLines = 200;          // as many as the window of notices holds
constexpr const char* kTimeMember = "time";
constexpr const char* kTitleMember = "title";
constexpr const char* kText = "text";
constexpr const char* kIcon = "icon";

std::string TimeText(const WallTime& time) {
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d", time.Year, time.Month, time.Day,
                time.Hour, time.Minute);
  return text;
}

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::string TextIn(const JsonValue& line, std::string_view name) {
  const JsonValue* value = line.Find(name);
  const std::string* text = value != nullptr ? value->Text() : nullptr;
  return text != nullptr ? *text : "";
}

BoxIcon IconIn(const JsonValue& line) {
  const JsonValue* value = line.Find(kIcon);
  const auto number = value != nullptr ? value->Whole() : std::nullopt;
  const bool is_one = number && *number >= 0 && *number <= static_cast<int>(BoxIcon::kCritical);
  return is_one ? static_cast<BoxIcon>(*number) : BoxIcon::kWarning;
}

// Empty for anything that KeepUntold does not write.
std::optional<Notice> NoticeOf(const std::string& line, Language language) {
  const auto value = ReadJson(line);
  const std::string text = value ? TextIn(*value, kText) : "";
  if (text.empty()) {
    return std::nullopt;
  }
  return Notice{main_text::kAtTheEnd.Text(language, {TextIn(*value, kTimeMember), text}),
                TextIn(*value, kTitleMember), IconIn(*value)};
}

}  // namespace

std::string KeepUntold(const std::string& directory, const std::vector<Notice>& notices,
                       const WallTime& now) {
  const std::string path = JoinPath(directory, kUntoldFile);
  NoAnswer no_answer;
  std::vector<std::string> lines =
      LinesOf(ReadWholeFile(path, kLargestFile, no_answer).value_or(""));
  if (no_answer.Why != Failure::kNone) {
    return no_answer.Text;
  }
  for (const Notice& notice : notices) {
    lines.push_back(JsonText(JsonValue::Members{{kTimeMember, TimeText(now)},
                                                {kTitleMember, notice.Title},
                                                {kText, notice.Text},
                                                {kIcon, static_cast<int>(notice.Icon)}}));
  }
  std::string bytes;
  for (std::size_t at = lines.size() - std::min(lines.size(), kMostLines); at < lines.size();
       ++at) {
    bytes += lines[at] + "\n";
  }
  return ReplaceFile(path, bytes);
}

std::vector<Notice> TakeUntold(const std::string& directory, Language language) {
  const std::string path = JoinPath(directory, kUntoldFile);
  std::vector<Notice> notices;
  bool is_whole = true;
  for (const std::string& line : LinesOf(ReadWholeFile(path, kLargestFile).value_or(""))) {
    const auto notice = NoticeOf(line, language);
    is_whole = is_whole && notice;
    if (notice) {
      notices.push_back(*notice);
    }
  }
  if (!is_whole) {
    notices.push_back({std::string(kUntoldFile) + "  is damaged !", kReadTitle});
  }
  if (!notices.empty()) {
    static_cast<void>(DeleteFile(path));
  }
  return notices;
}

}  // namespace tavrel
