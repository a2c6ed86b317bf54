#ifndef TAVREL_STATE_FORM_SIZES_H_
#define TAVREL_STATE_FORM_SIZES_H_

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "state/run_state.h"

namespace tavrel {

inline constexpr const char* kFormSizesFile = "TAVREL.WIN";

// The size of the contents of a window, in points.
struct FormSize {
  int Width = 0;
  int Height = 0;

  bool operator==(const FormSize& other) const = default;
};

// How large the user has made the windows of the program, by their names, kept between its runs in
// a small file in RunState::DataHome. A comfort: where the file cannot be read or written, nobody
// is told and the windows come as large as their contents ask for.
class FormSizes {
 public:
  // `state` outlives this; DataHome is set before the first call of the others.
  explicit FormSizes(const RunState& state) : state_(state) {}

  // Empty for a window whose size the user has left as it came.
  [[nodiscard]] std::optional<FormSize> Of(std::string_view form);

  // Writes the file if that is another size than before. No effect for a name that is not of
  // letters, digits and "_", or that is longer than 32, and for a size that no window has.
  void Keep(std::string_view form, FormSize size);

 private:
  using Sizes = std::map<std::string, FormSize, std::less<>>;

  [[nodiscard]] Sizes& Known();
  [[nodiscard]] std::string Path() const;

  const RunState& state_;
  std::optional<Sizes> sizes_;  // once the file has been read
};

}  // namespace tavrel

#endif  // TAVREL_STATE_FORM_SIZES_H_
