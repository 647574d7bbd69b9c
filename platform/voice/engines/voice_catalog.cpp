#include "platform/voice/engines/voice_catalog.h"

#include "platform/failure.h"
#include "platform/voice/engines/attribute_match.h"

#include <algorithm>

namespace tessavox::voice {

class VoiceCatalog::Impl {
public:
    std::vector<std::unique_ptr<Engine>> engines;
    std::vector<SpeechObjectToken> tokens;
    std::vector<Engine*> owners; // of each token
};

VoiceCatalog::VoiceCatalog(std::vector<std::unique_ptr<Engine>> engines)
    : m_impl(std::make_unique<Impl>())
{
    m_impl->engines = std::move(engines);
    for (const auto& engine : m_impl->engines)
        for (SpeechObjectToken& token : engine->voices()) {
            m_impl->tokens.push_back(std::move(token));
            m_impl->owners.push_back(engine.get());
        }
}

VoiceCatalog::VoiceCatalog(std::vector<SpeechObjectToken> tokens)
    : m_impl(std::make_unique<Impl>())
{
    m_impl->tokens = std::move(tokens);
}

VoiceCatalog::~VoiceCatalog() = default;

const std::vector<SpeechObjectToken>& VoiceCatalog::tokens() const
{
    return m_impl->tokens;
}

int VoiceCatalog::find(const std::string& id) const
{
    const auto token = std::ranges::find(m_impl->tokens, id, &SpeechObjectToken::id);
    return token == m_impl->tokens.end() ? -1 : static_cast<int>(token - m_impl->tokens.begin());
}

namespace {

struct Fit {
    int voice;
    std::ptrdiff_t wishes; // how many of the optional conditions it meets
};

// The voices that meet all of `required`, in list order.
std::vector<Fit> fits_of(const std::vector<SpeechObjectToken>& tokens, std::string_view required,
    std::string_view optional)
{
    const auto needs = AttributeCondition::parse(required);
    const auto wishes = AttributeCondition::parse(optional);
    std::vector<Fit> fits;
    for (std::size_t voice = 0; voice < tokens.size(); ++voice) {
        const auto fitting
            = [&](const AttributeCondition& condition) { return condition.fits(tokens[voice]); };
        if (std::ranges::all_of(needs, fitting))
            fits.push_back({ static_cast<int>(voice), std::ranges::count_if(wishes, fitting) });
    }
    return fits;
}

} // namespace

std::vector<int> VoiceCatalog::matching(std::string_view required, std::string_view optional) const
{
    std::vector<Fit> fits = fits_of(m_impl->tokens, required, optional);
    std::ranges::stable_sort(fits, std::greater(), &Fit::wishes);
    std::vector<int> voices;
    voices.reserve(fits.size());
    for (const Fit& fit : fits)
        voices.push_back(fit.voice);
    return voices;
}

std::optional<int> VoiceCatalog::choose(
    std::string_view required, std::string_view optional, int current) const
{
    const std::vector<Fit> fits = fits_of(m_impl->tokens, required, optional);
    if (fits.empty())
        return std::nullopt;
    const auto best = std::ranges::max_element(fits, {}, &Fit::wishes);
    const auto present = std::ranges::find(fits, current, &Fit::voice);
    if (present != fits.end() && present->wishes == best->wishes)
        return current;
    return best->voice;
}

Rendering VoiceCatalog::render(
    int voice, int rate, const Utterance& utterance, const std::atomic<bool>& cancelled) const
{
    if (voice < 0 || static_cast<std::size_t>(voice) >= m_impl->owners.size())
        throw Failure("no voice of this number");
    const auto index = static_cast<std::size_t>(voice);
    return m_impl->owners[index]->render(
        { m_impl->tokens[index].id, std::clamp(rate, -10, 10), &utterance }, cancelled);
}

} // namespace tessavox::voice
