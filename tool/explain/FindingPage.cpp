#include "tool/explain/FindingPage.h"

#include <string>

namespace tool::explain {

/// The bytes of the document; the build makes them.
extern const char kFindingsDocument[];

std::string_view FindingPage(std::string_view code) {
  const std::string_view document(kFindingsDocument);
  const std::size_t start = document.find("\n### " + std::string(code) + " ");
  if (start == std::string_view::npos) return {};
  const std::string_view page = document.substr(start + 5);
  return page.substr(0, page.find("\n##"));
}

}  // namespace tool::explain
