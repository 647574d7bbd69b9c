#include "platform/voice/engines/espeak_reference.h"

#include <string_view>
#include <utility>

namespace tessavox::voice {

namespace {

// Of a phone's name its number holds the first two letters, seven bits each.
std::string name_of(const PhoneMark& phone)
{
    std::string name;
    for (int number = phone.phone; number > 0; number >>= 7)
        name += static_cast<char>(number & 0x7F);
    return name;
}

PhoneKind kind_of(const PhoneMark& phone, std::string_view name)
{
    if (phone.viseme == 0)
        return PhoneKind::pause;
    constexpr std::string_view stops = "pbtdkgcJqGB";
    return !name.empty() && stops.find(name.front()) != std::string_view::npos ? PhoneKind::stop
                                                                               : PhoneKind::other;
}

} // namespace

ReferenceSpeech espeak_reference(Rendering spoken)
{
    ReferenceSpeech reference;
    reference.sample_rate = spoken.sample_rate;
    reference.samples = std::move(spoken.samples);
    for (const WordMark& word : spoken.words)
        reference.words.push_back(word.frame);
    for (const PhoneMark& phone : spoken.phones) {
        std::string name = name_of(phone);
        const PhoneKind kind = kind_of(phone, name);
        reference.phones.push_back({ std::move(name), kind, phone.frame, phone.frames });
    }
    return reference;
}

} // namespace tessavox::voice
