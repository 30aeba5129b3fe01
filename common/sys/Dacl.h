// A discretionary access list that can be filled from another one without a certain user.
#pragma once

#include <cstdint>

#include "common/logging/ILogSink.h"
#include "common/sys/HeapBlock.h"
#include "common/sys/Sid.h"
#include "platform/ISecurity.h"

namespace sys {

/// Its operations throw CImpersonationError.
class CDACL {
 public:
  /// An empty list with room for all entries of `list`. `logSink` is borrowed.
  CDACL(const platform::Acl* list, logging::ILogSink& logSink);

  static platform::AclSize GetAclSizeInfo(const platform::Acl* list);

  /// Becomes an empty list of `size` bytes.
  void Create(std::uint32_t size);

  /// Adds the entries of `source` in their order, but none that is about `removed`. False when an
  /// entry cannot be read or added, which is logged; the list is then not fit for use, since what
  /// is missing may be a denial.
  bool CopyACL(const platform::Acl* source, const CSID& removed);

  platform::Acl* Get() const { return list_.get(); }

 private:
  HeapBlock<platform::Acl> list_;
  logging::ILogSink& logSink_;
};

}  // namespace sys
