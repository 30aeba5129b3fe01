// Configuration files of every size and shape that the measurements use.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

constexpr int kKeysPerSection = 20;

std::string SectionName(int section);
std::string KeyName(int key);

/// Sections of 20 settings and a comment, about 500 bytes each.
std::string TypicalText(int sections);

/// What a text can have much of.
enum class Shape { kSections, kKeys, kComments, kContinuations, kDuplicates };

/// A text with `count` of them.
std::string ShapedText(Shape shape, int count);

/// The texts that all readers load; the first three are typical, with so many sections each.
enum Size : int { kSmall, kMegabyte, kFiftyMegabytes, kOneSection };
constexpr const char* kSizeNames[] = {"2.6 KB", "1 MB", "50 MB", "200,000 keys"};
constexpr int kSectionsOf[] = {5, 2000, 100000};

/// Made once.
const std::string& TextOf(int size);

}  // namespace bench
