#ifndef TAVREL_WORK_NUMBER_BOX_H_
#define TAVREL_WORK_NUMBER_BOX_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tavrel {

inline constexpr const char* kUnknownText = "?";  // the instrument did not tell the value

// A box of a dialog that stands for one word of an instrument. The text shows fewer digits than
// the word has, so a text that was not changed stands for the word as it was read, to the last
// step.
class NumberBox {
 public:
  NumberBox() = default;

  // Shows `text` for the word `raw`; kUnknownText and no word where it could not be read.
  NumberBox(std::string text, std::optional<std::int16_t> raw)
      : text_(std::move(text)), opening_text_(text_), raw_(raw) {}

  void SetText(std::string_view text) { text_ = text; }
  [[nodiscard]] const std::string& Text() const { return text_; }

  // The text is the one that was put in at opening.
  [[nodiscard]] bool IsUntouched() const { return text_ == opening_text_; }

  // False while the text holds a "?".
  [[nodiscard]] bool IsKnown() const { return text_.find(kUnknownText) == std::string::npos; }

  // The word that the instrument is known to hold: the one that it has told or acknowledged last,
  // none if it never did, or if a write since was not acknowledged.
  [[nodiscard]] std::optional<std::int16_t> Acknowledged() const { return raw_; }

  // The instrument has acknowledged the word that the text stands for.
  void Acknowledge(std::int16_t raw) {
    opening_text_ = text_;
    raw_ = raw;
  }

  // Nobody knows what the instrument holds: the text stays, and stands for itself alone.
  void Forget() { raw_.reset(); }

  // The instrument holds `raw`, which reads `text`, whatever the user has typed.
  void Hold(std::string text, std::int16_t raw) {
    opening_text_ = std::move(text);
    raw_ = raw;
  }

  // The shown value, of which a word has `per_unit` steps. An untouched box gives its word's
  // exact value; "?" is no number.
  [[nodiscard]] double Value(double per_unit) const;

  // The word that the box stands for, to the nearest step.
  [[nodiscard]] std::int16_t Raw(double per_unit) const;

 private:
  std::string text_;
  std::string opening_text_;
  std::optional<std::int16_t> raw_;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_NUMBER_BOX_H_
