#include "tool/cli/ManPage.h"

#include <ostream>
#include <sstream>

#include "handlers/Version.h"
#include "tool/io/ToolError.h"

namespace tool {
namespace {

constexpr char kManPageFooter[] = R"(Exit codes:
  0  the page was written

Examples:
  orvanta-config man | man -l -)";

/// A text that the formatter prints unchanged.
std::string Plain(const std::string& text) {
  std::string plain;
  bool startsLine = true;
  for (const char c : text) {
    if (startsLine && (c == '.' || c == '\'')) plain += "\\&";
    startsLine = c == '\n';
    if (c == '\\') {
      plain += "\\e";
    } else if (c == '-') {
      plain += "\\-";
    } else {
      plain += c;
    }
  }
  return plain;
}

std::string Bold(const std::string& text) { return "\\fB" + Plain(text) + "\\fR"; }
std::string Italic(const std::string& text) { return "\\fI" + Plain(text) + "\\fR"; }

/// The placeholder of an option's value; words to choose from are typed literally.
std::string Value(const Option& option) {
  if (option.value.empty()) return "";
  return " " + (option.Choices().empty() ? Italic(option.value) : Plain(option.value));
}

std::string Items(const Command& command, bool positional) {
  std::string text;
  for (const Option& option : command.options) {
    if (option.IsPositional() != positional) continue;
    std::string names;
    for (const std::string& name : option.Names()) {
      names += (names.empty() ? "" : ", ") + (positional ? Italic(name) : Bold(name));
    }
    text += ".TP\n" + names + Value(option) + "\n" + Plain(option.description) + "\n";
  }
  return text;
}

std::string Verbatim(const std::string& text) { return ".nf\n" + Plain(text) + "\n.fi\n"; }

std::string Section(const Command& command) {
  std::string title = Bold("orvanta-config " + command.name) + " [options]";
  for (const Option& option : command.options) {
    if (option.IsPositional()) title += " " + Italic(option.name) + (option.IsList() ? "..." : "");
  }
  return ".SS " + title + "\n" + Plain(command.description) + ".\n" + Items(command, true) +
         Items(command, false) + ".PP\n" + Verbatim(command.footer);
}

}  // namespace

Command ManPageCommand() { return {"man", "write the manual page", kManPageFooter, {}}; }

int ManPage(const std::vector<Command>& commands, const Streams& streams) {
  const Command& program = commands[0];
  std::ostream& out = streams.out;
  out << R"(.TH ORVANTA\-CONFIG 1 "" "orvanta\-config )" << version::Text()
      << "\" \"User commands\"\n"
      << ".SH NAME\norvanta\\-config \\- check and rehearse configurations of the client agent\n"
      << ".SH SYNOPSIS\n.B orvanta\\-config\n"
      << Italic("COMMAND") << " [options] [" << Italic("FILE") << "...]\n"
      << ".SH DESCRIPTION\n"
      << Plain(program.description) << "\n"
      << Items(program, false) << ".SH COMMANDS\n";
  for (std::size_t i = 1; i < commands.size(); ++i) out << Section(commands[i]);
  out << ".SH EXIT STATUS\n"
      << ".TP\n.B 0\nThe command succeeded.\n"
      << ".TP\n.B 1\nA rehearsed run failed, or a finding is an error.\n"
      << ".TP\n.B 2\nAn argument or a file cannot be used; one line on standard error says which "
         "and what to do.\n"
      << ".SH ENVIRONMENT\n"
      << ".TP\n.B NO_COLOR\nIf it is set and not empty, no colour is used.\n"
      << ".SH EXAMPLES\n"
      << Verbatim(program.footer.substr(program.footer.find('\n') + 1));
  return kDone;
}

}  // namespace tool
