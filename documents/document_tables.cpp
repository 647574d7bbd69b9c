#include "documents/document_tables.h"

namespace tessavox {

std::int16_t DocumentTables::NextFreeDocumentSlot()
{
    for (std::int16_t slot = 1; slot <= document_slots; ++slot) {
        if (!documentSlotUsed[slot - 1]) {
            documentSlotUsed[slot - 1] = true;
            return slot;
        }
    }
    return -1;
}

} // namespace tessavox
