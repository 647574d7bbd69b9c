#include "platform/speech_voice.h"

#include "platform/failure.h"

namespace tessavox {

const std::string& SpeechObjectToken::GetDescription(int) const
{
    if (description.empty())
        throw Failure("the token " + id + " has no description");
    return description;
}

const SpeechObjectToken& SpeechObjectTokens::Item(int index) const
{
    if (index < 0 || index >= Count())
        throw Failure("no token at index " + std::to_string(index));
    return m_tokens[static_cast<std::size_t>(index)];
}

} // namespace tessavox
