// Reading into a wave file instead of aloud, and playing one through the voice.
#pragma once

#include "platform/platform.h"
#include "speech/reading.h"

#include <string>

namespace tessavox {

/// The commands do nothing while a reading runs. A save blocks until the file is complete. One that
/// fails leaves the voice speaking into its file and the pointer an hourglass: the next save that
/// succeeds, or a reset, gives the voice its output back.
class WaveFile {
public:
    WaveFile(const ReadingParts& document, Platform& platform)
        : m_document(document)
        , m_platform(platform)
    {
    }

    /// Saves the speech of the document.
    void menuFileSaveToWave_Click();
    /// Saves the speech of the text on the clipboard.
    void DockSaveToWave_Click();
    void Play_Click();

private:
    void save(const std::function<TextSlice()>& text);
    void speak_into(
        const std::shared_ptr<SpeechFileStream>& stream, const std::function<TextSlice()>& text);

    const ReadingParts m_document;
    Platform& m_platform;
    std::string m_file_name; // the path that the user chose last
};

} // namespace tessavox
