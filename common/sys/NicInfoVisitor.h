// What can be done with the nodes of the network adapter tree, and how they accept it.
#pragma once

#include "common/util/CompositeNode.h"

namespace sys {

class DNS;
class DNSServer;
class DNSSuffix;
class Gateway;
class GatewayEntry;
class IP;
class NicAdapter;
class NicList;
class StaticRoute;

/// One operation for each class of node.
class NicInfoVisitor : public util::CompositeVisitor {
 public:
  virtual void Visit(GatewayEntry& gateway) = 0;
  virtual void Visit(Gateway& gateways) = 0;
  virtual void Visit(DNSSuffix& suffix) = 0;
  virtual void Visit(DNSServer& server) = 0;
  virtual void Visit(DNS& dns) = 0;
  virtual void Visit(StaticRoute& route) = 0;
  virtual void Visit(IP& ip) = 0;
  virtual void Visit(NicAdapter& adapter) = 0;
  virtual void Visit(NicList& adapters) = 0;
};

/// A node of class `Node`, a collection or a leaf by its `Base`.
template <typename Node, typename Base>
class NicNode : public Base {
 public:
  /// Calls the operation for `Node` when the visitor is a NicInfoVisitor, otherwise does nothing.
  void accept(util::CompositeVisitor& visitor) override {
    if (auto* const nicVisitor = dynamic_cast<NicInfoVisitor*>(&visitor)) {
      nicVisitor->Visit(static_cast<Node&>(*this));
    }
  }
};

}  // namespace sys
