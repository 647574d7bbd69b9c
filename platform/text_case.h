// Letters in upper and lower case, by Unicode's tables and the rules of the user's language.
#pragma once

#include <string>
#include <string_view>

namespace tessavox {

std::u16string lower_case(std::u16string_view text);
std::u16string upper_case(std::u16string_view text);
/// What begins a word in upper case, everything else in lower case. A word begins with the text and
/// after a NUL, blank, tab, line feed, vertical tab, form feed or carriage return, and nowhere
/// else: neither after a hyphen nor after a full stop.
std::u16string word_capitals(std::u16string_view text);

} // namespace tessavox
