// Stands in for the route tool beside the test program: adds its command line to a file, says
// something as the real one does, and ends as it is told.
#include <windows.h>

#include <cstdio>
#include <cstdlib>

int main() {
  const char* const book = std::getenv("ORVANTA_ROUTE_BOOK");
  const char* const exitCode = std::getenv("ORVANTA_ROUTE_EXIT_CODE");
  if (book == nullptr || exitCode == nullptr) return 120;
  std::FILE* const file = std::fopen(book, "ab");
  if (file == nullptr) return 121;
  std::fprintf(file, "%s\n", GetCommandLineA());
  std::fclose(file);
  std::puts(" OK!");
  // The pipe's text ends with the child, as the whole exit code does.
  std::fflush(stdout);
  ExitProcess(static_cast<UINT>(std::strtoul(exitCode, nullptr, 10)));
}
