// All installed voices of all engines in one list.
#pragma once

#include "platform/voice/engine.h"
#include "platform/voice/text/voice_chooser.h"

#include <memory>
#include <span>
#include <vector>

namespace tessavox::voice {

/// The list is built once, at construction, and never changes: a voice is an index in it.
class VoiceCatalog : public VoiceChooser {
public:
    /// Voices stand in the order of `engines`, and within one engine in its own order.
    explicit VoiceCatalog(std::vector<std::unique_ptr<Engine>> engines);
    /// A list of voices whose engines are elsewhere: render() fails.
    explicit VoiceCatalog(std::vector<SpeechObjectToken> tokens);

    const std::vector<SpeechObjectToken>& tokens() const { return m_tokens; }
    /// The index of the token with this id, or -1.
    int find(const std::string& id) const;
    /// All voices that fit, in list order but the better fitting first where `optional` is given.
    std::vector<int> matching(std::string_view required, std::string_view optional) const;
    std::optional<int> choose(
        std::string_view required, std::string_view optional, int current) const override;

    /// Speaks with the engine that voice `voice` belongs to. `rate` is the sum of the voice's rate
    /// and the utterance's own, clamped. @throws Failure if there is no such voice or its engine
    /// can't speak.
    Rendering render(
        int voice, int rate, const Utterance& utterance, const std::atomic<bool>& cancelled) const;

private:
    std::vector<std::unique_ptr<Engine>> m_engines;
    std::vector<SpeechObjectToken> m_tokens;
    std::vector<Engine*> m_owners; // of each token
};

std::unique_ptr<Engine> make_espeak_engine();
std::unique_ptr<Engine> make_flite_engine();

/// espeak-ng first, then flite, then what else there is.
std::unique_ptr<VoiceCatalog> make_installed_catalog(std::unique_ptr<Engine> more = nullptr);

} // namespace tessavox::voice
