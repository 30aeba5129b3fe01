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
    const bool color = tool::IsColorTerminal() && (noColor == nullptr || *noColor == '\0');
    return tool::RunTool(tool::ProgramArguments(argc, argv),
                         {std::cin, std::cout, std::cerr, color, tool::IsProgressTerminal()});
  } catch (const std::exception& error) {
    std::cerr << "orvanta-config: " << error.what()
              << "; this is a fault of the program, please report it with its files\n";
    return tool::kUnusable;
  }
}
