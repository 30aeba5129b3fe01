#include "common/sys/ImpersonationError.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "common/util/LastError.h"

namespace sys {
namespace {

constexpr std::uint32_t kNotEnoughMemory = 8;  // the process heap leaves no error number

}  // namespace

CImpersonationError::CImpersonationError(const err::Site& site, std::uint32_t systemError)
    : CGeneralError(site, /*value=*/0, systemError) {
  Append(site.message);
}

const char* CImpersonationError::Text() const { return text_.data(); }

void CImpersonationError::AppendRethrow(const char* operation) {
  Append("\n\tre-throw at ");
  Append(operation);
}

void CImpersonationError::Append(const char* text) {
  const std::size_t length = std::strlen(text_.data());
  const std::string_view fitting = std::string_view(text).substr(0, text_.size() - 1 - length);
  std::copy(fitting.begin(), fitting.end(), text_.data() + length);
}

void ThrowImpersonationError(const err::Site& site) {
  throw CImpersonationError{site, util::LastError()};
}

void ThrowOutOfMemory(const err::Site& site) {
  // Not one for each thread: making room for that would need memory.
  static CImpersonationError error{site, kNotEnoughMemory};
  error = CImpersonationError{site, kNotEnoughMemory};
  // NOLINTNEXTLINE(misc-throw-by-value-catch-by-reference): the smallest thing that can be thrown.
  throw &error;
}

}  // namespace sys
