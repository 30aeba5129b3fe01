// What may be shown of texts that may hold a password. In doubt a text is hidden.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/simulated/Change.h"

namespace simulated {

/// What stands in place of a secret.
inline constexpr char kHidden[] = "***";

/// True for the name of a setting that holds a password: "pass", "pwd" or "secret" stands somewhere
/// in it, in whatever letter case.
bool NamesPassword(std::string_view name);

/// The same, and true for "DomainUsername" and misspellings of it: the enciphered account is shown
/// no more than its password.
bool NamesSecret(std::string_view name);

/// Reads the lines of a configuration file one after the other, as the library takes them: a line
/// without "=" goes on with the entry or comment before it.
class SecretLines {
 public:
  /// Where the part of the next line begins that must not be shown; npos when all of it may be. The
  /// line comes without its line feed.
  std::size_t HiddenFrom(std::string_view line);

 private:
  std::size_t Judge(std::string_view line);

  bool goesOn_ = false;  // a line without "=" adds to a secret
};

/// A configuration file's text, line by line as it may be shown.
std::string RedactedFile(std::string_view text);

/// A sentence as it may be shown: "***" for all behind a password's name and "=".
std::string RedactedText(std::string_view text);

/// A setting's value as it may be shown: the same, and also behind a blank or ":". A value of
/// several lines is shown as a file's are.
std::string RedactedValue(std::string_view value);

/// An entry of the journal as it may be shown: passwords in it read "***".
Change Redacted(Change change);

}  // namespace simulated
