// How markup finds the voice that it asks for.
#pragma once

#include <optional>
#include <string_view>

namespace tessavox::voice {

/// Answers from the catalogue of installed voices.
class VoiceChooser {
public:
    virtual ~VoiceChooser() = default;
    /// The first voice that has all of `required` ("Name=Anna;Gender!=Male") and the most of
    /// `optional`; the current one when it fits as well as any. Nothing if none has all.
    virtual std::optional<int> choose(
        std::string_view required, std::string_view optional, int current) const = 0;
};

} // namespace tessavox::voice
