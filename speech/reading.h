// The ways from a Read command to the voice.
#pragma once

#include "platform/clipboard.h"
#include "platform/rich_text_pane.h"
#include "speech/speak_flags.h"
#include "speech/speech_session.h"
#include "speech/voice_panel.h"

#include <cstdint>
#include <functional>

namespace tessavox {

/// What a reading leaves for the events that follow it.
struct ReadingPlace {
    std::int32_t position = 0; // where in rtfText the spoken text begins
    std::int16_t view_status = 0; // 1: text pane in front, 2: web pane
    std::int16_t isReadClipbd = 0; // 1: words move the selection. It is no clipboard reading then.
};

/// What of a document its readings work on.
struct ReadingParts {
    DocumentControls& controls;
    DocumentVoice& Voice;
    SpeechSession& session;
    VoicePanel& panel;
    SpeakFlags& flags;
    ReadingPlace& place;
};

/// The text pane's part of a Read command: the selection, or else the text from the caret to its
/// end, which then is the selection. Sets `position` to where that begins.
TextSlice selection_or_rest(RichTextPane& pane, std::int32_t& position);

/// Each entry hands the whole text to the voice in one call and returns before the first sound.
class Reading {
public:
    Reading(const ReadingParts& document, Clipboard& clipboard)
        : m_document(document)
        , m_clipboard(clipboard)
    {
    }

    /// Reads the document: its selection, or from the caret on, or from the top if nothing is left
    /// behind the caret. Does nothing while a reading runs, also while it is paused.
    void SpeakBtn_Click();
    /// Reads the clipboard. Does nothing while a reading runs.
    void ReadClipbdBtn_Click();
    /// Reads a text given by a caller from outside; a running reading is replaced, but a paused one
    /// goes on and the text is dropped.
    void readtext(const TextSlice& text);

private:
    void speak_pane();
    void begin_outside_text();
    void speak_outside_text(const std::function<TextSlice()>& text);

    const ReadingParts m_document;
    Clipboard& m_clipboard;
};

} // namespace tessavox
