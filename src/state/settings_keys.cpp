#include "state/settings_keys.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

#include "base/number.h"
#include "base/text.h"
#include "base/version.h"

namespace tavrel {
namespace {

constexpr std::string_view kMark = "::";
constexpr std::string_view kVersionKey = "VERSION";

// One key of the settings file and the value behind it. Texts are UTF-8.
struct SettingsKey {
  std::string_view Name;
  void (*Take)(SettingsValues& values, const std::string& text);  // any text; nothing is refused
  std::string (*Give)(const SettingsValues& values);
};

template <auto Member>
constexpr SettingsKey TextKey(std::string_view name) {
  return {name, [](SettingsValues& values, const std::string& text) { values.*Member = text; },
          [](const SettingsValues& values) { return values.*Member; }};
}

template <auto Member>
constexpr SettingsKey IntegerKey(std::string_view name) {
  return {name,
          [](SettingsValues& values, const std::string& text) {
            values.*Member = ToWord(ReadNumber(text));
          },
          [](const SettingsValues& values) { return std::to_string(values.*Member); }};
}

template <auto Member>
constexpr SettingsKey FlagKey(std::string_view name) {
  return {name,
          [](SettingsValues& values, const std::string& text) {
            values.*Member = ReadNumber(text) != 0;
          },
          [](const SettingsValues& values) { return std::string(values.*Member ? "1" : "0"); }};
}

template <auto Member>
constexpr SettingsKey SingleKey(std::string_view name) {
  return {name,
          [](SettingsValues& values, const std::string& text) {
            using Limits = std::numeric_limits<float>;
            const double held =
                std::clamp<double>(ReadNumber(text), Limits::lowest(), Limits::max());
            values.*Member = static_cast<float>(held);
          },
          [](const SettingsValues& values) { return ShortestNumber(values.*Member); }};
}

template <std::size_t Slot>
constexpr SettingsKey ActiveKey(std::string_view name) {
  return {name,
          [](SettingsValues& values, const std::string& text) {
            std::get<Slot - 1>(values.ActiveFiles) = text;
          },
          [](const SettingsValues& values) { return std::get<Slot - 1>(values.ActiveFiles); }};
}

// The mark of a file of key lines: written, but no value stands behind it.
constexpr SettingsKey VersionKey() {
  return {kVersionKey, [](SettingsValues&, const std::string&) {},
          [](const SettingsValues&) { return std::string(kVersion); }};
}

// In the order in which they are written.
constexpr std::array kKeys = {
    VersionKey(),
    TextKey<&SettingsValues::Plant>("PLANT"),
    TextKey<&SettingsValues::Lab>("LAB"),
    TextKey<&SettingsValues::HelpLang>("HELPLANG"),
    TextKey<&SettingsValues::Acro>("ACRO"),
    FlagKey<&SettingsValues::Diagnostic>("DIAGNOSTIC"),
    TextKey<&SettingsValues::CommPort>("COMMPORT"),
    IntegerKey<&SettingsValues::ComMode>("COMMODE"),
    IntegerKey<&SettingsValues::TypeSel>("TYPESEL"),
    TextKey<&SettingsValues::DefPath>("DEFPATH"),
    TextKey<&SettingsValues::OpenPath>("OPENPATH"),
    TextKey<&SettingsValues::OpenFile>("OPENFILE"),
    TextKey<&SettingsValues::SortKey>("OPENSORT"),
    TextKey<&SettingsValues::DestPath>("DESTPATH"),
    ActiveKey<1>("ACTIVE01"),
    ActiveKey<2>("ACTIVE02"),
    ActiveKey<3>("ACTIVE03"),
    ActiveKey<4>("ACTIVE04"),
    ActiveKey<5>("ACTIVE05"),
    ActiveKey<6>("ACTIVE06"),
    ActiveKey<7>("ACTIVE07"),
    ActiveKey<8>("ACTIVE08"),
    ActiveKey<9>("ACTIVE09"),
    ActiveKey<10>("ACTIVE10"),
    ActiveKey<11>("ACTIVE11"),
    ActiveKey<12>("ACTIVE12"),
    TextKey<&SettingsValues::PrintName>("PRINTNAME"),
    TextKey<&SettingsValues::PFontName>("PFONTNAME"),
    SingleKey<&SettingsValues::PFontSize>("PFONTSIZE"),
    IntegerKey<&SettingsValues::PColorType>("PCOLORTYPE"),
    IntegerKey<&SettingsValues::PDrawWidth>("PDRAWWIDTH"),
    TextKey<&SettingsValues::ProgPath>("PROGPATH"),
    TextKey<&SettingsValues::ProgFile>("PROGFILE"),
    TextKey<&SettingsValues::VerType>("VERTYPE"),
};

std::string Unquoted(std::string_view line) {
  std::string text = Trim(line);
  if (text.starts_with('"')) {
    text.erase(0, 1);
    text.erase(std::min(text.find('"'), text.size()));
  }
  return text;
}

// A value must not end its quotes or its line: what stands behind would be lost.
std::string Quotable(std::string text) {
  std::ranges::replace(text, '"', '\'');
  std::ranges::replace(text, '\r', ' ');
  std::ranges::replace(text, '\n', ' ');
  return text;
}

// A key line taken apart.
struct KeyLine {
  std::string Key;    // in upper case
  std::string Value;  // trimmed
};

// Splits at the first "::"; empty if there is none.
std::optional<KeyLine> SplitKeyLine(std::string_view line) {
  const std::size_t mark = line.find(kMark);
  if (mark == std::string_view::npos) {
    return std::nullopt;
  }
  return KeyLine{UpperCase(line.substr(0, mark)), Trim(line.substr(mark + kMark.size()))};
}

}  // namespace

std::vector<std::string> SettingsLines(std::string_view file_bytes) {
  std::vector<std::string> lines;
  while (!file_bytes.empty()) {
    const std::size_t end = std::min(file_bytes.find_first_of("\r\n"), file_bytes.size());
    lines.push_back(Unquoted(FromWindows1252(file_bytes.substr(0, end))));
    const bool is_pair = file_bytes.substr(end).starts_with("\r\n");
    file_bytes.remove_prefix(std::min(end + (is_pair ? 2 : 1), file_bytes.size()));
  }
  return lines;
}

bool IsKeyFile(std::string_view first_line) {
  const std::string mark = std::string(kVersionKey) + std::string(kMark);
  return UpperCase(first_line).find(mark) != std::string::npos;
}

void TakeKeyLines(SettingsValues& values, std::span<const std::string> lines) {
  for (const std::string& line : lines.subspan(std::min<std::size_t>(1, lines.size()))) {
    const std::optional<KeyLine> split = SplitKeyLine(line);
    if (!split) {
      continue;
    }
    const auto* const key = std::ranges::find(kKeys, split->Key, &SettingsKey::Name);
    if (key != kKeys.end()) {
      key->Take(values, split->Value);
    }
  }
}

std::string KeyFileBytes(const SettingsValues& values) {
  std::string text;
  for (const SettingsKey& key : kKeys) {
    text += '"';
    text += key.Name;
    text += kMark;
    text += ' ';
    text += Quotable(key.Give(values));
    text += "\"\r\n";
  }
  return ToWindows1252(text);
}

bool IsPathForKeyFile(const std::string& path) {
  SettingsValues values;
  values.DefPath = path;
  const std::vector<std::string> lines = SettingsLines(KeyFileBytes(values));
  values.DefPath.clear();
  TakeKeyLines(values, lines);
  return values.DefPath == path;
}

}  // namespace tavrel
