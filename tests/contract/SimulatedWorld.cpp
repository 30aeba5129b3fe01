#include "platform/simulated/SimulatedPlatform.h"
#include "tests/contract/World.h"

namespace contract {

const std::vector<std::string> kDescribedWorlds{"simulated"};
const std::vector<std::string> kEveryWorld = kDescribedWorlds;

World MakeWorld(const std::string&, simulated::Machine& described) {
  const auto model = std::make_shared<simulated::SimulatedPlatform>(described);
  return {*model, [model] { return model->InUse(); }, model};
}

}  // namespace contract
