#include "platform/sha256.h"

#include <openssl/evp.h>

#include <array>

namespace tavrel {
namespace {

// Looked up in the library once, which takes longer than hashing a line.
const EVP_MD* Algorithm() {
  static const EVP_MD* const algorithm = EVP_MD_fetch(nullptr, "SHA256", nullptr);
  return algorithm;
}

}  // namespace

// The library's own object, which goes with it.
struct Sha256::State {
  State() : context(EVP_MD_CTX_new()) {}
  ~State() { EVP_MD_CTX_free(context); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  [[nodiscard]] bool TakeFrom(const State& other) const {
    return context != nullptr && EVP_MD_CTX_copy_ex(context, other.context) == 1;
  }

  EVP_MD_CTX* context;
};

Sha256::Sha256() : state_(std::make_unique<State>()) {
  const bool has_begun =
      state_->context != nullptr && EVP_DigestInit_ex(state_->context, Algorithm(), nullptr) == 1;
  if (!has_begun) {
    state_.reset();
  }
}

Sha256::~Sha256() = default;

Sha256::Sha256(const Sha256& other) {
  if (other.state_ == nullptr) {
    return;
  }
  auto copy = std::make_unique<State>();
  if (copy->TakeFrom(*other.state_)) {
    state_ = std::move(copy);
  }
}

Sha256& Sha256::operator=(const Sha256& other) {
  if (this != &other) {
    *this = Sha256(other);
  }
  return *this;
}

Sha256::Sha256(Sha256&& other) noexcept = default;
Sha256& Sha256::operator=(Sha256&& other) noexcept = default;

void Sha256::Add(std::span<const std::byte> bytes) {
  if (state_ != nullptr && !bytes.empty() &&
      EVP_DigestUpdate(state_->context, bytes.data(), bytes.size()) != 1) {
    state_.reset();
  }
}

void Sha256::Add(std::string_view bytes) {
  Add(std::as_bytes(std::span(bytes)));
}

std::string Sha256::Hex() const {
  State end;
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned int length = 0;
  const bool is_known = state_ != nullptr && end.TakeFrom(*state_) &&
                        EVP_DigestFinal_ex(end.context, digest.data(), &length) == 1;
  std::string text;
  for (unsigned int place = 0; is_known && place < length; ++place) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    text += kDigits[digest.at(place) >> 4U];
    text += kDigits[digest.at(place) & 0x0FU];
  }
  return text;
}

std::string Sha256Of(std::span<const std::byte> bytes) {
  Sha256 hash;
  hash.Add(bytes);
  return hash.Hex();
}

std::string Sha256Of(std::string_view bytes) {
  return Sha256Of(std::as_bytes(std::span(bytes)));
}

}  // namespace tavrel
