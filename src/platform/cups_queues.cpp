#include "platform/cups_queues.h"

#include <dlfcn.h>

namespace tavrel {
namespace {

constexpr const char* kLibrary = "libcups.so.2";
constexpr int kLastGood = 7;  // the states of an answer up to here are kinds of success

// The library's own forms, which it keeps as long as its number is 2.
struct Option {
  char* name;
  char* value;
};
struct Destination {
  char* name;
  char* instance;
  int is_default;
  int option_count;
  Option* options;
};

// What is asked of the library; all null where it is missing.
struct Cups {
  Destination* (*get_named)(void* server, const char* name, const char* instance) = nullptr;
  const char* (*get_option)(const char* name, int count, Option* options) = nullptr;
  void (*free_all)(int count, Destination* destinations) = nullptr;
  int (*last_error)() = nullptr;

  Cups() {
    void* const library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
      return;
    }
    Resolve(library, "cupsGetNamedDest", get_named);
    Resolve(library, "cupsGetOption", get_option);
    Resolve(library, "cupsFreeDests", free_all);
    Resolve(library, "cupsLastError", last_error);
  }
  [[nodiscard]] bool IsComplete() const {
    return get_named != nullptr && get_option != nullptr && free_all != nullptr &&
           last_error != nullptr;
  }

 private:
  template <typename Function>
  static void Resolve(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
  }
};

const Cups& Library() {
  static const Cups cups;
  return cups;
}

std::string OptionOf(const Destination& queue, const char* name) {
  const char* const value = Library().get_option(name, queue.option_count, queue.options);
  return value == nullptr ? "" : value;
}

}  // namespace

// A queue with a set of options of its own is called "queue/set".
std::optional<PrintQueue> CupsQueues::Find(const std::string& name) {
  if (!Library().IsComplete()) {
    return std::nullopt;
  }
  const std::size_t slash = name.find('/');
  const std::string queue = name.substr(0, slash);
  const std::string instance = slash == std::string::npos ? "" : name.substr(slash + 1);
  Destination* const found =
      Library().get_named(nullptr, queue.c_str(), instance.empty() ? nullptr : instance.c_str());
  if (found == nullptr) {
    return PrintQueue();
  }
  PrintQueue told{true, OptionOf(*found, "printer-state"),
                  OptionOf(*found, "printer-is-accepting-jobs")};
  Library().free_all(1, found);
  return told;
}

bool CupsQueues::HasTakenLast() {
  return !Library().IsComplete() || Library().last_error() <= kLastGood;
}

}  // namespace tavrel
