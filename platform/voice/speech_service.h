// Where the program gets its voices from.
#pragma once

#include "platform/speech_voice.h"

#include <functional>
#include <memory>
#include <string>

namespace tessavox::voice {

class SoundServer;
class VoiceCatalog;

struct SpeechServiceOptions {
    /// Posts a call to the interface thread's message loop; called from any thread, also while that
    /// loop is blocked. A call that runs after its voice has gone does nothing.
    std::function<void(std::function<void()>)> post;
    /// Program whose main() is run_render_helper(), and how many of it render a long text that goes
    /// into a file. Empty or 0: such a text is rendered by one thread.
    std::string helper_path;
    int helpers = 0;
    /// What the list of outputs calls the system's default one, in the user's language.
    std::string default_output_name;
    /// The name under which a sound mixer shows the program.
    std::string application_name = "Tessavox";
};

/// The installed voices and the system's sound server.
std::unique_ptr<SpeechService> make_speech_service(SpeechServiceOptions options);

/// The same on a catalogue and a server of the caller's.
std::unique_ptr<SpeechService> make_speech_service(SpeechServiceOptions options,
    std::unique_ptr<VoiceCatalog> catalog, std::unique_ptr<SoundServer> server);

} // namespace tessavox::voice
