// How exactly the aligner puts the word marks of voices whose true word times are known, and what
// it costs:
//   bench_alignment SENTENCES FESTIVAL_SCRIPT
// It prints a figure a line, as "figure: ours, limit, ratio r". flite tells its word times itself;
// festival, if it is installed, does so by the script.
#include "platform/failure.h"
#include "platform/temporary_folder.h"
#include "platform/voice/alignment/aligner.h"
#include "platform/voice/engines/espeak_reference.h"
#include "platform/voice/engines/voice_catalog.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

namespace {

using namespace tessavox;
using namespace tessavox::voice;

namespace fs = std::filesystem;

// What a user no longer notices.
constexpr double mean_limit_ms = 20;
constexpr double p95_limit_ms = 60;
constexpr double cost_limit_percent = 0.5; // of the sound's length, the reference included

Utterance utterance_of(const std::string& line)
{
    Utterance utterance;
    utterance.text = std::u16string(line.begin(), line.end()); // ASCII
    utterance.ends_sentence = true;
    for (std::size_t at = 0; at < line.size();) {
        const std::size_t end = std::min(line.find(' ', at), line.size());
        const auto begin = static_cast<std::uint32_t>(at);
        const auto length = static_cast<std::uint32_t>(end - at);
        utterance.tokens.push_back({ begin, length, begin, length });
        at = end + 1;
    }
    return utterance;
}

double processor_seconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// What must be spoken, by espeak-ng too.
struct Corpus {
    std::vector<Utterance> utterances;
    std::vector<ReferenceSpeech> references;
    double reference_seconds = 0; // of the processor
};

const VoiceCatalog& catalog()
{
    static const std::unique_ptr<VoiceCatalog> catalog = make_installed_catalog();
    return *catalog;
}

Rendering spoken_by(const char* voice, const Utterance& utterance)
{
    const std::atomic<bool> cancelled{ false };
    return catalog().render(catalog().find(voice), 0, utterance, cancelled);
}

Corpus corpus_of(const fs::path& sentences)
{
    Corpus corpus;
    std::ifstream file(sentences);
    for (std::string line; std::getline(file, line);)
        corpus.utterances.push_back(utterance_of(line));
    if (corpus.utterances.empty())
        throw Failure("no sentences in " + sentences.string());
    constexpr const char* reference_voice = "espeak:gmw/en-US";
    spoken_by(reference_voice, corpus.utterances.front()); // starts the library
    const double begin = processor_seconds();
    for (const Utterance& utterance : corpus.utterances)
        corpus.references.push_back(espeak_reference(spoken_by(reference_voice, utterance)));
    corpus.reference_seconds = processor_seconds() - begin;
    return corpus;
}

void print(const std::string& figure, double value, double limit, const char* unit)
{
    std::printf("%s: %.3g %s, at most %.3g %s, ratio %.2f\n", figure.c_str(), value, unit, limit,
        unit, value / limit);
}

/// How far the marks of a voice are from the truth.
class Errors {
public:
    void add(const AlignedMarks& marks, const Rendering& truth)
    {
        for (const WordMark& word : truth.words)
            m_milliseconds.push_back(std::fabs(static_cast<double>(marks.words[word.token])
                                         - static_cast<double>(word.frame))
                * 1000 / truth.sample_rate);
    }

