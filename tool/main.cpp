#include <cstdlib>
#include <exception>
#include <iostream>

#include "tool/Tool.h"
#include "tool/io/HostSystem.h"
#include "tool/io/ToolError.h"

int main(int argc, char** argv) {
  try {
    tool::PrepareStreams();
    const char* noColor = std::getenv("NO_COLOR");
    const bool color = tool::IsTerminal(1) && (noColor == nullptr || *noColor == '\0');
    return tool::RunTool(tool::ProgramArguments(argc, argv),
                         {std::cin, std::cout, std::cerr, color, tool::IsTerminal(2)});
  } catch (const std::exception& error) {
    std::cerr << "orvanta-config: " << error.what()
              << "; this is an error in the program, please report it and attach the files\n";
    return tool::kUnusable;
  }
}
