#include "platform/simulated/Machine.h"

#include <algorithm>

#include "base/FindIn.h"
#include "base/LetterCase.h"
#include "platform/simulated/DirectoryTree.h"

namespace simulated {

void Machine::Restart() {
  if (!pendingComputerName) return;
  if (Computer* account = FindOwnAccount()) {
    const std::size_t comma = account->dn.find(',');
    account->dn = "CN=" + *pendingComputerName +
                  (comma == std::string::npos ? std::string() : account->dn.substr(comma));
    account->name = *pendingComputerName;
  }
  computerName = *pendingComputerName;
  pendingComputerName.reset();
}

Adapter* Machine::FindAdapter(std::uint32_t index) {
  return base::FindIn(adapters, [=](const Adapter& adapter) { return adapter.index == index; });
}

Service* Machine::FindService(const std::string& name) {
  return base::FindIn(services,
                      [&](const Service& service) { return base::SameText(service.name, name); });
}

File* Machine::FindFile(const std::string& path) {
  const std::string wanted = FoldedPath(path);
  return base::FindIn(files, [&](const File& file) { return FoldedPath(file.path) == wanted; });
}

DirectoryDomain* Machine::FindOwnDomain() {
  const auto* own = std::get_if<DomainMembership>(&membership);
  if (own == nullptr) return nullptr;
  return FindDomain(*this, own->dnsName.empty() ? own->flatName : own->dnsName);
}

Computer* Machine::FindOwnAccount() {
  DirectoryDomain* domain = FindOwnDomain();
  return domain == nullptr ? nullptr : FindComputer(*domain, computerName);
}

void Machine::PutFile(const std::string& path, const std::string& text) {
  if (File* file = FindFile(path)) {
    file->text = text;
  } else {
    files.push_back({path, text});
  }
}

void Machine::FailCall(std::uint32_t nth, platform::Win32Error error) {
  faults.push_back({.nth = nth, .error = error});
}

std::string FoldedPath(std::string_view path) {
  std::string folded;
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t end = std::min(path.find_first_of("\\/", start), path.size());
    const std::string_view name = path.substr(start, end - start);
    start = end + 1;
    if (name == "..") {
      folded.resize(std::min(folded.rfind('\\'), folded.size()));
    } else if (!name.empty() && name != ".") {
      folded.append(folded.empty() ? "" : "\\").append(base::Folded(name));
    }
  }
  return folded;
}

}  // namespace simulated
