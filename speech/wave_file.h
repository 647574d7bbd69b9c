// Reading into a wave file instead of aloud, and playing one through the voice.
#pragma once

#include "platform/speech_voice.h"
#include "platform/text.h"

#include <functional>
#include <memory>
#include <string>

namespace tessavox {

class DocumentSpeech;

/// The commands do nothing while a reading runs. A save blocks until the file is complete. One that
/// fails leaves the voice speaking into its file and the pointer an hourglass: the next save that
/// succeeds, or a reset, gives the voice its output back. The user can end one that takes too long;
/// what has been spoken until then is in the file.
class WaveFile {
public:
    explicit WaveFile(DocumentSpeech& speech)
        : m_speech(speech)
    {
    }

    /// Saves the speech of the document.
    void menuFileSaveToWave_Click();
    void SpeaktofileBtn_Click() { menuFileSaveToWave_Click(); }
    /// Saves the speech of the text on the clipboard.
    void DockSaveToWave_Click();
    void ReadClipboardtoFile_Click() { DockSaveToWave_Click(); }
    void Play_Click();

private:
    void save(const std::function<TextSlice()>& text);
    bool speak_into(
        const std::shared_ptr<SpeechFileStream>& stream, const std::function<TextSlice()>& text);
    bool wait_for(std::size_t length);

    DocumentSpeech& m_speech;
    std::string m_file_name; // the path that the user chose last
};

} // namespace tessavox
