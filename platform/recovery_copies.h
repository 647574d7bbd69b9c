// Copies of what isn't saved, so that a crash, a failed save or a document that forgot its changes
// costs at most the last few seconds.
#pragma once

#include "platform/text.h"

#include <memory>
#include <string>

namespace tessavox {

/// Of one document. What it has kept stays when it goes, until it is too old.
class RecoveryCopy {
public:
    virtual ~RecoveryCopy() = default;
    /// Writes the text into the document's copy, in place of what was kept before, and returns at
    /// once. `title` is for the user who looks for it. An empty text isn't worth a copy.
    virtual void keep(const std::string& title, const TextSlice& text) = 0;
    /// Takes the copy away: what it holds is saved, or not wanted.
    virtual void drop() = 0;
    /// The document has just read or written this file, so the file holds nothing else.
    virtual void note_file(const std::string& path) = 0;
    /// To be called before a file is written over: if it isn't what was noted, a copy is kept of
    /// it. Steps over what can't be read.
    virtual void keep_foreign_file(const std::string& path) = 0;
};

class RecoveryCopies {
public:
    virtual ~RecoveryCopies() = default;
    virtual std::unique_ptr<RecoveryCopy> create() = 0;
};

} // namespace tessavox
