// Which documents are open, by slot number 1 to 30.
#pragma once

#include "platform/failure.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace tessavox {

class frmDocument;

/// An array that reports an index outside of it as a Failure.
template <class T, int Size> class CheckedArray {
public:
    /// @throws Failure unless `index` is 0 to Size - 1.
    T& operator[](int index)
    {
        if (index < 0 || index >= Size)
            throw Failure("no table entry " + std::to_string(index));
        return m_entries[static_cast<std::size_t>(index)];
    }

private:
    std::array<T, Size> m_entries{};
};

constexpr int document_slots = 30;

/// documentChanged is indexed by the slot number itself, the other tables by slot number less one.
struct DocumentTables {
    CheckedArray<std::shared_ptr<frmDocument>, document_slots> documentWindows;
    CheckedArray<bool, document_slots> documentSlotUsed;
    CheckedArray<bool, document_slots + 1> documentChanged;
    CheckedArray<std::string, document_slots> documentFileTitles; // without the folder
    std::int16_t openDocumentCount = 0;
    std::int16_t newDocumentIndex = 0; // the slot that was taken last
    bool closingSave = false; // the close prompt started the save that is under way
    bool fileLoading = false; // the next change of a text comes from a load and doesn't count

    /// Takes the lowest free slot and returns its number, or -1 if there is none.
    std::int16_t NextFreeDocumentSlot();
};

} // namespace tessavox
