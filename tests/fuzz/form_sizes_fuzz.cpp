#include <array>

#include "state/form_sizes.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/support/temporary_directory.h"

namespace {

using namespace tavrel;

constexpr std::array kForms = {"TavGraph", "TavWork", "Tavrel", "TavInst", "a"};

void RequireWindows(FormSizes& sizes) {
  for (const char* form : kForms) {
    if (const auto size = sizes.Of(form)) {
      Require(
          size->Width >= 50 && size->Width <= 16384 && size->Height >= 50 && size->Height <= 16384,
          "a size is one that a window may have");
    }
  }
}

}  // namespace

// TAVREL.WIN holds any bytes. The first byte says which window is resized then.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input({reinterpret_cast<const char*>(data), size});
  const char* form = kForms.at(static_cast<std::size_t>(input.Choice(kForms.size())));
  const std::string bytes = input.Text(size);
  const TemporaryDirectory home;
  home.Write(kFormSizesFile, bytes);
  RunState state;
  state.DataHome = home.Path() + "/";

  FormSizes first(state);
  RequireWindows(first);
  Require(home.Read(kFormSizesFile) == bytes, "reading changes no file");
  const FormSize wanted{640 + static_cast<int>(size % 100), 400};
  const bool was_known = first.Of(form).has_value();
  first.Keep(form, wanted);
  Require(first.Of(form) == wanted || (!was_known && !first.Of(form)),
          "only a window more than there is room for is not taken");

  FormSizes next(state);
  RequireWindows(next);
  for (const char* other : kForms) {
    Require(next.Of(other) == first.Of(other), "what one run has kept the next one reads");
  }
  Require(home.Read(kFormSizesFile).size() <= 4096, "the file stays small");
  return 0;
}
