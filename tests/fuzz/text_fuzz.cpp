#include "base/text.h"

#include "tests/fuzz/fuzz_input.h"

namespace tavrel {
namespace {

void CheckCodePage(const std::string& bytes) {
  const std::string text = FromWindows1252(bytes);
  Require(ToWindows1252(text) == bytes, "every byte survives the way there and back");
  const std::string once = ToWindows1252(bytes);
  Require(ToWindows1252(FromWindows1252(once)) == once, "what fits the code page stays");
}

void CheckCase(const std::string& text) {
  const std::string upper = UpperCase(text);
  const std::string lower = LowerCase(text);
  Require(UpperCase(upper) == upper, "capitals are capitals");
  Require(LowerCase(lower) == lower, "small letters are small letters");
  Require(EqualNoCase(text, upper) && EqualNoCase(text, lower), "case makes no difference");
}

void CheckCut(const std::string& text, std::size_t count) {
  const std::string first = FirstCharacters(text, count);
  Require(first + AfterCharacters(text, count) == text, "a cut loses nothing");
  Require(first.size() <= text.size() && first.size() <= 4 * count, "a character has 1 to 4 bytes");
  Require(ToWindows1252(first).size() <= count, "at most that many characters");
}

void CheckTrim(const std::string& text) {
  const std::string trimmed = Trim(text);
  Require(Trim(trimmed) == trimmed, "a trimmed text is trimmed");
  Require(text.find(trimmed) != std::string::npos, "trimming changes nothing inside");
}

}  // namespace
}  // namespace tavrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  const std::string bytes = TextOf(data, size);
  FuzzInput input(bytes);
  const auto count = static_cast<std::size_t>(input.Choice(32));
  const std::string text = input.Text(bytes.size());
  CheckCodePage(text);
  CheckCase(text);
  CheckCut(text, count);
  CheckTrim(text);
  return 0;
}
