// Stands in for the library that deciphers credentials: the test tells it what it knows.
#include "tests/contract/windows/standin/LibCrypto.h"

#include <windows.h>

#include <cstring>
#include <stdexcept>
#include <string_view>

namespace {

constexpr DWORD kVisualCppException = 0xE06D7363;

DecryptFunction known = nullptr;

}  // namespace

extern "C" {

void TellDecrypt(DecryptFunction decrypt) { known = decrypt; }

bool Decrypt(const char* input, char* output) {
  const std::string_view text(input);
  if (text == kThrowsAsVisualCpp) {
    RaiseException(kVisualCppException, EXCEPTION_NONCONTINUABLE, 0, nullptr);
  }
  if (text == kThrowsAsGcc) throw std::runtime_error(kThrowsAsGcc);
  if (text == kAnswersGarbage) {
    std::memset(output, '\x81', kPlainTextRoom);
    return true;
  }
  return known != nullptr && known(input, output);
}
}
