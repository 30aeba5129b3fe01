// The exports of the stand-in for "LibCrypto.dll".
#pragma once

#include <cstddef>

constexpr std::size_t kPlainTextRoom = 4096;
// Inputs that it answers by itself: by an exception as Visual C++ throws it, by one of GCC, and by
// filling all the room, without an end.
constexpr char kThrowsAsVisualCpp[] = "throws as Visual C++";
constexpr char kThrowsAsGcc[] = "throws as GCC";
constexpr char kAnswersGarbage[] = "answers garbage";

extern "C" {

using DecryptFunction = bool (*)(const char* input, char* output);

__declspec(dllexport) bool Decrypt(const char* input, char* output);
/// Chooses what `Decrypt` answers from now on.
__declspec(dllexport) void TellDecrypt(DecryptFunction decrypt);
}
