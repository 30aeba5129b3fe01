// What the numbers mean with which the library and the machine answer: the one table of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tool::explain {

/// Where a number comes from; the library's own come first.
enum class NumberKind : std::uint8_t {
  kReply,    ///< "Status-Code" of a reply whose "Status-Module" is "Tarvo"
  kRecord,   ///< "Value" of an error record, or the code of a file that was not loaded
  kAdapter,  ///< what a method of a network adapter returned
  kSystem,   ///< an error of Windows; also what a method of the computer returned
  kCom,      ///< a COM result
};

/// One meaning of a number. Its texts are constants.
struct Reading {
  NumberKind kind;
  std::uint32_t number;
  /// For example "ERROR_LOGON_FAILURE".
  const char* name;
  /// A phrase such as "wrong user or password".
  const char* meaning;
  const char* remedy;
};

/// "error of Windows".
const char* TextOf(NumberKind kind);

/// A number as people write it: "1326", "0x8007052E", "-2147023570".
std::optional<std::uint32_t> ParseNumber(std::string_view text);

/// Every reading of a number. A COM result that holds an error of Windows has that one's.
std::vector<Reading> ReadNumber(std::uint32_t number);

/// The reading of a number that comes from there, of a record by its source such as
/// "common\sys\Registry"; null when there is none. An error of Windows may also be given as a COM
/// result.
const Reading* FindReading(NumberKind kind, std::uint32_t number, std::string_view source = {});

/// Why a machine refused, by its answer: an error of Windows or a COM result, and before them,
/// unless another part of the machine answered, the result of an adapter. Null when it is unknown.
const Reading* FindAnswer(std::uint32_t number, bool isOfAdapter);

}  // namespace tool::explain
