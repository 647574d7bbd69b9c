#include "platform/texts.h"

#include <string_view>

namespace tessavox {

std::string Texts::with_value(int id, const std::string& value) const
{
    constexpr std::string_view place = "%1";
    std::string text = LoadResString(id);
    if (const std::size_t at = text.find(place); at != std::string::npos)
        text.replace(at, place.size(), value);
    return text;
}

} // namespace tessavox
