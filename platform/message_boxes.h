// Plain questions and messages.
#pragma once

#include <string>

namespace tessavox {

enum class MessageButtons { ok, yes_no_cancel };
enum class MessageIcon { none, question };
enum class MessageAnswer { ok, yes, no, cancel };

class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    /// Blocks until the user answers. Closing the box counts as cancel, or as ok if that is all.
    virtual MessageAnswer show(
        const std::string& text, const std::string& title, MessageButtons buttons, MessageIcon icon)
        = 0;
};

} // namespace tessavox
