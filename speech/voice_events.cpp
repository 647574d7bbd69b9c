#include "speech/voice_events.h"

#include "documents/document_controls.h"
#include "platform/failure.h"

#include <limits>

namespace tessavox {

namespace {

constexpr int any_locale = 0;

std::string field(const char* label, std::int64_t number)
{
    return label + std::to_string(number);
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

void VoiceEvents::Voice_StartStream(std::int32_t StreamNum, std::int64_t StreamPos)
{
    LogVoiceEvent(
        { "StartStream", field("StreamNum=", StreamNum), field("StreamPos=", StreamPos) });
    m_session.UpdateSpeechControls(true, m_session.m_bPaused());
}

void VoiceEvents::Voice_EndStream(std::int32_t StreamNum, std::int64_t StreamPos)
{
    LogVoiceEvent({ "EndStream", field("StreamNum=", StreamNum), field("StreamPos=", StreamPos) });
    m_session.UpdateSpeechControls(false, m_session.m_bPaused());
}

void VoiceEvents::Voice_VoiceChange(
    std::int32_t StreamNum, std::int64_t StreamPos, const SpeechObjectToken& Token)
{
    attempt([&] {
        LogVoiceEvent({ "VoiceChange", field("StreamNum=", StreamNum),
            field("StreamPos=", StreamPos), "Token=" + Token.GetDescription(any_locale) });
    });
    std::string description;
    attempt([&] { description = Token.GetDescription(any_locale); });
    ComboBox& list = m_controls.VoiceCB;
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
    LogVoiceEvent({ "BookMark", field("StreamNumber=", StreamNumber),
        field("StreamPosition=", StreamPosition), "Bookmark=" + Bookmark,
        field("BookmarkId=", BookmarkId) });
}

void VoiceEvents::Voice_Word(std::int32_t StreamNum, std::int64_t StreamPos,
    std::int32_t CharacterPosition, std::int32_t Length)
{
    LogVoiceEvent({ "Word", field("StreamNum=", StreamNum), field("StreamPos=", StreamPos),
        field("Pos=", CharacterPosition), field("Length=", Length) });
    if (m_place.isReadClipbd != 1)
        return;
    attempt([&] { HighlightWord(checked_sum(m_place.position, CharacterPosition), Length); });
}

void VoiceEvents::Voice_Sentence(std::int32_t StreamNum, std::int64_t StreamPos,
    std::int32_t CharacterPosition, std::int32_t Length)
{
    LogVoiceEvent({ "Sentence", field("StreamNum=", StreamNum), field("StreamPos=", StreamPos),
        field("Pos=", CharacterPosition), field("Length=", Length) });
}

void VoiceEvents::Voice_Phoneme(std::int32_t StreamNumber, std::int64_t StreamPosition,
    std::int32_t, std::int16_t NextPhoneId, std::int32_t Feature, std::int16_t CurrentPhoneId)
{
    LogVoiceEvent({ "Phoneme", field("StreamNumber=", StreamNumber),
        field("StreamPosition=", StreamPosition), field("NextPhoneId=", NextPhoneId),
        field("Feature=", Feature), field("CurrentPhoneId=", CurrentPhoneId) });
}

void VoiceEvents::Voice_Viseme(std::int32_t StreamNum, std::int64_t StreamPos,
    std::int32_t Duration, std::int32_t VisemeType, std::int32_t Feature, std::int32_t VisemeId)
{
    LogVoiceEvent({ "Viseme", field("StreamNum=", StreamNum), field("StreamPos=", StreamPos),
        field("Duration=", Duration), field("VisemeType=", VisemeType), field("Feature=", Feature),
        field("VisemeId=", VisemeId) });
}

void VoiceEvents::Voice_AudioLevel(
    std::int32_t StreamNumber, std::int64_t StreamPosition, std::int32_t AudioLevel)
{
    LogVoiceEvent({ "AudioLevel", field("StreamNumber=", StreamNumber),
        field("StreamPosition=", StreamPosition), field("AudioLevel=", AudioLevel) });
}

void VoiceEvents::Voice_EnginePrivate(
    std::int32_t StreamNumber, std::int32_t StreamPosition, std::int64_t lParam)
{
    LogVoiceEvent({ "EnginePrivate", field("StreamNumber=", StreamNumber),
        field("StreamPosition=", StreamPosition), field("lParam=", lParam) });
}

void VoiceEvents::LogVoiceEvent(const std::vector<std::string>& fields)
{
    if (m_controls.chkShowEvents.Value != 1)
        return;
    std::string joined;
    for (const std::string& text : fields)
        joined += (joined.empty() ? "" : ", ") + text;
    ReportDebugText("  Event: " + joined, "");
}

void VoiceEvents::HighlightWord(std::int32_t start, std::int32_t length)
try {
    if (m_controls.chkSpFlagIsFilename.Value == 1)
        return;
    m_controls.rtfText->set_SelStart(start);
    m_controls.rtfText->set_SelLength(length);
} catch (const Failure&) {
    ReportDebugText("Failed to high light words. This may be caused by too many charaters in the "
                    "main text box.",
        "");
}

} // namespace tessavox