    void print_as(const std::string& name)
    {
        std::ranges::sort(m_milliseconds);
        const auto count = static_cast<double>(m_milliseconds.size());
        const auto percentile
            = [&](double share) { return m_milliseconds[static_cast<std::size_t>(share * count)]; };
        print(name + ", mean", std::reduce(m_milliseconds.begin(), m_milliseconds.end()) / count,
            mean_limit_ms, "ms");
        print(name + ", 95 % of them", percentile(0.95), p95_limit_ms, "ms");
        const auto far = m_milliseconds.end() - std::ranges::upper_bound(m_milliseconds, 200.0);
        std::printf("%s, 99 %% of them: %.3g ms\n%s, over 200 ms: %.2g %%\n", name.c_str(),
            percentile(0.99), name.c_str(), 100 * static_cast<double>(far) / count);
    }

private:
    std::vector<double> m_milliseconds;
};

/// Sentence n of the corpus by some voice, with the true marks of those tokens that have one.
using Speaker = std::function<Rendering(std::size_t)>;

void measure(const std::string& voice, const Corpus& corpus, const Speaker& speak)
{
    Aligner aligner;
    Errors errors;
    double cost = corpus.reference_seconds;
    double seconds = 0;
    for (std::size_t at = 0; at < corpus.utterances.size(); ++at) {
        const Rendering truth = speak(at);
        seconds += static_cast<double>(truth.samples.size()) / truth.sample_rate;
        const double begin = processor_seconds();
        const AlignedMarks marks
            = aligner.align(truth.samples, truth.sample_rate, corpus.references[at]);
        cost += processor_seconds() - begin;
        errors.add(marks, truth);
    }
    errors.print_as("word marks of " + voice);
    print("aligning of " + voice, 100 * cost / seconds, cost_limit_percent, "% of real time");
}

/// The sentences as the strings of festival's language.
void write_strings(const fs::path& path, const Corpus& corpus)
{
    std::ofstream file(path);
    for (const Utterance& utterance : corpus.utterances) {
        file << '"';
        for (const char16_t letter : utterance.text)
            file << (letter == u'"' ? "\\" : "") << static_cast<char>(letter);
        file << "\"\n";
    }
}

Rendering read_sentence(const fs::path& folder, std::size_t number)
{
    const fs::path base = folder / std::to_string(number);
    Rendering sound;
    std::ifstream times(base.string() + ".times");
    times >> sound.sample_rate;
    std::uint32_t token = 0;
    for (double start = 0; times >> start; ++token)
        if (start > 0) // a quotation mark is a silent word at 0
            sound.words.push_back(
                { token, static_cast<std::uint64_t>(std::llround(start * sound.sample_rate)) });
    const fs::path samples = base.string() + ".raw";
    std::ifstream raw(samples, std::ios::binary);
    sound.samples.resize(fs::file_size(samples) / sizeof(std::int16_t));
    raw.read(reinterpret_cast<char*>(sound.samples.data()),
        static_cast<std::streamsize>(sound.samples.size() * sizeof(std::int16_t)));
    return sound;
}

void measure_festival(
    const std::string& name, const std::string& voice, const Corpus& corpus, const fs::path& script)
{
    const TemporaryFolder folder;
    const fs::path strings = folder.path() / "sentences";
    write_strings(strings, corpus);
    const std::string command = "festival -b '(set! voice " + voice + ")' '(set! sentences \""
        + strings.string() + "\")' '(set! folder \"" + folder.path().string() + "\")' '"
        + script.string() + "' >&2";
    if (std::system(command.c_str()) != 0)
        throw Failure("festival can't speak with " + voice);
    measure(name, corpus, [&](std::size_t number) {
        Rendering sound = read_sentence(folder.path(), number);
        const std::size_t tokens = corpus.utterances[number].tokens.size();
        if (sound.words.empty() || sound.words.back().token + 1 != tokens)
            throw Failure("festival has other tokens in sentence " + std::to_string(number));
        return sound;
    });
}

int run(const fs::path& sentences, const fs::path& script)
{
    const Corpus corpus = corpus_of(sentences);
    for (const char* voice : { "flite:kal16", "flite:slt", "flite:awb" })
        measure(voice, corpus,
            [&](std::size_t number) { return spoken_by(voice, corpus.utterances[number]); });
    if (std::system("command -v festival > /dev/null") != 0) {
        std::fprintf(stderr, "no festival here: its voices are not measured\n");
        return EXIT_SUCCESS;
    }
    measure_festival("festival slt-hts", "voice_cmu_us_slt_arctic_hts", corpus, script);
    measure_festival("festival kal", "voice_kal_diphone", corpus, script);
    return EXIT_SUCCESS;
}

} // namespace

int main(int count, char** arguments)
try {
    if (count != 3)
        throw Failure("bench_alignment SENTENCES FESTIVAL_SCRIPT");
    return run(arguments[1], arguments[2]);
} catch (const Failure& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return EXIT_FAILURE;
}
