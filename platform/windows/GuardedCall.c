/* The one call into a library that another compiler may have made. In C, and with MinGW compiled by
   clang: GCC knows no __try, and its catch handlers do not see what Visual C++ throws. */
#include <excpt.h>
#include <stdbool.h>

#define THROWN_BY_VISUAL_CPP 0xE06D7363u

/* The answer of `decrypt`; false when Visual C++'s kind of exception ended it. GCC's kind passes. */
bool GuardedDecrypt(bool (*decrypt)(const char* input, char* output), const char* input,
                    char* output) {
  __try {
    return decrypt(input, output);
  } __except (GetExceptionCode() == THROWN_BY_VISUAL_CPP ? EXCEPTION_EXECUTE_HANDLER
                                                         : EXCEPTION_CONTINUE_SEARCH) {
    return false;
  }
}
