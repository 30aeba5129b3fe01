#include "common/config/ConfigBuilder.h"

#include <typeinfo>
#include <utility>

#include "base/LetterCase.h"
#include "common/config/ConfigError.h"
#include "common/config/analyzer/Factory.h"
#include "common/config/command/ConfigureNic.h"
#include "common/config/command/Reboot.h"
#include "common/logging/LogLines.h"
#include "common/util/ClassName.h"

namespace config {
namespace {

constexpr char kSource[] = R"(common\config\ConfigBuilder)";
constexpr err::Site kUnmatchedEnd{kSource, "Event::END scope called with no matching Event::BEGIN",
                                  89};
constexpr err::Site kNoScope{kSource, "Config event called with no open scope", 97};
constexpr std::int32_t kNotAccepted = 1;

bool OpensScope(EventKind kind) {
  return kind == EventKind::NIC || kind == EventKind::IP_INTERFACE ||
         kind == EventKind::STATIC_ROUTE;
}

}  // namespace

ConfigBuilder::ConfigBuilder(logging::ILogSink& log) : log_(log) {
  scopes_.push_back(std::make_unique<DefaultRule>(*this));
}

void ConfigBuilder::SetOption(std::uint32_t option, const std::string& value) {
  if (option == kJoinDomainBeforeNameChange) {
    joinDomainBeforeNameChange_ = base::SameText(value, "true");
  }
}

command::IConfigureCommand* ConfigBuilder::ConfigEvent(EventKind kind, Event phase,
                                                       const std::string& value) {
  if (phase == Event::END) {
    CloseScope();
    return nullptr;
  }
  if (phase == Event::BEGIN && OpensScope(kind)) return OpenScope(kind);
  if (scopes_.empty()) throw ConfigError{kNoScope, kNotAccepted, /*systemError=*/0};
  return scopes_.back()->HandleEvent(kind, value);
}

command::IConfigureCommand* ConfigBuilder::OpenScope(EventKind kind) {
  const std::size_t before = commands_.size();
  try {
    if (kind == EventKind::IP_INTERFACE) {
      scopes_.push_back(std::make_unique<IpInterfaceRule>(*this));
      return nullptr;
    }
    if (kind == EventKind::NIC) {
      AddCommand(std::make_unique<command::ConfigureNic>(log_));
      scopes_.push_back(std::make_unique<NicRule>(*this));
    } else {
      scopes_.push_back(std::make_unique<StaticRouteRule>(*this));
    }
    return LastCommand();
  } catch (...) {
    // An adapter without a scope would collect the next one's settings, and routes without one
    // would mean that none is wanted.
    commands_.resize(before);
    throw;
  }
}

void ConfigBuilder::CloseScope() {
  if (scopes_.empty()) throw ConfigError{kUnmatchedEnd, kNotAccepted, /*systemError=*/0};
  const std::unique_ptr<BuilderRule> rule = std::move(scopes_.back());
  scopes_.pop_back();
  rule->Close();
}

command::IConfigureCommand* ConfigBuilder::AddCommand(
    std::unique_ptr<command::IConfigureCommand> command) {
  return commands_.emplace_back(std::move(command)).get();
}

command::IConfigureCommand* ConfigBuilder::LastCommand() const {
  return commands_.empty() ? nullptr : commands_.back().get();
}

void ConfigBuilder::Analyze(analyzer::Analysis* analysis) {
  analyzer::Factory::Instance()
      .GetAnalyzer(&joinDomainBeforeNameChange_)
      .Analyze(commands_, analysis);
}

bool ConfigBuilder::RunConfig(bool* reboot) {
  for (const auto& owned : commands_) {
    command::IConfigureCommand& command = *owned;
    if (dynamic_cast<const command::Reboot*>(&command) != nullptr) {
      *reboot = true;
      return false;
    }
    log_.Log(logging::kDetail, logging::kCommand, util::ClassName(typeid(command)).c_str(),
             command.Describe().c_str());
    command.Execute();
  }
  *reboot = false;
  return true;
}

}  // namespace config
