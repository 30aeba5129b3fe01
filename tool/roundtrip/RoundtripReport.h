// The text that `roundtrip` shows a technician.
#pragma once

#include <string>
#include <vector>

#include "tool/io/Text.h"
#include "tool/roundtrip/ImageRestore.h"
#include "tool/roundtrip/RestoredSettings.h"

namespace tool {

/// The report: the two messages, every setting with what became of it, what the machine refused,
/// and the sum. `machineName` is "built-in example" or the name of the machine file.
std::string RoundtripReport(const std::string& machineName, const ImageRestore& image,
                            const std::vector<RestoredSetting>& settings, const Style& style);

}  // namespace tool
