// Documents of word processors, read by the programs for them that are installed.
#pragma once

#include "platform/blocking_work.h"
#include "platform/file_store.h"
#include "platform/texts.h"
#include "platform/word_processor.h"

#include <string>

namespace tessavox {

struct Converter;

/// Rich text under another name is read here. Everything else is a job for a program that we did
/// not write, and the file may be from anywhere: a helper confines itself, then becomes that
/// program, which finds a copy of the document in a folder of its own, may write only there,
/// reaches no network, and is ended after half a minute at most with all that it started. The file
/// that it leaves is what counts, whatever it says of itself.
class WordProcessorFiles : public WordProcessor {
public:
    /// `helper` is the path of tessavox-document-helper.
    WordProcessorFiles(FileStore& files, BlockingWork& work, const Texts& texts, std::string helper)
        : m_files(files)
        , m_work(work)
        , m_texts(texts)
        , m_helper(std::move(helper))
    {
    }
    std::u16string text_of(const std::string& path) override;

private:
    bool run(const std::string& folder, const Converter& converter);

    FileStore& m_files;
    BlockingWork& m_work;
    const Texts& m_texts;
    std::string m_helper;
};

} // namespace tessavox
