// A command that changes the machine's identity and may need an account to do so.
#pragma once

#include "base/LetterCase.h"
#include "common/config/command/IConfigureCommand.h"
#include "common/sys/Domain.h"

namespace config::command {

class DomainCommand : public IConfigureCommand {
 public:
  void SetUser(std::string user) { user_ = std::move(user); }
  void SetPassword(std::string password) { password_ = std::move(password); }

 protected:
  const std::string& User() const { return user_; }
  const std::string& Password() const { return password_; }
  /// The domain, which gets the account.
  sys::Domain& DomainWithAccount() const {
    sys::Domain& domain = sys::Domain::Instance();
    domain.SetCredentials(user_, password_);
    return domain;
  }

 private:
  std::string user_;
  std::string password_;
};

}  // namespace config::command
