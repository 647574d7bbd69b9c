// Lists in one text, and the blanks round their pieces.
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

/// The text without the blanks at its ends.
constexpr std::string_view trimmed(std::string_view text, std::string_view blanks = " \t\r\n")
{
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

} // namespace tessavox
