#include "tool/io/Html.h"

#include "tool/io/Text.h"

namespace tool {
namespace {

constexpr char kStyle[] = R"css(
:root { color-scheme: light dark; --ground: #f7f7f5; --sheet: #fff; --ink: #1d2126; --soft: #59626d;
  --line: #d9dcdf; --now: #0b62a8; --wait: #8a5300; --good: #1d6b38; --bad: #b3261e; --code: #eef1f4; }
@media (prefers-color-scheme: dark) {
  :root { --ground: #14171a; --sheet: #1d2125; --ink: #e5e8eb; --soft: #a0a9b3; --line: #363c43;
    --now: #7cbcf2; --wait: #efb765; --good: #82cf9b; --bad: #ff9d94; --code: #272d33; } }
body { margin: 0 auto; padding: 1rem; max-width: 62rem; background: var(--ground); color: var(--ink);
  font: 1rem/1.5 system-ui, sans-serif; overflow-wrap: anywhere; }
h2 { margin-top: 2rem; }
h3 { margin: 1.25rem 0 .5rem; font-size: 1rem; }
p { margin: .25rem 0; }
a, summary { color: var(--now); }
nav a { display: inline-block; padding: .35rem .9rem .35rem 0; }
code, .mono, .file { font: .9em/1.55 ui-monospace, Consolas, monospace; }
h3, .soft, .not-needed { color: var(--soft); }
.good { color: var(--good); } .bad { color: var(--bad); } .wait { color: var(--wait); }
.ending { padding: .6rem .9rem; border-left: .3rem solid; background: var(--sheet); }
.queue, .file, li ul { margin: 0; padding: 0; list-style: none; }
.queue > li { margin: .5rem 0; padding: .6rem .9rem; background: var(--sheet);
  border: 1px solid var(--line); border-left: .3rem solid var(--now); border-radius: .3rem; }
.queue > .waits { border-left-color: var(--wait); }
.queue > .fails, .queue > .never { border-left-color: var(--bad); }
.queue > .not-needed { border-left-color: var(--line); }
.never { opacity: .7; }
.head { display: flex; flex-wrap: wrap; gap: .1rem .75rem; align-items: baseline; }
li ul { margin-top: .4rem; padding-left: 1rem; border-left: 1px solid var(--line); }
.values, .asks, .subject { background: var(--code); }
.table { overflow-x: auto; }
table { width: 100%; border-collapse: collapse; background: var(--sheet); }
th, td { padding: .35rem .6rem; border: 1px solid var(--line); text-align: left; vertical-align: top; }
.file { background: var(--sheet); border: 1px solid var(--line); }
.file li { display: flex; gap: .75rem; padding: 0 .75rem; }
.file li:target { outline: 2px solid var(--now); }
.number { flex: 0 0 2.5rem; text-align: right; color: var(--soft); user-select: none; }
.text { flex: 1; white-space: pre-wrap; }
@media (max-width: 40rem) { body { padding: .75rem; } .number { flex-basis: 1.75rem; } }
)css";

}  // namespace

std::string Escaped(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size());
  for (const char c : text) {
    escaped += c == '&'   ? "&amp;"
               : c == '<' ? "&lt;"
               : c == '>' ? "&gt;"
               : c == '"' ? "&quot;"
                          : std::string(1, c);
  }
  return escaped;
}

std::string Shown(std::string_view text) { return Escaped(Printable(text)); }

std::string Element(const char* name, std::string_view className, const std::string& content) {
  std::string start = name;
  if (!className.empty()) start.append(" class=\"").append(className).append("\"");
  return "<" + start + ">" + content + "</" + name + ">";
}

std::string Paragraph(std::string_view className, const std::string& content) {
  return Element("p", className, content) + "\n";
}

std::string Table(const std::vector<const char*>& names,
                  const std::vector<std::vector<std::string>>& rows) {
  std::string html = "<div class=\"table\"><table><thead><tr>";
  for (const char* name : names) html += Element("th", "", name);
  html += "</tr></thead><tbody>\n";
  const std::string across = "<td colspan=\"" + std::to_string(names.size()) + "\">";
  for (const std::vector<std::string>& row : rows) {
    html += row.size() == 1 ? "<tr class=\"subject\">" : "<tr>";
    for (const std::string& cell : row)
      html += (row.size() == 1 ? across : "<td>") + cell + "</td>";
    html += "</tr>\n";
  }
  return html + "</tbody></table></div>\n";
}

std::string Page(const std::string& title, const std::string& header, const std::string& body) {
  return R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'">
<title>)" +
         title + "</title>\n<style>" + kStyle + "</style>\n</head>\n<body>\n<header>\n<h1>" +
         title + "</h1>\n" + header + "</header>\n<main>\n" + body + "</main>\n</body>\n</html>\n";
}

}  // namespace tool
