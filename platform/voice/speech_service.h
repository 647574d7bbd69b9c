// Where the program gets its voices from.
#pragma once

#include "platform/speech_voice.h"

#include <functional>
#include <memory>
#include <string>

namespace tessavox::voice {

class SoundServer;
class SpeechEngines;

struct SpeechServiceOptions {
    /// Posts a call to the interface thread's message loop; called from any thread, also while that
    /// loop is blocked. A call that runs after its voice has gone does nothing.
    std::function<void(std::function<void()>)> post;
    /// What the list of outputs calls the system's default one, in the user's language.
    std::string default_output_name;
    /// The name under which a sound mixer shows the program.
    std::string application_name = "Tessavox";
};

/// Voices of these engines, which are heard by the system's sound server. Waits for the list of
/// voices.
std::unique_ptr<SpeechService> make_speech_service(
    SpeechServiceOptions options, std::shared_ptr<SpeechEngines> engines);

/// The same with a server of the caller's.
std::unique_ptr<SpeechService> make_speech_service(SpeechServiceOptions options,
    std::shared_ptr<SpeechEngines> engines, std::unique_ptr<SoundServer> server);

} // namespace tessavox::voice
