// Every text that users see, by its number.
#pragma once

#include <string>

namespace tessavox {

/// The title of all message boxes.
inline constexpr const char* application_title = "Tessavox";

/// The English text of a number, trailing blanks included. @throws Failure if it has none.
std::string LoadResString(int id);

} // namespace tessavox
