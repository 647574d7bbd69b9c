// Lists in one text.
#pragma once

#include <string_view>
#include <vector>

namespace tessavox {

/// The pieces between separators; one at the end of the text begins none.
inline std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> pieces;
    while (!text.empty()) {
        const std::size_t end = text.find(separator);
        pieces.push_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return pieces;
}

} // namespace tessavox
