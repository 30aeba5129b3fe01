// The exports of the stand-in for "LibCrypto.dll".
#pragma once

extern "C" {

using DecryptFunction = bool (*)(const char* input, char* output);

__declspec(dllexport) bool Decrypt(const char* input, char* output);
/// Chooses what `Decrypt` answers from now on.
__declspec(dllexport) void TellDecrypt(DecryptFunction decrypt);
}
