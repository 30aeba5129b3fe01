// Stands in for the library that deciphers credentials: the test tells it what it knows.
#include "tests/contract/windows/standin/LibCrypto.h"

namespace {
DecryptFunction known = nullptr;
}

extern "C" {

void TellDecrypt(DecryptFunction decrypt) { known = decrypt; }

bool Decrypt(const char* input, char* output) { return known != nullptr && known(input, output); }
}
