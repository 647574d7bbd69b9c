// Turns a gathered sentence into the utterances that engines speak.
#pragma once

#include "platform/voice/text/sentence_gatherer.h"
#include "platform/voice/text/word_finder.h"
#include "platform/voice/utterance.h"

#include <cstdint>
#include <vector>

namespace tessavox::voice {

/// An item, and where in the text given to Speak it begins.
struct PlacedItem {
    SpeechItem item;
    std::uint32_t source_begin = 0;
};

class UtteranceComposer {
public:
    explicit UtteranceComposer(bool speak_punctuation)
        : m_speak_punctuation(speak_punctuation)
    {
    }

    /// Appends the items of the sentence. An utterance has one style, so a change of style begins
    /// another one; the first one of a long sentence is short, so that it sounds soon.
    void compose(const Sentence& sentence, std::vector<PlacedItem>& items);

private:
    void add_stretch(std::uint32_t begin, std::uint32_t end);
    void set_level();
    void hint_context(std::size_t run_begin);
    void flush();
    void flush_before_word();
    void add_part(Utterance part, bool first_of_run);
    void add_pronunciation(const Pronunciation& pronunciation);
    void add_item(const decltype(SentenceMark::what)& what, std::uint32_t source_begin);
    void finish_sentence();

    bool m_speak_punctuation;
    WordFinder m_finder;
    std::vector<FoundWord> m_found;

    const Sentence* m_sentence = nullptr;
    std::vector<PlacedItem>* m_items = nullptr;
    std::size_t m_first_item = 0; // of this sentence in *m_items
    MarkupSettingsPtr m_settings; // in force at this place of the sentence
    MarkupSettingsPtr m_run_settings;
    Utterance m_run; // what is to be spoken in one style
    std::uint32_t m_run_source = 0;
    bool m_run_begun = false;
};

} // namespace tessavox::voice
