#include "tool/roundtrip/ImageRestore.h"

#include <type_traits>
#include <utility>

#include "handlers/internal/AgentFiles.h"
#include "platform/ScopedPlatform.h"
#include "platform/simulated/AdapterFields.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "tool/io/CodePage.h"
#include "tool/machine/MachineDocument.h"

namespace tool {
namespace {

using simulated::Machine;
using simulated::OnImage;

/// What the deployment leaves in the agent's file when it lays down an image.
constexpr char kAskForRestore[] = "[Global]\r\nConfig=Restore\r\n";
/// Far more than a rename and a join need.
constexpr std::uint32_t kMostRestarts = 10;

/// Where the library looks for its files on this machine; its faults are spared.
AgentFiles LocateFiles(Machine machine) {
  machine.faults.clear();
  simulated::SimulatedPlatform platform(machine);
  platform::ScopedPlatform scope(platform);
  return AgentFiles::Locate();
}

void ClearSettings(Machine& machine) {
  for (simulated::Adapter& adapter : machine.adapters) {
    simulated::ForEachAdapterField([&](const simulated::AdapterField& field, auto member) {
      if (field.onImage == OnImage::kStays) return;
      adapter.*member = {};
      if constexpr (std::is_same_v<decltype(member), simulated::AdapterMember<bool>>) {
        adapter.*member = field.onImage == OnImage::kTurnedOn;
      }
    });
  }
  machine.persistentRoutes.clear();
  for (simulated::Service& service : machine.services) {
    if (service.start == platform::ServiceStart::kDisabled) service.running = false;
  }
}

}  // namespace

bool ImageRestore::Succeeded() const {
  return capture.Succeeded() && restore.Succeeded() &&
         restore.deliveries.back().Result() != "Reboot";
}

ImageRestore RestoreFromImage(Machine machine) {
  const AgentFiles files = LocateFiles(machine);
  ImageRestore image;
  image.before = machine;
  image.capture = Deliver({"Internal", "PrepForImage", {}}, machine);
  if (const simulated::File* file = machine.FindFile(files.restore)) image.captured = *file;
  ClearSettings(machine);
  machine.PutFile(files.configuration, kAskForRestore);
  image.cleared = machine;
  image.restore = Converse({"Internal", "Configure", {{"Filename", ToUtf8(files.configuration)}}},
                           {/*deliverPosted=*/true, kMostRestarts}, machine);
  image.after = std::move(machine);
  return image;
}

void PutIntoUtf8(ImageRestore& image) {
  for (Machine* machine : {&image.before, &image.cleared, &image.after}) {
    *machine = ToUtf8(*machine);
  }
  if (image.captured) {
    image.captured->path = ToUtf8(image.captured->path);
    image.captured->text = ToUtf8(image.captured->text);
  }
}

}  // namespace tool
