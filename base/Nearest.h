// The name that a misspelled one was likely meant to be.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace base {

/// The one of `known` that `name` is likely to be a misspelling of; letter case does not count. At
/// most `most` letters differ; without it, so many that the name still shows what is meant.
std::optional<std::string_view> Nearest(std::string_view name,
                                        std::span<const std::string_view> known,
                                        std::optional<std::size_t> most = std::nullopt);

}  // namespace base
