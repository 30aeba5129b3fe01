// Stores the network settings of a machine as sections of a configuration file.
#pragma once

#include <map>
#include <string>

#include "base/ConfigKeys.h"
#include "common/sys/NicInfoVisitor.h"
#include "common/sys/NicList.h"

namespace sys {

/// Entries of one section, in the order in which they are written.
using Entries = std::map<std::string, std::string>;

/// The section of an adapter by its position in the list: "TCP/IP" for the first one, then
/// "Interface1", "Interface2", ...
std::string SectionName(int adapterNumber);

/// Writes `global` and "RebootAfterConfig" = "True" into section "Global" of the file `path`, then
/// every PCI adapter into its section. An adapter that is skipped uses up its number. Sections and
/// keys that are there are updated in place; refused entries are dropped.
void WriteNicInfo(const Entries& global, NicList& adapters, const std::string& path);

/// Turns the nodes of one adapter into entries. Static routes are not among them.
class NicConfigVisitor final : public NicInfoVisitor {
 public:
  explicit NicConfigVisitor(int adapterNumber) : adapterNumber_(adapterNumber) {}

  const Entries& Collected() const { return entries_; }

  void Visit(GatewayEntry& gateway) override;
  void Visit(Gateway& /*gateways*/) override {}
  void Visit(DNSSuffix& suffix) override;
  void Visit(DNSServer& server) override;
  void Visit(DNS& dns) override;
  void Visit(StaticRoute& /*route*/) override {}
  void Visit(IP& ip) override;
  void Visit(NicAdapter& adapter) override;
  void Visit(NicList& /*adapters*/) override {}

 private:
  void Put(base::Key key, std::string value);

  int adapterNumber_;
  bool serversWanted_ = false;
  Entries entries_;
};

}  // namespace sys
