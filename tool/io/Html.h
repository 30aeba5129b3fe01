// Pieces of a page that needs neither network nor script.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// The text with the characters that mean something in HTML spelled out.
std::string Escaped(std::string_view text);

/// Text of a file or a machine, safe on a page.
std::string Shown(std::string_view text);

/// `content` is HTML; an empty class name is left out.
std::string Element(const char* name, std::string_view className, const std::string& content);
std::string Paragraph(std::string_view className, const std::string& content);

/// Rows of cells in HTML; a row of one cell is a heading across the table.
std::string Table(const std::vector<const char*>& names,
                  const std::vector<std::vector<std::string>>& rows);

/// The whole document; `title`, `header` and `body` are HTML.
std::string Page(const std::string& title, const std::string& header, const std::string& body);

}  // namespace tool
