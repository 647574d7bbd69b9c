#include "platform/rtf/list_marker.h"

#include <algorithm>
#include <unicode/uchar.h>

namespace tessavox::rtf {

std::u16string_view without_blanks(std::u16string_view marker)
{
    constexpr std::u16string_view blanks = u" \t\u00A0";
    const std::size_t begin = std::min(marker.find_first_not_of(blanks), marker.size());
    return marker.substr(begin, marker.find_last_not_of(blanks) + 1 - begin);
}

bool is_bullet(std::u16string_view marker)
{
    const auto says_something = [](char16_t unit) { return u_isalnum(unit); };
    // Word processors draw the circle of a list's second level with this letter.
    return marker == u"o"
        || (!marker.empty() && std::none_of(marker.begin(), marker.end(), says_something));
}

} // namespace tessavox::rtf
