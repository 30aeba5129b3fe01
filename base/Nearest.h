// The name that a misspelled one was likely meant to be.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace base {

/// The one of `known` that `name` is likely to be a misspelling of; letter case does not count. At
/// most `limit` letters differ, without one so many that the name still tells what is meant.
std::optional<std::string_view> Nearest(std::string_view name,
                                        std::span<const std::string_view> known,
                                        std::optional<std::size_t> limit = std::nullopt);

}  // namespace base
