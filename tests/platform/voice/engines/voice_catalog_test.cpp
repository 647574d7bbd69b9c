// The list of voices, and how markup finds one in it.
#include "platform/voice/engines/espeak_voice_list.h"
#include "platform/voice/engines/voice_catalog.h"

#include <gtest/gtest.h>

#include <set>

namespace tessavox::voice {

namespace {

class ListedEngine : public Engine {
public:
    explicit ListedEngine(std::vector<SpeechObjectToken> tokens)
        : m_tokens(std::move(tokens))
    {
    }
    std::vector<SpeechObjectToken> voices() override { return m_tokens; }
    Rendering render(const RenderRequest&, const std::atomic<bool>&) override { return {}; }

private:
    std::vector<SpeechObjectToken> m_tokens;
};

VoiceCatalog small_catalog()
{
    std::vector<std::unique_ptr<Engine>> engines;
    engines.push_back(std::make_unique<ListedEngine>(std::vector<SpeechObjectToken>{
        { "0", "Anna (Germany), female", "Anna", "Female", "Adult", "407", "One" },
        { "1", "Bert (America), male", "Bert", "Male", "Adult", "409", "One" } }));
    engines.push_back(std::make_unique<ListedEngine>(std::vector<SpeechObjectToken>{
        { "two", "Anna (Spain), female", "Anna", "Female", "Child", "c0a;40a", "Two" },
        { "three", "Nameless", "", "Male", "", "", "Two" } }));
    return VoiceCatalog(std::move(engines));
}

} // namespace

TEST(VoiceCatalog, FindsVoicesByTheirAttributes)
{
    const std::tuple<const char*, const char*, std::vector<int>> cases[] = {
        { "", "", { 0, 1, 2, 3 } },
        { "Name=Anna", "", { 0, 2 } },
        { "Name=Anna (Spain), female", "", { 2 } },
        { "Gender!=Male", "", { 0, 2 } },
        { "Gender!=Male;Age!=Child", "", { 0 } },
        { "Language=409", "", { 1 } },
        { "Language=9", "", { 1 } },
        { "Name", "", { 0, 1, 2 } },
        { "Vendor=Two;Name", "", { 2 } },
        { "Shoe=9", "", {} },
        { "Name=Nobody", "Gender=Male", {} },
        { "", "Gender=Female;Age=Child", { 2, 0, 1, 3 } },
        { "Gender=Male", "Language=409", { 1, 3 } },
    };
    const VoiceCatalog catalog = small_catalog();
    for (const auto& [required, optional, voices] : cases)
        EXPECT_EQ(catalog.matching(required, optional), voices) << required << " | " << optional;
}

TEST(VoiceCatalog, ChoosesTheBestAndStaysWithTheCurrentOneIfItIsAsGood)
{
    const std::tuple<const char*, const char*, int, std::optional<int>> cases[] = {
        { "Name=Anna", "", 2, 2 },
        { "Name=Anna", "", 1, 0 },
        { "Name=Anna", "Age=Child", 0, 2 },
        { "", "", 3, 3 },
        { "", "Language=409", 3, 1 },
        { "", "", -1, 0 },
        { "Name=Nobody", "", 1, std::nullopt },
    };
    for (const auto& [required, optional, current, chosen] : cases)
        EXPECT_EQ(small_catalog().choose(required, optional, current), chosen);
}

TEST(VoiceCatalog, HoldsEveryInstalledVoiceOnceAndReadsWell)
{
    const auto catalog = make_installed_catalog();
    std::set<std::string> ids;
    std::set<std::string> descriptions;
    for (const SpeechObjectToken& voice : catalog->tokens()) {
        EXPECT_TRUE(ids.insert(voice.id).second) << voice.id;
        EXPECT_TRUE(descriptions.insert(voice.description).second) << voice.description;
        EXPECT_EQ(voice.description.find_first_of("_/-"), std::string::npos) << voice.description;
    }
    EXPECT_GT(descriptions.size(), 100U);
    const int american = catalog->find("espeak:gmw/en-US");
    ASSERT_GE(american, 0);
    const SpeechObjectToken& token = catalog->tokens()[static_cast<std::size_t>(american)];
    EXPECT_EQ(token.description, "English (America), male");
    EXPECT_EQ(token.language, "409");
    EXPECT_FALSE(catalog->matching("Gender=Female;Language=409", "").empty());
}

TEST(EspeakVoiceList, ReadsWellWithTheUsersLanguagesFirst)
{
    const std::vector<EspeakVoice> voices{
        { "Zulu_", "zu", "bnt/zu", 0, 0 },
        { "Chinese_(Mandarin,_latin_as_English)", "cmn", "sit/cmn", 0, 0 },
        { "English_(America,_New_York_City)", "en-us-nyc", "gmw/en-US-nyc", 1, 30 },
        { "German", "de", "gmw/de", 2, 70 },
        { "English_(America)", "en-us", "gmw/en-US", 1, 10 },
        { "plain-name", "de-at", "gmw/de-AT", 1, 15 },
        { "Zulu", "zu", "bnt/zu2", 1, 0 },
    };
    std::vector<std::string> descriptions;
    for (const SpeechObjectToken& token : espeak_tokens(voices, { "de-at", "en-us" }))
        descriptions.push_back(token.description + ", " + token.age);
    EXPECT_EQ(descriptions,
        (std::vector<std::string>{ "Plain Name, male, Teen", "German, female, Senior",
            "English (America), male, Child", "English (America, New York City), male, Adult",
            "Chinese (Mandarin, Latin as English), male, Adult", "Zulu, male, Adult",
            "Zulu, male 2, Adult" }));
}

} // namespace tessavox::voice
