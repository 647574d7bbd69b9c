#include "speech/speak_flags.h"

#include "forms/document_controls.h"

namespace tessavox {

namespace {

struct FlagRow {
    CheckBox DocumentControls::*box;
    std::int32_t bit;
};

constexpr FlagRow flag_rows[] = {
    { &DocumentControls::chkSpFlagAync, SVSFlagsAsync },
    { &DocumentControls::chkSpFlagPurgeBeforeSpeak, SVSFPurgeBeforeSpeak },
    { &DocumentControls::chkSpFlagIsFilename, SVSFIsFilename },
    { &DocumentControls::chkSpFlagPersistXML, SVSFPersistXML },
    { &DocumentControls::chkSpFlagNLPSpeakPunc, SVSFNLPSpeakPunc },
};

} // namespace

void SetSpeakFlag(int value, std::int32_t flags, std::int32_t bit, std::int32_t& result)
{
    result = value != 0 ? flags | bit : flags & ~bit;
}

SpeakFlags::SpeakFlags(DocumentControls& controls)
{
    for (const FlagRow& row : flag_rows) {
        CheckBox& box = controls.*row.box;
        box.Click = [this, &box, bit = row.bit] { SetSpeakFlag(box.Value, m_flags, bit, m_flags); };
    }
    CheckBox& xml = controls.chkSpFlagIsXML;
    xml.Click = [this, &xml] {
        SetSpeakFlag(xml.Value, m_flags, SVSFIsXML, m_flags);
        SetSpeakFlag(xml.Value == 0, m_flags, SVSFIsNotXML, m_flags);
    };
}

} // namespace tessavox
