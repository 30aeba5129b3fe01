#include "tool/explain/FindingPage.h"

#include <string>

#include "tool/io/EmbeddedText.h"

namespace tool::explain {

std::string_view FindingPage(std::string_view code) {
  const std::string_view document = EmbeddedText("docs/findings.md");
  const std::size_t start = document.find("\n### " + std::string(code) + " ");
  if (start == std::string_view::npos) return {};
  const std::string_view page = document.substr(start + 5);
  return page.substr(0, page.find("\n##"));
}

}  // namespace tool::explain
