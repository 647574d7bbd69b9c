// What reads the documents of word processors.
#pragma once

#include <string>

namespace tessavox {

class WordProcessor {
public:
    virtual ~WordProcessor() = default;
    /// The plain text of such a document, line ends as LF. Takes some seconds at worst; windows are
    /// painted meanwhile, and Escape ends it. @throws Failure if nothing can read it.
    virtual std::u16string text_of(const std::string& path) = 0;
};

} // namespace tessavox
