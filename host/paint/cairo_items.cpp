// The Cairo item factory: one line per kind that has painting code.
#include "host/paint/item_painters.h"

namespace Orvex::Paint {

TORXBaseItem* CreateCairoItem(TORXBaseLabel* document, TQVLItemType type) {
    (void)document;
    switch (type) {
        default:
            return nullptr;
    }
}

void RetainTextMetrics() {}
void ReleaseTextMetrics() {}

}  // namespace Orvex::Paint
