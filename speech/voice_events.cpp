#include "speech/voice_events.h"

#include "forms/document_controls.h"
#include "platform/failure.h"
#include "speech/debug_text.h"
#include "speech/document_speech.h"

#include <limits>

namespace tessavox {

namespace {

constexpr int any_locale = 0;

/// A field of the trace: its label with the value right after it.
template <class Value> struct Field {
    const char* label;
    const Value& value;
};
template <class Value> Field(const char*, const Value&) -> Field<Value>;

std::string text_of(const std::string& value)
{
    return value;
}
std::string text_of(std::int64_t value)
{
    return std::to_string(value);
}

/// @throws Failure if the sum takes more than 32 bits.
std::int32_t checked_sum(std::int32_t left, std::int32_t right)
{
    const std::int64_t sum = std::int64_t{ left } + right;
    using Limits = std::numeric_limits<std::int32_t>;
    if (sum < Limits::min() || sum > Limits::max())
        throw Failure("the place of a word takes more than 32 bits");
    return static_cast<std::int32_t>(sum);
}

} // namespace

// Words come several times a second, phones several times a word, so the trace costs nothing unless
// it is asked for.
template <class... Fields>
void VoiceEvents::LogVoiceEvent(const char* name, const Fields&... fields)
{
    if (m_speech.windows.document.chkShowEvents.Value != 1)
        return;
    std::string joined = name;
    ((joined += std::string(", ") + fields.label + text_of(fields.value)), ...);
    ReportDebugText("  Event: " + joined, "");
}

void VoiceEvents::Voice_StartStream(std::int32_t StreamNum, std::int64_t StreamPos)
{
    LogVoiceEvent(
        "StartStream", Field{ "StreamNum=", StreamNum }, Field{ "StreamPos=", StreamPos });
    m_speech.session.UpdateSpeechControls(true, m_speech.session.m_bPaused());
}

void VoiceEvents::Voice_EndStream(std::int32_t StreamNum, std::int64_t StreamPos)
{
    LogVoiceEvent("EndStream", Field{ "StreamNum=", StreamNum }, Field{ "StreamPos=", StreamPos });
    m_speech.session.UpdateSpeechControls(false, m_speech.session.m_bPaused());
}

void VoiceEvents::Voice_VoiceChange(
    std::int32_t StreamNum, std::int64_t StreamPos, const SpeechObjectToken& Token)
{
    std::string description;
    attempt([&] { description = Token.GetDescription(any_locale); });
    LogVoiceEvent("VoiceChange", Field{ "StreamNum=", StreamNum }, Field{ "StreamPos=", StreamPos },
        Field{ "Token=", description });
    ComboBox& list = m_speech.windows.document.VoiceCB;
    for (int index = 0; index < list.ListCount(); ++index) {
        if (list.List(index) == description) {
            list.ListIndex = index;
            return;
        }
    }
}

void VoiceEvents::Voice_Bookmark(std::int32_t StreamNumber, std::int64_t StreamPosition,
    const std::string& Bookmark, std::int32_t BookmarkId)
{
    LogVoiceEvent("BookMark", Field{ "StreamNumber=", StreamNumber },
        Field{ "StreamPosition=", StreamPosition }, Field{ "Bookmark=", Bookmark },
        Field{ "BookmarkId=", BookmarkId });
}

void VoiceEvents::Voice_Word(std::int32_t StreamNum, std::int64_t StreamPos,
    std::int32_t CharacterPosition, std::int32_t Length)
{
    LogVoiceEvent("Word", Field{ "StreamNum=", StreamNum }, Field{ "StreamPos=", StreamPos },
        Field{ "Pos=", CharacterPosition }, Field{ "Length=", Length });
    if (m_speech.place.isReadClipbd != 1)
        return;
    attempt(
        [&] { HighlightWord(checked_sum(m_speech.place.position, CharacterPosition), Length); });
}

void VoiceEvents::Voice_Sentence(std::int32_t StreamNum, std::int64_t StreamPos,
    std::int32_t CharacterPosition, std::int32_t Length)
{
    LogVoiceEvent("Sentence", Field{ "StreamNum=", StreamNum }, Field{ "StreamPos=", StreamPos },
        Field{ "Pos=", CharacterPosition }, Field{ "Length=", Length });
}

void VoiceEvents::Voice_Phoneme(std::int32_t StreamNumber, std::int64_t StreamPosition,
    std::int32_t, std::int16_t NextPhoneId, std::int32_t Feature, std::int16_t CurrentPhoneId)
{
    LogVoiceEvent("Phoneme", Field{ "StreamNumber=", StreamNumber },
        Field{ "StreamPosition=", StreamPosition }, Field{ "NextPhoneId=", NextPhoneId },
        Field{ "Feature=", Feature }, Field{ "CurrentPhoneId=", CurrentPhoneId });
}

void VoiceEvents::Voice_Viseme(std::int32_t StreamNum, std::int64_t StreamPos,
    std::int32_t Duration, std::int32_t VisemeType, std::int32_t Feature, std::int32_t VisemeId)
{
    LogVoiceEvent("Viseme", Field{ "StreamNum=", StreamNum }, Field{ "StreamPos=", StreamPos },
        Field{ "Duration=", Duration }, Field{ "VisemeType=", VisemeType },
        Field{ "Feature=", Feature }, Field{ "VisemeId=", VisemeId });
}

void VoiceEvents::Voice_AudioLevel(
    std::int32_t StreamNumber, std::int64_t StreamPosition, std::int32_t AudioLevel)
{
    LogVoiceEvent("AudioLevel", Field{ "StreamNumber=", StreamNumber },
        Field{ "StreamPosition=", StreamPosition }, Field{ "AudioLevel=", AudioLevel });
}

void VoiceEvents::Voice_EnginePrivate(
    std::int32_t StreamNumber, std::int32_t StreamPosition, std::int64_t lParam)
{
    LogVoiceEvent("EnginePrivate", Field{ "StreamNumber=", StreamNumber },
        Field{ "StreamPosition=", StreamPosition }, Field{ "lParam=", lParam });
}

void VoiceEvents::Voice_AudioOutput(bool reachable)
{
    m_speech.panel.show_output(reachable);
}

void VoiceEvents::HighlightWord(std::int32_t start, std::int32_t length)
try {
    if (m_speech.windows.document.chkSpFlagIsFilename.Value == 1)
        return;
    m_speech.windows.document.rtfText->set_SelStart(start);
    m_speech.windows.document.rtfText->set_SelLength(length);
} catch (const Failure&) {
    ReportDebugText("Failed to high light words. This may be caused by too many charaters in the "
                    "main text box.",
        "");
}

} // namespace tessavox
