// The ways from a Read command to the voice.
#pragma once

#include "platform/rich_text_pane.h"
#include "platform/text.h"

#include <cstdint>
#include <functional>

namespace tessavox {

class DocumentSpeech;

/// The text pane's part of a Read command: the selection, or else the text from the caret to its
/// end, which then is the selection. Sets `position` to where that begins.
TextSlice selection_or_rest(RichTextPane& pane, std::int32_t& position);

/// Each entry hands the whole text to the voice in one call and returns before the first sound.
class Reading {
public:
    explicit Reading(DocumentSpeech& speech)
        : m_speech(speech)
    {
    }

    /// Reads the document: its selection, or from the caret on, or from the top if nothing is left
    /// after the caret. Of a web page in front: what is selected, or all; of a document shown
    /// there: what the user has copied. Does nothing while a reading runs, also while it is paused.
    void SpeakBtn_Click();
    /// Reads the clipboard. Does nothing while a reading runs.
    void ReadClipbdBtn_Click();
    /// Reads a text given by a caller from outside; a running reading is replaced, but a paused one
    /// goes on and the text is dropped.
    void readtext(const TextSlice& text);

private:
    void speak_pane();
    void speak_page();
    void prepare_outside_text();
    void speak_outside_text(const std::function<TextSlice()>& text);

    DocumentSpeech& m_speech;
};

} // namespace tessavox
