// Every text that users see, by its number, in their language.
#pragma once

#include <string>

namespace tessavox {

/// The title of all message boxes.
inline constexpr const char* application_title = "Tessavox";

class Texts {
public:
    virtual ~Texts() = default;
    /// The text of a number, trailing blanks included. @throws Failure if it has none.
    virtual std::string LoadResString(int id) const = 0;
    /// The same, with `value` in the place of "%1".
    std::string with_value(int id, const std::string& value) const;
};

} // namespace tessavox
