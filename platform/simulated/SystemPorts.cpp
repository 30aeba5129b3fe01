// The small ports of the simulated computer: waiting, the last error, libraries and host names.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <string>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "platform/IClock.h"
#include "platform/IErrors.h"
#include "platform/ILibraries.h"
#include "platform/IResolver.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/Ipv4.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "platform/simulated/Simulation.h"

namespace simulated {
namespace {

using platform::LibraryHandle;
using platform::Win32Error;

constexpr LibraryHandle kCrypto{0x10000000};
/// Room that callers of "Decrypt" give for the plain text.
constexpr std::size_t kPlainTextRoom = 4096;

/// The machine whose "Decrypt" was handed out last: an export has no place for it.
Simulation* decrypting = nullptr;

bool Decrypt(const char* input, char* output) {
  if (decrypting == nullptr || decrypting->Fails({.name = "library.call", .item = "Decrypt"})) {
    return false;
  }
  std::string plain = kUnknownText;
  if (const auto& known = decrypting->machine.decrypt) {
    const auto found = known->find(input);
    if (found == known->end() || found->second.size() >= kPlainTextRoom) return false;
    plain = found->second;
  } else if (!decrypting->machine.AssumesDecrypt()) {
    return false;
  }
  std::memcpy(output, plain.c_str(), plain.size() + 1);
  return true;
}

constexpr struct {
  std::uint32_t digits;
  const char* text;
} kDescriptions[] = {{0x80004005, "Unspecified error\r\n"},
                     {0x80070002, "The system cannot find the file specified.\r\n"},
                     {0x80070005, "Access is denied.\r\n"},
                     {0x8007000E, "Not enough memory resources are available.\r\n"},
                     {0x80070057, "The parameter is incorrect.\r\n"},
                     {0x8007052E, "The user name or password is incorrect.\r\n"},
                     {0x800706BA, "The RPC server is unavailable.\r\n"}};

/// One number of a dotted address: "0x" starts a hexadecimal, "0" an octal one.
std::optional<std::uint32_t> ParsePart(std::string_view text) {
  int radix = 10;
  if (text.size() > 1 && text[0] == '0') {
    const bool isHexadecimal = text[1] == 'x' || text[1] == 'X';
    text.remove_prefix(isHexadecimal ? 2 : 1);
    radix = isHexadecimal ? 16 : 8;
  }
  return base::ParseWhole<std::uint32_t>(text, radix);
}

/// The classic rules: all parts but the last are one byte each, the last fills what is left.
std::optional<std::uint32_t> ParseClassic(std::string_view text) {
  std::array<std::uint8_t, 4> bytes{};
  for (std::size_t part = 0; part < bytes.size(); ++part) {
    const std::size_t dot = text.find('.');
    const auto number = ParsePart(text.substr(0, dot));
    if (!number) return std::nullopt;
    if (dot == std::string_view::npos) {
      const std::size_t left = bytes.size() - part;
      if (left < 4 && *number >> (8 * left) != 0) return std::nullopt;
      for (std::size_t i = 0; i < left; ++i) {
        bytes[3 - i] = static_cast<std::uint8_t>(*number >> (8 * i));
      }
      return Bits(bytes);
    }
    if (*number > std::numeric_limits<std::uint8_t>::max()) return std::nullopt;
    bytes[part] = static_cast<std::uint8_t>(*number);
    text.remove_prefix(dot + 1);
  }
  return std::nullopt;
}

/// Sleeping takes no time; the journal tells how long it would have been.
class ClockPort final : public Port<platform::IClock> {
 public:
  using Port::Port;
  void Sleep(std::uint32_t milliseconds) override {
    simulation_.Strike({"sleep"});
    simulation_.Journal("sleep", {{"milliseconds", milliseconds}});
  }
};

class ErrorsPort final : public Port<platform::IErrors> {
 public:
  using Port::Port;
  platform::Win32Error LastError() override { return simulation_.lastError; }

  void SetLastError(Win32Error error) override { simulation_.lastError = error; }

  bool Describe(platform::HResult result, std::string* text) override {
    for (const auto& known : kDescriptions) {
      if (Com(known.digits) != result) continue;
      *text = known.text;
      return true;
    }
    return false;
  }
};

/// Knows one library, "LibCrypto.dll" with its export "Decrypt", and only when the machine has it.
class LibrariesPort final : public Port<platform::ILibraries> {
 public:
  using Port::Port;
  ~LibrariesPort() override {
    if (decrypting == &simulation_) decrypting = nullptr;
  }

  platform::LibraryHandle Load(const std::string& fileName) override {
    if (simulation_.Fails({.name = "library.load", .text = fileName, .item = fileName})) {
      return LibraryHandle::kNone;
    }
    const Machine& machine = simulation_.machine;
    const bool isThere =
        (machine.decrypt || machine.AssumesDecrypt()) && base::SameText(fileName, "LibCrypto.dll");
    return simulation_.Answer(isThere ? kSuccess : kModuleNotFound) ? kCrypto
                                                                    : LibraryHandle::kNone;
  }

  /// The export works on this machine until another machine hands out its own.
  platform::ExportedFunction FindExport(LibraryHandle library, const std::string& name) override {
    if (simulation_.Fails({.name = "library.find", .item = name})) return nullptr;
    const bool isThere = library == kCrypto && name == "Decrypt";
    if (!simulation_.Answer(isThere ? kSuccess : kProcedureNotFound)) return nullptr;
    decrypting = &simulation_;
    return reinterpret_cast<platform::ExportedFunction>(&simulated::Decrypt);
  }

  bool Decrypt(platform::ExportedFunction function, const char* input, char* output) override {
    return reinterpret_cast<decltype(&simulated::Decrypt)>(function)(input, output);
  }
};

class ResolverPort final : public Port<platform::IResolver> {
 public:
  using Port::Port;
  platform::Win32Error Start() override {
    if (const auto error = simulation_.Refuse({"host.start"})) return *error;
    socketsStarted = true;
    return kSuccess;
  }

  bool LookUpHost(const std::string& name, std::uint32_t* address) override {
    if (simulation_.Fails({.name = "host.resolve", .text = name, .item = name})) return false;
    if (!socketsStarted) return simulation_.Answer(kSocketsNotStarted);
    for (const Host& host : simulation_.machine.hosts) {
      if (!base::SameText(host.name, name)) continue;
      const auto bytes = ParseIpv4(host.address);
      if (!bytes) break;
      *address = Bits(*bytes);
      return true;
    }
    const bool isIpv6 = name.find(':') != std::string::npos;
    if (isIpv6 || !simulation_.machine.AssumesHosts()) return simulation_.Answer(kHostNotFound);
    *address = Bits(kUnknownAddress);
    return true;
  }

  platform::Win32Error LastError() override { return simulation_.lastError; }

  std::uint32_t ParseDotted(const std::string& text) override {
    if (simulation_.Refuse({"host.parse", text})) return platform::kNoAddress;
    return text == kUnknownText ? Bits(kUnknownAddress)
                                : ParseClassic(text).value_or(platform::kNoAddress);
  }
};

}  // namespace

platform::IClock& SimulatedPlatform::Clock() { return Made<ClockPort>(&clock_); }

platform::IErrors& SimulatedPlatform::Errors() { return Made<ErrorsPort>(&errors_); }

platform::ILibraries& SimulatedPlatform::Libraries() { return Made<LibrariesPort>(&libraries_); }

platform::IResolver& SimulatedPlatform::Resolver() { return Made<ResolverPort>(&resolver_); }

}  // namespace simulated
