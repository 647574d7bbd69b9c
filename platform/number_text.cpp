#include "platform/number_text.h"

#include "platform/failure.h"
#include "platform/split.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tessavox {

namespace {

constexpr std::string_view blanks = " \t";

bool same_word(std::string_view text, std::string_view word)
{
    return std::equal(text.begin(), text.end(), word.begin(), word.end(),
        [](char left, char right) { return lower_ascii(left) == right; });
}

} // namespace

std::optional<double> to_number(std::string_view text)
{
    text = trimmed(text, blanks);
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    // The library's conversion takes the words for infinity and not-a-number as well.
    if (text.find_first_not_of("+-.0123456789eE") != std::string_view::npos)
        return std::nullopt;
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::int16_t to_integer16(std::string_view text)
{
    const std::optional<double> number = to_number(text);
    if (!number)
        throw Failure("\"" + std::string(text) + "\" is no number");
    const double rounded = std::nearbyint(*number);
    if (rounded < INT16_MIN || rounded > INT16_MAX)
        throw Failure("\"" + std::string(text) + "\" is too large a number");
    return static_cast<std::int16_t>(rounded);
}

int leading_number(std::string_view text)
{
    text = trimmed(text, blanks);
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

bool to_boolean(std::string_view text)
{
    if (same_word(trimmed(text, blanks), "true"))
        return true;
    if (same_word(trimmed(text, blanks), "false"))
        return false;
    const std::optional<double> number = to_number(text);
    if (!number)
        throw Failure("\"" + std::string(text) + "\" is neither true nor false");
    return *number != 0;
}

std::string with_sign_position(int number)
{
    return (number < 0 ? "" : " ") + std::to_string(number);
}

std::string with_sign_position(double number)
{
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return (number < 0 ? "" : " ") + std::string(digits.data(), end);
}

} // namespace tessavox
