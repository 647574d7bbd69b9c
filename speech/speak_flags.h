// How the text of a document is spoken, kept in step with six hidden check boxes.
#pragma once

#include "platform/speech_voice.h"

#include <cstdint>

namespace tessavox {

struct DocumentControls;

/// `result` is `flags` with `bit` set, or cleared if `value` is 0.
void SetSpeakFlag(int value, std::int32_t flags, std::int32_t bit, std::int32_t& result);

class SpeakFlags {
public:
    /// Lets the check boxes drive the flags.
    explicit SpeakFlags(DocumentControls& controls);

    std::int32_t m_lSpeakFlags() const { return m_flags; }
    /// Assigns the start value outright, whatever the boxes say: an unticked XML box stays so.
    void restore_default() { m_flags = default_flags; }

private:
    static constexpr std::int32_t default_flags = SVSFlagsAsync | SVSFPurgeBeforeSpeak | SVSFIsXML;
    std::int32_t m_flags = default_flags;
};

} // namespace tessavox
