// Numbers and truth values as the small files and the command line hold them, whatever the locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessavox {

/// The number that the whole text stands for, blanks around it aside: a sign, digits with or
/// without a point, an exponent. Nothing for any other text.
std::optional<double> to_number(std::string_view text);

/// The nearest whole number, halves to the even one. @throws Failure if the text is no number, or
/// the result takes more than 16 bits.
std::int16_t to_integer16(std::string_view text);

/// The number that the text begins with, and 0 if it begins with none.
int leading_number(std::string_view text);

/// True and False in any case, or a number other than 0. @throws Failure for any other text.
bool to_boolean(std::string_view text);

/// Decimal, with a position for the sign: " 0", "-1".
std::string with_sign_position(int number);
/// The same with as many decimals as it takes: " 10.5".
std::string with_sign_position(double number);

} // namespace tessavox
