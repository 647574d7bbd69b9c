// Every text that users see, by its number.
#pragma once

#include "platform/texts.h"

#include <string>

namespace tessavox {

/// The English text of a number, trailing blanks included. @throws Failure if it has none.
std::string LoadResString(int id);

} // namespace tessavox
