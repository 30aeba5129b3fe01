#include "bench/Texts.h"

namespace bench {

std::string SectionName(int section) { return "NicEntry" + std::to_string(section); }
std::string KeyName(int key) { return "Setting-Name" + std::to_string(key); }

std::string TypicalText(int sections) {
  std::string text;
  for (int section = 0; section < sections; ++section) {
    text.append("[").append(SectionName(section)).append("]\n# one adapter\n");
    for (int key = 0; key < kKeysPerSection; ++key) {
      text.append(KeyName(key)).append("=10.20.").append(std::to_string(key)).append(".1\n");
    }
  }
  return text;
}

std::string ShapedText(Shape shape, int count) {
  std::string text = "[Global]\nDNS-Server0=10.0.0.1\n";
  for (int i = 0; i < count; ++i) {
    switch (shape) {
      case Shape::kSections:
        text.append("[").append(SectionName(i)).append("]\n");
        [[fallthrough]];
      case Shape::kKeys:
        text.append(KeyName(i)).append("=").append(std::to_string(i)).append("\n");
        break;
      case Shape::kComments:
        text.append("# what this is for, told in one line\n");
        break;
      case Shape::kContinuations:
        text.append("  10.20.30.").append(std::to_string(i % 256)).append("\n");
        break;
      case Shape::kDuplicates:
        text.append("Server=").append(std::to_string(i)).append("\n");
        break;
    }
  }
  return text;
}

const std::string& TextOf(int size) {
  static const std::string texts[] = {
      TypicalText(kSectionsOf[kSmall]), TypicalText(kSectionsOf[kMegabyte]),
      TypicalText(kSectionsOf[kFiftyMegabytes]), ShapedText(Shape::kKeys, 200000)};
  return texts[size];
}

}  // namespace bench
